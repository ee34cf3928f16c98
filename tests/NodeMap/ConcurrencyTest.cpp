// Several threads at once.

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <future>
#include <latch>
#include <thread>
#include <vector>

#include "TestCamera.h"
#include "WaitFor.h"

using namespace std::chrono_literals;

namespace
{

std::string TwoFeatures()
{
    return Reg("AReg", 0x1000) + Reg("BReg", 0x1004) + Reg("Slow", 0x1008) + Integer("A", "AReg") +
           Integer("B", "BReg") + Integer("S", "Slow");
}

// Blocks in its first call until it is let go.
struct BlockingSink : LxGenEventSink
{
    void OnParameterUpdate(LxGenParameter *) override
    {
        if (mCalls++ > 0) {
            return;
        }
        mInside = true;
        mLeave.wait();
        mInside = false;
    }
    std::atomic<int> mCalls{0};
    std::atomic<bool> mInside{false};
    std::latch mLeave{1};
};

}  // namespace

TEST(Threads, ReadAndWriteOneNodeMap)
{
    const TestCamera camera("A B S", TwoFeatures());
    std::vector<std::thread> threads;
    std::atomic<int> failures{0};
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&, i] {
            for (int n = 0; n < 500; ++n) {
                int64_t value = 0;
                LxString text;
                const bool ok = camera.Int(i % 2 ? "A" : "B").SetValue(n).IsOK() &&
                                camera.Int(i % 2 ? "B" : "A").GetValue(value).IsOK() && value >= 0 && value < 500 &&
                                camera["S"].GetDisplayName(text).IsOK() && camera["S"].IsWritable() &&
                                camera.mParameters->Poll().IsOK();
                failures += ok ? 0 : 1;
            }
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    EXPECT_EQ(failures, 0);
}

TEST(Threads, MakeNodeMapsAtTheSameTime)
{
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([] {
            for (int n = 0; n < 20; ++n) {
                const TestCamera camera("A B S", TwoFeatures());
                EXPECT_EQ(camera.Get("A"), 0);
            }
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
}

TEST(FailFast, NobodyWaitsForAThreadThatIsStuckOnceTheDeviceIsSuspect)
{
    const TestCamera camera("A B S", TwoFeatures());
    camera.mPort->Freeze(std::chrono::hours(1));
    auto stuck = std::async(std::launch::async, [&] {
        int64_t value = 0;
        return camera.Int("S").GetValue(value);
    });
    ASSERT_TRUE(WaitFor([&] { return camera.mPort->GetReadCount() == 1; }));
    std::atomic<int> waiting{0};
    std::vector<std::future<LxResult>> waiters;
    for (int i = 0; i < 4; ++i) {
        waiters.push_back(std::async(std::launch::async, [&] {
            int64_t value = 0;
            ++waiting;
            return camera.Int("A").GetValue(value);
        }));
    }
    ASSERT_TRUE(WaitFor([&] { return waiting == 4; }));
    camera.mPort->SetState(LxResult(LxResultCode::Timeout, "The device does not answer."));
    for (auto &waiter : waiters) {
        EXPECT_EQ(waiter.get(), LxResultCode::Timeout);
    }
    bool answer = true;
    EXPECT_EQ(camera["B"].IsAvailable(answer), LxResultCode::Timeout);
    EXPECT_EQ(camera.mParameters->Poll(), LxResultCode::OK) << "there is no sink to poll for";
    EXPECT_EQ(stuck.wait_for(0s), std::future_status::timeout) << "still stuck";
    camera.mPort->SetState(LxResult());
    camera.mPort->Thaw();
    EXPECT_TRUE(stuck.get().IsOK());
    EXPECT_EQ(camera.Get("A"), 0);
}

TEST(FailFast, TheStateChangesThoughASinkKeepsTheThreadThatTellsIt)
{
    const TestCamera camera("A B S", TwoFeatures());
    BlockingSink busy;
    camera["A"].RegisterEventSink(&busy);
    auto vanishing = std::async(std::launch::async, [&] { camera.mPort->Vanish(); });
    ASSERT_TRUE(WaitFor([&] { return busy.mInside.load(); }));
    int64_t value = 0;
    EXPECT_EQ(camera.Int("A").GetValue(value), LxResultCode::NotConnected);
    std::atomic<bool> begun{false};
    auto unregistering = std::async(std::launch::async, [&] {
        begun = true;
        camera["A"].UnregisterEventSink(&busy);
        EXPECT_FALSE(busy.mInside) << "it waits for the call that runs";
    });
    ASSERT_TRUE(WaitFor([&] { return begun.load(); }));
    camera.mPort->Return();
    EXPECT_TRUE(camera.Int("A").GetValue(value).IsOK());
    EXPECT_EQ(vanishing.wait_for(0s), std::future_status::timeout) << "the sink is still busy";
    busy.mLeave.count_down();
    vanishing.get();
    unregistering.get();
}

TEST(FailFast, SinksComeAndGoWhileAThreadIsStuck)
{
    const TestCamera camera("A B S", TwoFeatures());
    camera.mPort->Freeze(std::chrono::hours(1));
    auto stuck = std::async(std::launch::async, [&] {
        int64_t value = 0;
        return camera.Int("S").GetValue(value);
    });
    ASSERT_TRUE(WaitFor([&] { return camera.mPort->GetReadCount() == 1; }));
    CountingSink sink;
    EXPECT_TRUE(camera["S"].RegisterEventSink(&sink).IsOK());
    EXPECT_TRUE(camera["S"].UnregisterEventSink(&sink).IsOK());
    LxString text;
    LxGenParameterList list;
    EXPECT_TRUE(camera["S"].GetToolTip(text).IsOK());
    EXPECT_TRUE(camera["S"].GetSelectedParameters(list).IsOK());
    EXPECT_EQ(camera.mParameters->GetAccessMode(), 0);
    camera.mParameters->InvalidateCache();
    EXPECT_EQ(stuck.wait_for(0s), std::future_status::timeout);
    camera.mPort->Thaw();
    EXPECT_TRUE(stuck.get().IsOK());
}

TEST(SinkBarrier, UnregisteringWaitsForACallOnAnotherThread)
{
    const TestCamera camera("A B S", TwoFeatures());
    BlockingSink sink;
    camera["A"].RegisterEventSink(&sink);
    std::thread writer([&] { EXPECT_TRUE(camera.Int("A").SetValue(1).IsOK()); });
    ASSERT_TRUE(WaitFor([&] { return sink.mInside.load(); }));
    EXPECT_EQ(camera.Get("B"), 0) << "no lock is held while a sink runs";
    auto done = std::async(std::launch::async, [&] {
        const LxResult result = camera["A"].UnregisterEventSink(&sink);
        EXPECT_FALSE(sink.mInside);
        return result;
    });
    int64_t next = 2;
    ASSERT_TRUE(WaitFor([&] {
        const int calls = sink.mCalls;
        EXPECT_TRUE(camera.Int("A").SetValue(next++).IsOK());
        return sink.mCalls == calls;
    })) << "nobody calls it any more";
    EXPECT_EQ(done.wait_for(0s), std::future_status::timeout) << "it waits for the call that runs";
    sink.mLeave.count_down();
    EXPECT_TRUE(done.get().IsOK());
    writer.join();
}

TEST(SinkBarrier, ASinkMayRemoveItself)
{
    const TestCamera camera("A B S", TwoFeatures());
    struct Sink : CountingSink
    {
        void OnParameterUpdate(LxGenParameter *aParameter) override
        {
            CountingSink::OnParameterUpdate(aParameter);
            EXPECT_TRUE(aParameter->UnregisterEventSink(this).IsOK());
        }
    } sink;
    camera["A"].RegisterEventSink(&sink);
    EXPECT_TRUE(camera.Int("A").SetValue(1).IsOK());
    EXPECT_TRUE(camera.Int("A").SetValue(2).IsOK());
    EXPECT_EQ(sink.Take(), 1);
}

TEST(SinkBarrier, SinksMayRemoveEachOtherFromTwoThreads)
{
    const TestCamera camera("A B S", TwoFeatures());
    std::latch both(2);
    struct Sink : LxGenEventSink
    {
        void OnParameterUpdate(LxGenParameter *) override
        {
            mBoth->arrive_and_wait();
            EXPECT_TRUE(mOther->UnregisterEventSink(mOtherSink).IsOK());
        }
        std::latch *mBoth = nullptr;
        LxGenParameter *mOther = nullptr;
        LxGenEventSink *mOtherSink = nullptr;
    } a, b;
    a.mBoth = b.mBoth = &both;
    a.mOther = &camera["B"];
    a.mOtherSink = &b;
    b.mOther = &camera["A"];
    b.mOtherSink = &a;
    camera["A"].RegisterEventSink(&a);
    camera["B"].RegisterEventSink(&b);
    std::thread one([&] { camera.Int("A").SetValue(1); });
    std::thread two([&] { camera.Int("B").SetValue(1); });
    one.join();
    two.join();
    EXPECT_EQ(camera["A"].UnregisterEventSink(&a), LxResultCode::NotFound);
    EXPECT_EQ(camera["B"].UnregisterEventSink(&b), LxResultCode::NotFound);
}

TEST(SinkBarrier, HoldsUnderStress)
{
    const TestCamera camera("A B S", TwoFeatures());
    std::atomic<bool> stop{false};
    std::vector<std::thread> threads;
    for (int i = 0; i < 2; ++i) {
        threads.emplace_back([&, i] {
            for (int n = 0; !stop; ++n) {
                camera.Int(i ? "A" : "B").SetValue(n % 100);
                camera.mParameters->Poll();
            }
        });
    }
    threads.emplace_back([&] {
        while (!stop) {
            camera.mPort->SetState(LxResult(LxResultCode::Timeout));
            camera.mPort->SetState(LxResult());
        }
    });
    struct Sink : LxGenEventSink
    {
        ~Sink() override
        {
            EXPECT_FALSE(mInside);
            mAlive = 0;
        }
        void OnParameterUpdate(LxGenParameter *aParameter) override
        {
            ++mInside;
            EXPECT_EQ(mAlive, 0x600D);
            int64_t value = 0;
            dynamic_cast<LxGenInteger *>(aParameter)->GetValue(value);
            --mInside;
        }
        std::atomic<int> mAlive{0x600D};
        std::atomic<int> mInside{0};
    };
    for (int n = 0; n < 300; ++n) {
        auto sink = std::make_unique<Sink>();
        for (const char *name : {"A", "B", "S"}) {
            EXPECT_TRUE(camera[name].RegisterEventSink(sink.get()).IsOK());
        }
        for (const char *name : {"A", "B", "S"}) {
            EXPECT_TRUE(camera[name].UnregisterEventSink(sink.get()).IsOK());
        }
    }
    stop = true;
    for (std::thread &thread : threads) {
        thread.join();
    }
}
