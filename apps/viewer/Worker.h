#pragma once

#include <QtCore/QObject>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

/// A thread that does one thing after the other, in the order in which it was asked.
class Worker : public QObject
{
    Q_OBJECT

public:
    using Work = std::function<void()>;

    Worker();
    /// Waits until everything is done. Answers that did not come by then are dropped.
    ~Worker() override;

    /// Does something later on the thread. Any thread.
    void Post(Work aWork);
    /// Does something later on the thread that the worker was made on. Any thread.
    void Answer(Work aWork);
    /// Waits until everything that was posted is done.
    void Wait();

private:
    void Run();
    void TakeAnswer();

    std::mutex mMutex;  // guards everything below
    std::condition_variable mChanged;
    std::deque<Work> mWorks;
    std::deque<Work> mAnswers;
    bool mIsBusy = false;
    bool mIsEnding = false;
    std::thread mThread;
};
