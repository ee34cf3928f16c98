#include "Worker.h"

#include <QtCore/QMetaObject>
#include <utility>

Worker::Worker()
{
    mThread = std::thread([this] { Run(); });
}

Worker::~Worker()
{
    {
        const std::lock_guard lock(mMutex);
        mIsEnding = true;
        mChanged.notify_all();
    }
    mThread.join();
}

void Worker::Post(Work aWork)
{
    const std::lock_guard lock(mMutex);
    mWorks.push_back(std::move(aWork));
    mChanged.notify_all();
}

void Worker::Run()
{
    std::unique_lock lock(mMutex);
    while (true) {
        mChanged.wait(lock, [this] { return mIsEnding || !mWorks.empty(); });
        if (mWorks.empty()) {
            return;
        }
        Work work = std::move(mWorks.front());
        mWorks.pop_front();
        mIsBusy = true;
        lock.unlock();
        work();
        work = nullptr;  // what it holds may take its time to go
        lock.lock();
        mIsBusy = false;
        mChanged.notify_all();
    }
}

void Worker::Wait()
{
    std::unique_lock lock(mMutex);
    mChanged.wait(lock, [this] { return mWorks.empty() && !mIsBusy; });
}

void Worker::Answer(Work aWork)
{
    {
        const std::lock_guard lock(mMutex);
        mAnswers.push_back(std::move(aWork));
    }
    QMetaObject::invokeMethod(this, &Worker::TakeAnswer, Qt::QueuedConnection);
}

void Worker::TakeAnswer()
{
    std::unique_lock lock(mMutex);
    const Work work = std::move(mAnswers.front());
    mAnswers.pop_front();
    lock.unlock();
    work();
}
