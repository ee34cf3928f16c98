#pragma once

#include <QtCore/QThread>
#include <atomic>
#include <condition_variable>
#include <mutex>

#include "LxGUI/LxGenBrowserWnd.h"

class GenBrowserTree;
class GenBrowserTreeModel;
class LxGenParameterArray;

/// Keeps the features of a browser up to date.
///
/// It asks the tree which rows are on screen and waits for the answer, so the GUI thread must never wait for its end
/// without processing events, or without freeing it by removing the tree's posted events.
class GenBrowserThread : public QThread
{
    Q_OBJECT

public:
    /// All must live until the thread has ended.
    GenBrowserThread(GenBrowserTree *aTree, GenBrowserTreeModel *aModel, LxGenParameterArray *aParameters,
                     LxGenRefresh aMode);

    /// Makes the thread end soon. Any thread.
    void RequestStop();

protected:
    void run() override;

private:
    void RunAutomatic();
    void RunPolling();
    /// Refreshes all features, or those on screen. False when the thread is to end.
    bool Pass(bool aOnlyVisible);
    /// Waits; false as soon as the thread is to end.
    bool Sleep(int aMilliseconds);

    GenBrowserTree *const mTree;
    GenBrowserTreeModel *const mModel;
    LxGenParameterArray *const mParameters;
    const LxGenRefresh mMode;
    std::condition_variable mCondition;
    std::mutex mMutex;  // guards setting mStop against the waits
    std::atomic<bool> mStop{false};
};
