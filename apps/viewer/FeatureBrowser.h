#pragma once

#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QString>

#include "FeatureTreeState.h"
#include "LxBase/LxString.h"
#include "LxGUI/LxGenBrowserWnd.h"

class LxDevice;
class QTreeView;
class Veil;
class ViewerConfiguration;

/// A browser of the features of the viewer's camera, in a widget or in a window of its own.
///
/// While the camera does not answer the last values stay, greyed. When it is back, or connected again, its features are
/// shown anew, with the same row current, the same categories closed and scrolled to the same place. GUI thread.
class FeatureBrowser : public QObject
{
    Q_OBJECT

public:
    /// @param aName of the options in the configuration.
    explicit FeatureBrowser(const char *aName);

    void Embed(QWidget *aHost);
    void ShowAsWindow(QWidget *aParent);
    void Close();

    /// Shows the features of a device, or with null none; the device must live until then. May process events.
    void SetDevice(LxDevice *aDevice, const QString &aCameraName = QString());
    void OnLinkLost();
    void OnLinkBack();

    void Load(const ViewerConfiguration &aConfiguration);
    void Save(ViewerConfiguration &aConfiguration);

    LxGenBrowserWnd &Window() { return mWindow; }
    /// Null before the browser was embedded or shown.
    QTreeView *Tree();

private:
    void KeepState();
    void ShowAnew();
    void ApplyState();
    void Mark();

    const char *const mName;
    LxGenBrowserWnd mWindow;
    LxGenParameterArray *mParameters = nullptr;
    LxString mDeviceID;
    FeatureTreeState mState;
    bool mHasWidget = false;
    bool mIsLost = false;
    bool mIsComplete = false;  // the tree was built while the device answered
    QPointer<Veil> mVeil;
};
