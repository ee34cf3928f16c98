#include "FeatureBrowser.h"

#include <QtWidgets/QTreeView>

#include "LxDevice/LxDevice.h"
#include "LxGenICam/LxGenParameterArray.h"
#include "Veil.h"
#include "ViewerConfiguration.h"

namespace
{

constexpr int WindowWidth = 560;
constexpr int WindowHeight = 720;

}  // namespace

FeatureBrowser::FeatureBrowser(const char *aName) : mName(aName)
{
    mWindow.SetTitle(LxString(tr("Features").toUtf8().constData()));
    mWindow.SetPosition(-1, -1, WindowWidth, WindowHeight);
}

void FeatureBrowser::Embed(QWidget *aHost)
{
    mWindow.Create(aHost);
    mHasWidget = true;
}

void FeatureBrowser::ShowAsWindow(QWidget *aParent)
{
    mWindow.ShowModeless(aParent);
    mHasWidget = true;
    ApplyState();
}

void FeatureBrowser::Close()
{
    KeepState();
    mWindow.Close();
}

QTreeView *FeatureBrowser::Tree()
{
    // asking a window that was never shown for its widget would make one
    return mHasWidget ? mWindow.GetQWidget()->findChild<QTreeView *>(QStringLiteral("FeatureTree")) : nullptr;
}

void FeatureBrowser::SetDevice(LxDevice *aDevice, const QString &aCameraName)
{
    LxGenParameterArray *const parameters = aDevice ? aDevice->GetParameters() : nullptr;
    if (parameters == mParameters) {
        return;
    }
    KeepState();
    mParameters = parameters;
    mIsLost = false;
    if (aDevice) {
        if (mDeviceID != aDevice->GetUniqueID()) {
            mDeviceID = aDevice->GetUniqueID();
            mState = FeatureTreeState();
        }
        mWindow.SetTitle(LxString(tr("Features of %1").arg(aCameraName).toUtf8().constData()));
    }
    ShowAnew();
}

void FeatureBrowser::OnLinkLost()
{
    if (mParameters) {
        mIsLost = true;
        Mark();
    }
}

void FeatureBrowser::OnLinkBack()
{
    if (!mParameters) {
        return;
    }
    mIsLost = false;
    Mark();
    // the user goes on typing; what is typed is not thrown away
    QTreeView *const tree = Tree();
    if (const QWidget *editor = tree ? tree->viewport()->findChild<QWidget *>(QStringLiteral("ValueEditor")) : nullptr)
    {
        connect(editor, &QObject::destroyed, this, &FeatureBrowser::OnLinkBack, Qt::QueuedConnection);
        return;
    }
    KeepState();
    ShowAnew();
}

void FeatureBrowser::KeepState()
{
    QTreeView *const tree = Tree();
    if (mIsComplete && tree && tree->model()) {
        mState = FeatureTreeState(*tree);
    }
}

void FeatureBrowser::ShowAnew()
{
    mIsComplete = false;
    mWindow.SetGenParameterArray(mParameters);
    ApplyState();
}

void FeatureBrowser::ApplyState()
{
    QTreeView *const tree = Tree();
    if (mParameters && tree) {
        mState.ApplyTo(*tree);
        mIsComplete = mParameters->GetAccessMode() == 0;
    }
    Mark();
}

void FeatureBrowser::Mark()
{
    QTreeView *const tree = Tree();
    if (mIsLost && tree && !mVeil) {
        mVeil = new Veil(tree, tr("No answer: last known values"));
    }
    else if (!mIsLost) {
        delete mVeil;
    }
}

void FeatureBrowser::Load(const ViewerConfiguration &aConfiguration)
{
    LxPropertyList list = aConfiguration.Get(mName);
    mWindow.Load(list);
}

void FeatureBrowser::Save(ViewerConfiguration &aConfiguration)
{
    LxPropertyList list;
    mWindow.Save(list);
    aConfiguration.Set(mName, list);
}
