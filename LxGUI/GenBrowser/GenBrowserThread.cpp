#include "LxGUI/GenBrowser/GenBrowserThread.h"

#include <chrono>

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
    const std::lock_guard lock(mMutex);
    mStop = true;
    mCondition.notify_all();
}

bool GenBrowserThread::Sleep(int aMilliseconds)
{
    std::unique_lock lock(mMutex);
    return !mCondition.wait_for(lock, std::chrono::milliseconds(aMilliseconds), [this] { return mStop.load(); });
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
        if (!Sleep(0)) {
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
