#pragma once

// The rich texts of the description pane. Any thread; no widgets.

#include <QtCore/QString>
#include <QtCore/QStringList>

#include "LxGenICam/LxGenTypes.h"

class LxGenCategory;
class LxGenParameter;

/// What the browser already knows of a feature or a category.
struct FeatureIdentity
{
    QString mName;
    QString mDisplayName;
    QString mType;
    QString mNameSpace;
    QString mVisibility;
    QStringList mSelectors;
    bool mIsAddress = false;
};

/// Describes a feature; may ask the device for its limits.
QString DescribeFeature(const LxGenParameter &aParameter, const FeatureIdentity &aIdentity);
QString DescribeCategory(const LxGenCategory &aCategory, const FeatureIdentity &aIdentity);
