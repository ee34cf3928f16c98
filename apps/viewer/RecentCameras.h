#pragma once

#include <QtCore/QList>
#include <QtCore/QObject>

#include "CameraIdentity.h"

class QMenu;

/// The cameras that were connected last, the newest first, in the user's settings and in a menu. GUI thread.
class RecentCameras : public QObject
{
    Q_OBJECT

public:
    static constexpr int Limit = 8;

    /// Adds the submenu; it goes with the menu.
    RecentCameras(QMenu &aMenu, QObject *aParent);

    /// Puts a camera to the front. One of the same unique ID is replaced, as it may have another address now.
    void Add(const CameraIdentity &aCamera);
    QList<CameraIdentity> Cameras() const;
    /// While a connection attempt runs, none can be chosen.
    void SetEnabled(bool aEnabled);

public slots:
    void Clear();

signals:
    void Chosen(const CameraIdentity &aCamera);

private:
    void Store(const QList<CameraIdentity> &aCameras);
    void FillMenu();

    QMenu *mMenu;
    bool mEnabled = true;
};
