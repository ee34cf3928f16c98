#include "RecentCameras.h"

#include <QtCore/QSettings>
#include <QtGui/QAction>
#include <QtWidgets/QMenu>

namespace
{

const QString RecentCamerasSetting = QStringLiteral("recentCameras");
const QString UniqueIDKey = QStringLiteral("uniqueID");
const QString AddressKey = QStringLiteral("address");
const QString NameKey = QStringLiteral("name");
const QString ModelKey = QStringLiteral("model");

// The name, with what tells cameras of one name apart and a digit to choose it by.
QString LineOf(const CameraIdentity &aCamera, int aNumber)
{
    QString text = QStringLiteral("%1 - %2").arg(aCamera.mName, aCamera.mModel);
    text.replace(QLatin1Char('&'), QLatin1String("&&"));
    return QStringLiteral("&%1 %2").arg(aNumber).arg(text);
}

}  // namespace

RecentCameras::RecentCameras(QMenu &aMenu, QObject *aParent) : QObject(aParent)
{
    mMenu = aMenu.addMenu(tr("&Recent Cameras"));
    mMenu->setObjectName(QStringLiteral("recentMenu"));
    mMenu->setToolTipsVisible(true);
    FillMenu();
}

void RecentCameras::Add(const CameraIdentity &aCamera)
{
    QList<CameraIdentity> cameras = Cameras();
    cameras.removeIf([&](const CameraIdentity &aOther) { return aOther.mUniqueID == aCamera.mUniqueID; });
    cameras.prepend(aCamera);
    Store(cameras.mid(0, Limit));
}

QList<CameraIdentity> RecentCameras::Cameras() const
{
    QSettings settings;
    QList<CameraIdentity> cameras;
    const int count = qMin(settings.beginReadArray(RecentCamerasSetting), Limit);
    for (int i = 0; i < count; ++i) {
        settings.setArrayIndex(i);
        const CameraIdentity camera = {settings.value(UniqueIDKey).toString(), settings.value(AddressKey).toString(),
                                       settings.value(NameKey).toString(), settings.value(ModelKey).toString()};
        if (!camera.mUniqueID.isEmpty()) {
            cameras << camera;
        }
    }
    settings.endArray();
    return cameras;
}

void RecentCameras::SetEnabled(bool aEnabled)
{
    mEnabled = aEnabled;
    mMenu->setEnabled(mEnabled && !Cameras().isEmpty());
}

void RecentCameras::Clear()
{
    Store({});
}

void RecentCameras::Store(const QList<CameraIdentity> &aCameras)
{
    QSettings settings;
    settings.remove(RecentCamerasSetting);
    settings.beginWriteArray(RecentCamerasSetting, static_cast<int>(aCameras.size()));
    for (int i = 0; i < aCameras.size(); ++i) {
        settings.setArrayIndex(i);
        settings.setValue(UniqueIDKey, aCameras[i].mUniqueID);
        settings.setValue(AddressKey, aCameras[i].mAddress);
        settings.setValue(NameKey, aCameras[i].mName);
        settings.setValue(ModelKey, aCameras[i].mModel);
    }
    settings.endArray();
    FillMenu();
}

void RecentCameras::FillMenu()
{
    mMenu->clear();
    int number = 0;
    for (const CameraIdentity &camera : Cameras()) {
        QAction *action = mMenu->addAction(LineOf(camera, ++number));
        action->setToolTip(tr("Unique ID %1").arg(camera.mUniqueID));
        connect(action, &QAction::triggered, this, [this, camera] { emit Chosen(camera); });
    }
    mMenu->addSeparator();
    QAction *clear = mMenu->addAction(tr("&Clear List"));
    clear->setObjectName(QStringLiteral("clearRecentAction"));
    // the menu must not be filled anew while it tells of this click
    connect(clear, &QAction::triggered, this, &RecentCameras::Clear, Qt::QueuedConnection);
    SetEnabled(mEnabled);
}
