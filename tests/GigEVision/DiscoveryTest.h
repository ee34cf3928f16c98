#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "GvcpResponder.h"
#include "LxSystem/LxInterface.h"
#include "LxSystem/LxSystem.h"
#include "LxSystem/LxSystemEventSink.h"
#include "NetworkTest.h"
#include "WaitFor.h"

// Searches on a network of our own, with cameras that are functions of the test.

namespace Gvcp = LxDetail::Gvcp;

/// Keeps what searches report.
class Recorder : public LxSystemEventSink
{
public:
    void OnDeviceFound(const LxInterface *aInterface, const LxDeviceInfo *aInfo, bool &) override
    {
        const std::lock_guard lock(mMutex);
        mReports.emplace_back(aInterface, aInfo);
        mThread = std::this_thread::get_id();
    }
    std::vector<std::pair<const LxInterface *, const LxDeviceInfo *>> GetReports() const
    {
        const std::lock_guard lock(mMutex);
        return mReports;
    }
    void Clear()
    {
        const std::lock_guard lock(mMutex);
        mReports.clear();
    }
    std::thread::id GetThread() const
    {
        const std::lock_guard lock(mMutex);
        return mThread;
    }

private:
    mutable std::mutex mMutex;  // guards everything below
    std::vector<std::pair<const LxInterface *, const LxDeviceInfo *>> mReports;
    std::thread::id mThread;
};

/// Searches of 50 ms.
class Discovery : public NetworkTest
{
protected:
    void SetUp() override
    {
        NetworkTest::SetUp();
        mSystem.SetDetectionTimeout(50);
        mSystem.RegisterEventSink(&mRecorder);
    }

    const LxInterface *GetInterface(const std::string &aName) const
    {
        for (uint32_t i = 0; i < mSystem.GetInterfaceCount(); ++i) {
            if (mSystem.GetInterface(i)->GetUniqueID() == ("net:" + aName).c_str()) {
                return mSystem.GetInterface(i);
            }
        }
        return nullptr;
    }

    // Searches until all interfaces together have so many devices: an answer may be late on a busy machine. Only the
    // reports of the last search are kept.
    bool FindDevices(uint32_t aCount)
    {
        return WaitFor([this, aCount] {
            mRecorder.Clear();
            EXPECT_TRUE(mSystem.Find().IsOK());
            uint32_t count = 0;
            for (uint32_t i = 0; i < mSystem.GetInterfaceCount(); ++i) {
                count += mSystem.GetInterface(i)->GetDeviceCount();
            }
            return count == aCount;
        });
    }

    // Searches where a hundred answers come each time. A slow machine gets longer: else it would answer each search
    // when that is over, for ever.
    void FindInAFlood()
    {
        mRecorder.Clear();
        EXPECT_TRUE(mSystem.Find().IsOK());
        if (mRecorder.GetReports().size() < 100) {
            mSystem.SetDetectionTimeout(std::min(2 * mSystem.GetDetectionTimeout(), 1000U));
        }
    }

    LxSystem mSystem;
    Recorder mRecorder;
};

inline std::vector<Reply> AnswerAsCamera(const ReceivedCommand &aCommand)
{
    return {AnswerDiscovery(aCommand, MakeCamera(mac, loopbackAddress))};
}

/// A camera 10.9.9.9 at the far end of a wire that answers searches with a broadcast.
class ForeignCamera : public GvcpResponder
{
public:
    explicit ForeignCamera(const Wire &aWire)
        : GvcpResponder(
              [](const ReceivedCommand &aCommand) {
                  Reply reply = AnswerDiscovery(aCommand, MakeCamera(mac, 0x0A090909));
                  reply.mBroadcast = true;
                  return std::vector<Reply>{reply};
              },
              aWire.GetNamespace(), aWire.GetFarEnd())
    {
    }
};
