#include "LxGUI/GenBrowser/GenBrowserThread.h"

#include <QtCore/QDeadlineTimer>
#include <QtCore/QMutexLocker>
#include <utility>

#include "LxGUI/GenBrowser/GenBrowserTree.h"
#include "LxGUI/GenBrowser/GenBrowserTreeItem.h"
#include "LxGUI/GenBrowser/GenBrowserTreeModel.h"
#include "LxGUI/GenBrowser/GenBrowserTreeWalk.h"
#include "LxGenICam/LxGenParameterArray.h"

namespace
{

// Milliseconds between two passes, and between two polls.
constexpr int PassInterval = 2000;
constexpr int PollInterval = 100;

}  // namespace

GenBrowserThread::GenBrowserThread(GenBrowserTree *aTree, GenBrowserTreeModel *aModel, LxGenParameterArray *aParameters,
                                   LxGenRefresh aMode)
    : mTree(aTree), mModel(aModel), mParameters(aParameters), mMode(aMode)
{
}

void GenBrowserThread::RequestStop()
{
    const QMutexLocker lock(&mMutex);
    mStop = true;
    mCondition.wakeAll();
}

bool GenBrowserThread::GoOn()
{
    while (!mStop) {
        const GenBrowserTreeItem *item = nullptr;
        {
            const QMutexLocker lock(&mMutex);
            item = std::exchange(mToDescribe, nullptr);
        }
        if (!item) {
            break;
        }
        DescribeItem(*item);
    }
    return !mStop;
}

bool GenBrowserThread::Sleep(int aMilliseconds)
{
    const QDeadlineTimer deadline(aMilliseconds);
    bool isAwake = true;
    while (GoOn() && isAwake) {
        const QMutexLocker lock(&mMutex);
        isAwake = mToDescribe || (!mStop && mCondition.wait(&mMutex, deadline));
    }
    return !mStop;
}

bool GenBrowserThread::Describe(const GenBrowserTreeItem *aItem)
{
    const QMutexLocker lock(&mMutex);
    mDescription.reset();
    mCondition.wakeAll();
    return std::exchange(mToDescribe, aItem) == nullptr;
}

std::optional<QString> GenBrowserThread::TakeDescription(int aMilliseconds)
{
    const QMutexLocker lock(&mMutex);
    if (!mDescription) {
        mDescribed.wait(&mMutex, QDeadlineTimer(aMilliseconds));
    }
    return std::exchange(mDescription, std::nullopt);
}

void GenBrowserThread::DescribeItem(const GenBrowserTreeItem &aItem)
{
    const QString text = aItem.Description();
    {
        const QMutexLocker lock(&mMutex);
        if (mToDescribe) {
            return;  // another one was selected meanwhile
        }
        mDescription = text;
        mDescribed.wakeAll();
    }
    emit Described();
}

void GenBrowserThread::run()
{
    if (mMode == LxGenRefreshPolling) {
        RunPolling();
    }
    else {
        RunAutomatic();
    }
}

void GenBrowserThread::RunAutomatic()
{
    while (Pass(true) && Sleep(PassInterval)) {
    }
}

void GenBrowserThread::RunPolling()
{
    if (!Pass(false)) {
        return;
    }
    do {
        mParameters->Poll();
    } while (Sleep(PollInterval));
}

bool GenBrowserThread::Pass(bool aOnlyVisible)
{
    GenBrowserTreeWalk walk(*mModel);
    for (QModelIndex index = walk.Next(); index.isValid(); index = walk.Next()) {
        // Others get at the device between two rows. The GUI's answer is such a pause; a wait, even for no time, costs
        // more than all else that a row needs.
        if (aOnlyVisible ? !GoOn() : !Sleep(0)) {
            return false;
        }
        GenBrowserTreeItem *const item = GenBrowserTreeModel::Item(index);
        if (!item->Parameter() || (aOnlyVisible && !emit mTree->IsVisibleSignal(index))) {
            continue;
        }
        item->Refresh();
        const QModelIndex value = index.siblingAtColumn(GenBrowserTreeModel::ValueColumn);
        if (!mStop && value != mModel->EditIndex()) {
            emit mModel->RefreshItemSignal(index, value);
        }
    }
    return !mStop;
}
