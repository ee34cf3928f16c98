#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

#include "LxPersistence/LxPropertyList.h"

class LxGenParameterArray;

/// The settings of a camera: the values of its features, by name in a property list.
///
/// A feature that has selectors stands there once for each of their values, as "Gain[GainSelector=Red]"; the selectors
/// themselves come last. Left out are commands and registers, features for nobody (Invisible), those that cannot be
/// written, the name that the user gave the camera, and what belongs to a connection, to user sets and to files
/// (categories TransportLayerControl, UserSetControl, FileAccessControl). While a stream runs, cameras lock features;
/// both operations want none to run. They talk to the camera, set selectors meanwhile, and may be called on any thread.
namespace FeatureSettings
{

struct Outcome
{
    int mCount = 0;         ///< Values that were saved, or that the camera has now as they were saved.
    QStringList mProblems;  ///< A sentence for each that could not be.
};

/// Adds the values to a list.
Outcome Collect(LxGenParameterArray &aParameters, LxPropertyList &aList);
/// Writes the values. Features depend on one another in ways that a list cannot say, so what is not yet as it should be
/// is written again as long as that changes anything.
Outcome Restore(LxGenParameterArray &aParameters, const LxPropertyList &aList);

}  // namespace FeatureSettings
