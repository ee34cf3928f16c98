#pragma once

#include <QtCore/QMutex>
#include <QtCore/QString>
#include <QtCore/QThread>
#include <QtCore/QWaitCondition>
#include <atomic>
#include <optional>

#include "LxGUI/LxGenBrowserWnd.h"

class GenBrowserTree;
class GenBrowserTreeItem;
class GenBrowserTreeModel;
class LxGenParameterArray;

/// Keeps the features of a browser up to date, and describes the selected one, as both may have to wait for the device.
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

    /// Has an item described before the next one is refreshed, instead of the one that was asked for before.
    /// @return false when the thread has not come to that one yet, so that it seems to be waiting for the device.
    bool Describe(const GenBrowserTreeItem *aItem);
    /// Gives the description that was asked for last, once; waits for it for so many milliseconds at most.
    std::optional<QString> TakeDescription(int aMilliseconds = 0);

signals:
    /// There is a description to take. Emitted by the thread.
    void Described();

protected:
    void run() override;

private:
    void RunAutomatic();
    void RunPolling();
    /// Refreshes all features, or those on screen. False when the thread is to end.
    bool Pass(bool aOnlyVisible);
    /// Describes what is to be described; false as soon as the thread is to end.
    bool GoOn();
    /// The same, and waits for so long.
    bool Sleep(int aMilliseconds);
    void DescribeItem(const GenBrowserTreeItem &aItem);

    GenBrowserTree *const mTree;
    GenBrowserTreeModel *const mModel;
    LxGenParameterArray *const mParameters;
    const LxGenRefresh mMode;
    QWaitCondition mCondition;  // mStop or mToDescribe was set
    QWaitCondition mDescribed;  // mDescription was set
    QMutex mMutex;              // guards everything below; setting mStop, too
    const GenBrowserTreeItem *mToDescribe = nullptr;
    std::optional<QString> mDescription;
    std::atomic<bool> mStop{false};
};
