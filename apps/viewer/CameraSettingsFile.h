#pragma once

#include <QtCore/QString>

#include "CameraIdentity.h"
#include "LxBase/LxResult.h"
#include "LxPersistence/LxPropertyList.h"

/// The settings of one camera in a file: the list "Camera" says whose they are, the list "Features" holds them. The
/// operations may be called on any thread.
struct CameraSettingsFile
{
    CameraIdentity mCamera;
    LxPropertyList mFeatures;

    /// Makes the folder where there is none. FileError, with the reason.
    LxResult Save(const QString &aFile) const;
    /// FileError; InvalidDataFormat when the file holds no settings.
    LxResult Load(const QString &aFile);
};
