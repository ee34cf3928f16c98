#include "CameraSettingsFile.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include "LxPersistence/LxConfigurationReader.h"
#include "LxPersistence/LxConfigurationWriter.h"
#include "Texts.h"

namespace
{

constexpr const char *CameraList = "Camera";
constexpr const char *FeatureList = "Features";

QString Value(const LxPropertyList &aList, const char *aName)
{
    const LxProperty *property = aList.GetProperty(aName);
    return property ? ToQString(property->GetValue()) : QString();
}

}  // namespace

LxResult CameraSettingsFile::Save(const QString &aFile) const
{
    LxPropertyList camera;
    camera.Add(LxProperty("UniqueID", ToLxString(mCamera.mUniqueID)));
    camera.Add(LxProperty("Name", ToLxString(mCamera.mName)));
    camera.Add(LxProperty("Model", ToLxString(mCamera.mModel)));
    LxConfigurationWriter writer;
    writer.Store(&camera, CameraList);
    writer.Store(&mFeatures, FeatureList);
    QDir().mkpath(QFileInfo(aFile).path());
    return writer.Save(LxString(QFile::encodeName(aFile).constData()));
}

LxResult CameraSettingsFile::Load(const QString &aFile)
{
    LxConfigurationReader reader;
    if (const LxResult result = reader.Load(LxString(QFile::encodeName(aFile).constData())); !result.IsOK()) {
        return result;
    }
    LxPropertyList camera;
    if (!reader.Restore(FeatureList, &mFeatures).IsOK() || !reader.Restore(CameraList, &camera).IsOK()) {
        return LxResult(LxResultCode::InvalidDataFormat, "The file holds no settings of a camera.");
    }
    mCamera.mUniqueID = Value(camera, "UniqueID");
    mCamera.mName = Value(camera, "Name");
    mCamera.mModel = Value(camera, "Model");
    return LxResult();
}
