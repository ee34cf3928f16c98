#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>

#include "FeatureSettings.h"

class CameraSession;
class QAction;
class QMenu;
class QStatusBar;
class QWidget;
class ViewerConfiguration;

/// Saves the settings of the connected camera in files and loads them, and, for cameras of which the user wants it,
/// saves them whenever the camera is given up and restores them whenever it is connected. GUI thread; what waits for
/// the camera happens on the session's worker.
class CameraSettings : public QObject
{
    Q_OBJECT

public:
    /// @param aFolder where the settings of each camera are kept.
    CameraSettings(CameraSession &aSession, ViewerConfiguration &aConfiguration, const QString &aFolder,
                   QWidget &aWindow);

    void AddActions(QMenu &aFile, QMenu &aCamera);
    /// After connecting, before pictures come.
    void OnConnected();
    /// Before the camera is given up.
    void OnDisconnecting(bool aIsLinkLost);
    /// The actions follow the session. A camera that does not answer is neither read nor written.
    void UpdateActions(bool aIsLinkLost);

    void SaveTo(const QString &aFile);
    void LoadFrom(const QString &aFile);
    /// Whether the settings of the connected camera are saved and restored by themselves.
    bool IsKept() const;
    void SetKept(bool aKept);

signals:
    /// What was asked last has been done, and the user has been told.
    void Done();

private:
    QString KeptFile() const;
    void AskSave();
    void AskLoad();
    /// Does something with the camera while no stream runs; the stream goes on afterwards.
    template <class Work, class Answer>
    void WithoutStream(Work aWork, Answer aAnswer);
    void Tell(const QString &aHeadline, const FeatureSettings::Outcome &aOutcome);

    CameraSession &mSession;
    ViewerConfiguration &mConfiguration;
    const QString mFolder;
    QWidget &mWindow;
    QAction *mSaveAction = nullptr;
    QAction *mLoadAction = nullptr;
    QAction *mKeepAction = nullptr;
};
