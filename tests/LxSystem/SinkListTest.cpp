#include "LxBase/SinkList.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <thread>

#include "WaitFor.h"

namespace
{

struct Listener
{
    std::function<void()> mAct = [] {};
};

using Listeners = LxDetail::SinkList<Listener>;

void Call(Listener *aListener)
{
    aListener->mAct();
}

}  // namespace

TEST(SinkList, TwoThreadsInsideOneSinkMayBothRemoveIt)
{
    for (int i = 0; i < 100; ++i) {
        Listeners list;
        Listener listener;
        std::atomic<int> inside = 0;
        std::atomic<int> removed = 0;
        listener.mAct = [&] {
            ++inside;
            EXPECT_TRUE(WaitFor([&inside] { return inside == 2; }));
            removed += list.Remove(&listener) ? 1 : 0;
        };
        list.Add(&listener);
        std::thread first([&list] { list.Notify(Call); });
        std::thread second([&list] { list.Notify(Call); });
        first.join();
        second.join();
        EXPECT_EQ(removed, 1);
        EXPECT_TRUE(list.IsEmpty());
    }
}

TEST(SinkList, ASecondRemovalWaitsForTheRunningCallToo)
{
    Listeners list;
    Listener listener;
    std::atomic<bool> inside = false;
    std::atomic<bool> leave = false;
    std::atomic<bool> left = false;
    listener.mAct = [&] {
        inside = true;
        EXPECT_TRUE(WaitFor([&leave] { return leave.load(); }));
        left = true;
    };
    list.Add(&listener);
    std::thread caller([&list] { list.Notify(Call); });
    EXPECT_TRUE(WaitFor([&inside] { return inside.load(); }));
    std::thread first([&] {
        EXPECT_TRUE(list.Remove(&listener));
        EXPECT_TRUE(left);
    });
    EXPECT_TRUE(WaitFor([&list] { return list.IsEmpty(); }));
    std::thread second([&] {
        EXPECT_FALSE(list.Remove(&listener));
        EXPECT_TRUE(left);
    });
    leave = true;
    first.join();
    second.join();
    caller.join();
}

TEST(SinkList, NestedCallsAreCounted)
{
    Listeners list;
    Listener listener;
    int depth = 0;
    listener.mAct = [&] {
        if (++depth < 3) {
            list.Notify(Call);
        }
        else {
            EXPECT_TRUE(list.Remove(&listener));
        }
    };
    list.Add(&listener);
    list.Notify(Call);
    EXPECT_EQ(depth, 3);
    list.Notify(Call);
    EXPECT_EQ(depth, 3);
}

TEST(SinkList, ASinkThatWasRemovedMayBeAddedAgain)
{
    Listeners list;
    Listener listener;
    int calls = 0;
    listener.mAct = [&calls] { ++calls; };
    list.Add(&listener);
    EXPECT_TRUE(list.Remove(&listener));
    EXPECT_FALSE(list.Remove(&listener));
    list.Add(&listener);
    list.Notify(Call);
    EXPECT_EQ(calls, 1);
}

TEST(SinkList, ASinkAddedWithinACallIsCalledNextTime)
{
    Listeners list;
    Listener first;
    Listener second;
    int calls = 0;
    second.mAct = [&calls] { ++calls; };
    first.mAct = [&] { list.Add(&second); };
    list.Add(&first);
    list.Notify(Call);
    EXPECT_EQ(calls, 0);
    list.Notify(Call);
    EXPECT_EQ(calls, 1);
}

TEST(SinkList, ACallThatThrowsStillEnds)
{
    Listeners list;
    Listener listener;
    listener.mAct = [] { throw 1; };
    list.Add(&listener);
    EXPECT_THROW(list.Notify(Call), int);
    std::thread other([&] { EXPECT_TRUE(list.Remove(&listener)); });
    other.join();
}
