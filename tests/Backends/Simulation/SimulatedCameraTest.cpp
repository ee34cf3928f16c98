#include "Backends/Simulation/SimulatedCamera.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <bit>
#include <cstring>
#include <future>
#include <thread>

#include "Backends/Simulation/SimulatedRegisters.h"
#include "WaitFor.h"

using namespace LxDetail;
namespace R = SimulatedRegister;

namespace
{

class SimulatedCameraTest : public testing::Test
{
protected:
    LxResult Write(uint64_t aAddress, uint32_t aValue)
    {
        const uint8_t bytes[4] = {uint8_t(aValue >> 24), uint8_t(aValue >> 16), uint8_t(aValue >> 8), uint8_t(aValue)};
        return Port().Write(aAddress, bytes, 4);
    }
    LxResult WriteFloat(uint64_t aAddress, double aValue)
    {
        const auto bits = std::bit_cast<uint64_t>(aValue);
        uint8_t bytes[8];
        for (int i = 0; i < 8; ++i) {
            bytes[i] = uint8_t(bits >> (56 - 8 * i));
        }
        return Port().Write(aAddress, bytes, 8);
    }
    uint32_t Read(uint64_t aAddress)
    {
        uint8_t bytes[4] = {};
        EXPECT_TRUE(Port().Read(aAddress, bytes, 4).IsOK()) << std::hex << aAddress;
        return uint32_t(bytes[0]) << 24 | uint32_t(bytes[1]) << 16 | uint32_t(bytes[2]) << 8 | bytes[3];
    }
    uint64_t Read64(uint64_t aAddress) { return uint64_t(Read(aAddress)) << 32 | Read(aAddress + 4); }
    double ReadFloat(uint64_t aAddress) { return std::bit_cast<double>(Read64(aAddress)); }
    MemoryPort &Port() { return *mCamera.GetPort(); }
    std::vector<uint8_t> Draw(uint64_t aNumber = 0)
    {
        std::vector<uint8_t> frame(mCamera.GetPayloadSize(), 0xA5);
        mCamera.DrawFrame(aNumber, frame.data(), frame.size());
        return frame;
    }
    /// Whether so much time has passed since a command was written that it may be done.
    static bool IsSlow(std::chrono::steady_clock::time_point aWritten)
    {
        return std::chrono::steady_clock::now() - aWritten >= std::chrono::milliseconds(200);
    }
    void SetSize(uint32_t aWidth, uint32_t aHeight)
    {
        ASSERT_TRUE(Write(R::Width, aWidth).IsOK());
        ASSERT_TRUE(Write(R::Height, aHeight).IsOK());
    }
    static double Mean(const std::vector<uint8_t> &aBytes)
    {
        double sum = 0.0;
        for (const uint8_t byte : aBytes) {
            sum += byte;
        }
        return sum / static_cast<double>(aBytes.size());
    }

    SimulatedCamera mCamera{SimulatedCameraIdentity{}};
    std::atomic<bool> mStop{false};
};

}  // namespace

TEST_F(SimulatedCameraTest, BootstrapRegistersCarryTheIdentity)
{
    SimulatedCameraIdentity identity;
    identity.mUserName = "left";
    identity.mSerialNumber = "0123456789ABCDEF";  // fills its field without a terminating zero
    identity.mMACAddress = 0x0200AABBCCDD;
    identity.mIPAddress = 0xC0A80114;
    SimulatedCamera camera(identity);
    MemoryPort &port = *camera.GetPort();
    EXPECT_EQ(port.Peek32(0x0008), 0x0200u);
    EXPECT_EQ(port.Peek32(0x000C), 0xAABBCCDDu);
    EXPECT_EQ(port.Peek32(0x0024), 0xC0A80114u);
    EXPECT_EQ(port.PeekString(0x0048, 32), identity.mVendor);
    EXPECT_EQ(port.PeekString(0x0068, 32), identity.mModel);
    EXPECT_EQ(port.PeekString(0x00D8, 16), identity.mSerialNumber);
    EXPECT_EQ(port.PeekString(0x00E8, 16), "left");
    uint8_t discovery[0xF8];
    EXPECT_TRUE(port.Read(0, discovery, sizeof(discovery)).IsOK());
}

TEST_F(SimulatedCameraTest, URLPointsAtTheXMLInTheRegisters)
{
    char name[64] = {};
    unsigned address = 0;
    unsigned length = 0;
    ASSERT_EQ(std::sscanf(Port().PeekString(0x0200, 512).c_str(), "Local:%63[^;];%x;%x", name, &address, &length), 3);
    std::string xml(length, '\0');
    ASSERT_TRUE(Port().Read(address, xml.data(), length).IsOK());
    EXPECT_EQ(xml, mCamera.GetXML());
    EXPECT_THAT(std::string(name), testing::EndsWith(".xml"));
}

TEST_F(SimulatedCameraTest, PayloadSizeFollowsGeometryAndFormat)
{
    EXPECT_EQ(mCamera.GetPayloadSize(), 1280u * 1024);
    SetSize(640, 480);
    ASSERT_TRUE(Write(R::PixelFormat, uint32_t(LxPixelType::RGB8)).IsOK());
    EXPECT_EQ(mCamera.GetPayloadSize(), 640u * 480 * 3);
    EXPECT_EQ(Read64(R::PayloadSize), 640u * 480 * 3);
    EXPECT_EQ(Read(R::PixelSize), 24u);
    ASSERT_TRUE(Write(R::PixelFormat, uint32_t(LxPixelType::BayerGR12p)).IsOK());
    EXPECT_EQ(mCamera.GetPayloadSize(), 640u * 480 * 12 / 8);
    EXPECT_EQ(Read(R::PixelColorFilter), 3u);
    EXPECT_EQ(Read(R::PixelDynamicRangeMax), 4095u);
}

TEST_F(SimulatedCameraTest, WidthAndOffsetLimitEachOther)
{
    EXPECT_EQ(Write(R::Width, 4100), LxResultCode::InvalidParameter);
    EXPECT_EQ(Write(R::Width, 1281), LxResultCode::InvalidParameter);
    EXPECT_EQ(Read(R::Width), 1280u) << "a refused value must not stay";
    EXPECT_EQ(Write(R::OffsetX, 4096 - 1280 + 4), LxResultCode::InvalidParameter);
    EXPECT_TRUE(Write(R::OffsetX, 4096 - 1280).IsOK());
    EXPECT_EQ(Write(R::Width, 1284), LxResultCode::InvalidParameter);
    EXPECT_TRUE(Write(R::OffsetX, 0).IsOK());
    EXPECT_TRUE(Write(R::Width, 4096).IsOK());
}

TEST_F(SimulatedCameraTest, BinningShrinksThePicture)
{
    SetSize(4096, 4096);
    ASSERT_TRUE(Write(R::BinningHorizontal, 4).IsOK());
    EXPECT_EQ(Read(R::WidthMax), 1024u);
    EXPECT_EQ(Read(R::Width), 1024u);
    EXPECT_EQ(Write(R::BinningVertical, 3), LxResultCode::InvalidParameter);
    EXPECT_EQ(mCamera.GetPayloadSize(), 1024u * 4096);
}

TEST_F(SimulatedCameraTest, ExposureAndFrameRateLimitEachOther)
{
    EXPECT_NEAR(ReadFloat(R::ExposureTimeMax), 40000.0 - 20.0, 0.1);
    EXPECT_EQ(WriteFloat(R::ExposureTime, 50000.0), LxResultCode::InvalidParameter);
    EXPECT_TRUE(WriteFloat(R::ExposureTime, 39000.0).IsOK());
    EXPECT_TRUE(WriteFloat(R::AcquisitionFrameRate, 100.0).IsOK());
    EXPECT_NEAR(ReadFloat(R::ExposureTime), 9980.0, 0.1);
    EXPECT_EQ(WriteFloat(R::AcquisitionFrameRate, 0.0), LxResultCode::InvalidParameter);
    EXPECT_EQ(WriteFloat(R::AcquisitionFrameRate, std::nan("")), LxResultCode::InvalidParameter);
    EXPECT_DOUBLE_EQ(mCamera.GetFrameRate(), 100.0);
}

TEST_F(SimulatedCameraTest, LargePicturesLimitTheFrameRate)
{
    EXPECT_TRUE(WriteFloat(R::AcquisitionFrameRate, 900.0).IsOK());
    SetSize(4096, 4096);
    EXPECT_NEAR(ReadFloat(R::AcquisitionFrameRate), 1.25e9 / (4096.0 * 4096.0), 0.01);
}

TEST_F(SimulatedCameraTest, SettingsOfTheSizeAreLockedWhileAcquiring)
{
    ASSERT_TRUE(Write(R::AcquisitionStart, 1).IsOK());
    EXPECT_TRUE(mCamera.IsAcquiring());
    EXPECT_EQ(Write(R::Width, 640), LxResultCode::WriteProtected);
    EXPECT_EQ(Write(R::PixelFormat, uint32_t(LxPixelType::Mono16)), LxResultCode::WriteProtected);
    EXPECT_TRUE(WriteFloat(R::ExposureTime, 5000.0).IsOK());
    ASSERT_TRUE(Write(R::AcquisitionStop, 1).IsOK());
    EXPECT_FALSE(mCamera.IsAcquiring());
    EXPECT_TRUE(Write(R::Width, 640).IsOK());
}

TEST_F(SimulatedCameraTest, ListenerHearsOfStartAndStopOnce)
{
    std::vector<bool> heard;
    mCamera.SetAcquisitionListener([&](bool aAcquiring) {
        EXPECT_EQ(mCamera.IsAcquiring(), aAcquiring) << "the listener may call the camera";
        heard.push_back(aAcquiring);
    });
    Write(R::AcquisitionStart, 1);
    Write(R::AcquisitionStart, 1);
    Write(R::AcquisitionStop, 1);
    Write(R::AcquisitionStop, 1);
    Write(R::AcquisitionStart, 1);
    mCamera.AbortAcquisition();
    mCamera.AbortAcquisition();
    EXPECT_THAT(heard, testing::ElementsAre(true, false, true, false));
}

TEST_F(SimulatedCameraTest, SingleFrameModeTakesOne)
{
    ASSERT_TRUE(Write(R::AcquisitionMode, 1).IsOK());
    Write(R::AcquisitionStart, 1);
    EXPECT_TRUE(mCamera.WaitForFrame(mStop));
    EXPECT_FALSE(mCamera.WaitForFrame(mStop));
    EXPECT_FALSE(mCamera.IsAcquiring());
}

TEST_F(SimulatedCameraTest, MultiFrameModeTakesAsManyAsAskedFor)
{
    ASSERT_TRUE(Write(R::AcquisitionMode, 2).IsOK());
    ASSERT_TRUE(Write(R::AcquisitionFrameCount, 5).IsOK());
    ASSERT_TRUE(WriteFloat(R::AcquisitionFrameRate, 500.0).IsOK());
    ASSERT_TRUE(Write(R::CounterEventSource, 1).IsOK());
    Write(R::AcquisitionStart, 1);
    int frames = 0;
    while (mCamera.WaitForFrame(mStop)) {
        ++frames;
    }
    EXPECT_EQ(frames, 5);
    EXPECT_EQ(Read(R::CounterValue), 5u);
}

TEST_F(SimulatedCameraTest, FramesComeAtTheFrameRate)
{
    ASSERT_TRUE(WriteFloat(R::AcquisitionFrameRate, 200.0).IsOK());
    const auto start = std::chrono::steady_clock::now();
    Write(R::AcquisitionStart, 1);
    for (int i = 0; i < 21; ++i) {
        ASSERT_TRUE(mCamera.WaitForFrame(mStop));
    }
    // Never early; how late depends on the machine.
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(100));
}

TEST_F(SimulatedCameraTest, SoftwareTriggerTakesOneFrameEach)
{
    ASSERT_TRUE(Write(R::TriggerMode, 1).IsOK());
    Write(R::TriggerSoftware, 1);  // not acquiring yet: lost
    Write(R::AcquisitionStart, 1);
    EXPECT_EQ(Read(R::AcquisitionStatus), 1u) << "waits for a trigger";
    Write(R::TriggerSoftware, 1);
    EXPECT_TRUE(mCamera.WaitForFrame(mStop));
    auto waiting = std::async(std::launch::async, [&] { return mCamera.WaitForFrame(mStop); });
    Write(R::TriggerSoftware, 1);
    EXPECT_TRUE(waiting.get());
    waiting = std::async(std::launch::async, [&] { return mCamera.WaitForFrame(mStop); });
    Write(R::AcquisitionStop, 1);
    EXPECT_FALSE(waiting.get());
}

TEST_F(SimulatedCameraTest, StopFlagEndsTheWait)
{
    ASSERT_TRUE(WriteFloat(R::AcquisitionFrameRate, 0.1).IsOK());
    ASSERT_TRUE(Write(R::TriggerMode, 1).IsOK());
    Write(R::AcquisitionStart, 1);
    auto waiting = std::async(std::launch::async, [&] { return mCamera.WaitForFrame(mStop); });
    mStop = true;
    EXPECT_FALSE(waiting.get());
}

TEST_F(SimulatedCameraTest, CommandIsDoneAfterAWhile)
{
    const auto start = std::chrono::steady_clock::now();
    ASSERT_TRUE(Write(R::SimCommand, 1).IsOK());
    const uint32_t pending = Read(R::SimCommand);
    const uint32_t count = Read(R::SimCommandCount);
    EXPECT_TRUE((pending == 1 && count == 0) || IsSlow(start)) << pending << ' ' << count;
    EXPECT_TRUE(WaitFor([&] { return Read(R::SimCommand) == 0; }));
    EXPECT_EQ(Read(R::SimCommandCount), 1u);
}

TEST_F(SimulatedCameraTest, UserSetRemembersSettingsAndResetBringsTheDefault)
{
    ASSERT_TRUE(WriteFloat(R::Gain, 6.0).IsOK());
    ASSERT_TRUE(Write(R::Width, 640).IsOK());
    EXPECT_EQ(Write(R::UserSetSave, 1), LxResultCode::WriteProtected) << "the default set is fixed";
    ASSERT_TRUE(Write(R::UserSetSelector, 1).IsOK());
    ASSERT_TRUE(Write(R::UserSetSave, 1).IsOK());
    EXPECT_TRUE(WaitFor([&] { return Read(R::UserSetSave) == 0; }));

    Write(R::AcquisitionStart, 1);
    ASSERT_TRUE(Write(R::DeviceReset, 1).IsOK());
    EXPECT_FALSE(mCamera.IsAcquiring());
    EXPECT_TRUE(WaitFor([&] { return Read(R::DeviceReset) == 0; }));
    EXPECT_EQ(Read(R::Width), 1280u);
    EXPECT_DOUBLE_EQ(ReadFloat(R::Gain), 0.0);

    ASSERT_TRUE(Write(R::UserSetSelector, 1).IsOK());
    const auto start = std::chrono::steady_clock::now();
    ASSERT_TRUE(Write(R::UserSetLoad, 1).IsOK());
    EXPECT_TRUE(Write(R::AcquisitionStart, 1) == LxResultCode::Busy || IsSlow(start))
        << "the size of the pictures is about to change";
    EXPECT_TRUE(WaitFor([&] { return Read(R::UserSetLoad) == 0; }));
    EXPECT_EQ(Read(R::Width), 640u);
    EXPECT_DOUBLE_EQ(ReadFloat(R::Gain), 6.0);
}

TEST_F(SimulatedCameraTest, TimestampRunsIsLatchedAndReset)
{
    const uint64_t first = Read64(R::Timestamp);
    EXPECT_TRUE(WaitFor([&] { return Read64(R::Timestamp) > first; }));
    ASSERT_TRUE(Write(0x0944, 2).IsOK());
    const uint64_t latched = Read64(0x0948);
    EXPECT_GT(latched, first);
    EXPECT_EQ(Read64(0x0948), latched);
    EXPECT_FALSE(Port().Read(0x0944, std::array<uint8_t, 4>().data(), 4).IsOK()) << "write-only";
    const auto before = std::chrono::steady_clock::now();
    ASSERT_TRUE(Write(R::TimestampReset, 1).IsOK());
    const std::chrono::nanoseconds since(Read64(R::Timestamp));
    EXPECT_LE(since, std::chrono::steady_clock::now() - before);
}

TEST_F(SimulatedCameraTest, FailingRegistersAnswerWithTheirErrors)
{
    uint8_t bytes[16] = {};
    EXPECT_EQ(Port().Read(R::SimFailing, bytes, 4), LxResultCode::InvalidParameter);
    EXPECT_EQ(Write(R::SimFailing, 5), LxResultCode::InvalidParameter);
    EXPECT_EQ(Port().Read(R::SimFailingRead, bytes, 8), LxResultCode::Busy);
    EXPECT_TRUE(WriteFloat(R::SimFailingRead, 5.0).IsOK());
    EXPECT_TRUE(Port().Read(R::SimFailingWrite, bytes, 16).IsOK());
    EXPECT_EQ(Port().Write(R::SimFailingWrite, bytes, 16), LxResultCode::WriteProtected);
    EXPECT_EQ(Write(R::SimFailingEnumeration, 1), LxResultCode::InvalidAddress);
    EXPECT_EQ(Write(R::SimCommandFailing, 1), LxResultCode::NotSupported);
    EXPECT_EQ(Write(R::SimReadOnly, 1), LxResultCode::WriteProtected);
    EXPECT_EQ(Port().Read(0x9000, bytes, 4), LxResultCode::InvalidAddress);
}

TEST_F(SimulatedCameraTest, GainAndExposureMakeThePictureBrighter)
{
    SetSize(256, 256);
    const double dark = Mean(Draw());
    ASSERT_TRUE(WriteFloat(R::Gain, 6.0).IsOK());
    const double bright = Mean(Draw());
    EXPECT_GT(bright, dark * 1.5);
    ASSERT_TRUE(WriteFloat(R::ExposureTime, 1000.0).IsOK());
    EXPECT_LT(Mean(Draw()), bright / 2);
    ASSERT_TRUE(WriteFloat(R::BlackLevel, 64.0).IsOK());
    const auto lifted = Draw();
    EXPECT_GE(*std::min_element(lifted.begin(), lifted.end()), 60);
}

TEST_F(SimulatedCameraTest, AutomaticGainOnceGoesBackToOff)
{
    ASSERT_TRUE(WriteFloat(R::ExposureTime, 5000.0).IsOK());
    ASSERT_TRUE(Write(R::GainAuto, 1).IsOK());
    EXPECT_TRUE(WaitFor([&] { return Read(R::GainAuto) == 0; }));
    EXPECT_NEAR(ReadFloat(R::Gain), 6.02, 0.01);
}

TEST_F(SimulatedCameraTest, SceneMovesAndTestPatternsStandStill)
{
    SetSize(256, 128);
    EXPECT_NE(Draw(1), Draw(2));
    for (const uint32_t pattern : {1u, 2u, 3u, 4u, 6u}) {
        ASSERT_TRUE(Write(R::TestPattern, pattern).IsOK());
        EXPECT_EQ(Draw(1), Draw(2)) << pattern;
    }
    ASSERT_TRUE(Write(R::TestPattern, 5).IsOK());
    EXPECT_NE(Draw(1), Draw(2));
    EXPECT_EQ(Write(R::TestPattern, 7), LxResultCode::InvalidParameter);
}

TEST_F(SimulatedCameraTest, TestPatternsHaveTheValuesOfTheirNames)
{
    SetSize(256, 256);
    ASSERT_TRUE(Write(R::TestPattern, 1).IsOK());
    EXPECT_THAT(Draw(), testing::Each(0));
    ASSERT_TRUE(Write(R::TestPattern, 2).IsOK());
    EXPECT_THAT(Draw(), testing::Each(255));
    ASSERT_TRUE(Write(R::TestPattern, 3).IsOK());
    auto frame = Draw();
    for (size_t i = 0; i < frame.size(); ++i) {
        ASSERT_EQ(frame[i], i % 256);
    }
    ASSERT_TRUE(Write(R::ReverseX, 1).IsOK());
    EXPECT_EQ(Draw()[0], 255);
    ASSERT_TRUE(Write(R::ReverseX, 0).IsOK());
    ASSERT_TRUE(Write(R::TestPattern, 4).IsOK());
    frame = Draw();
    for (size_t i = 0; i < frame.size(); ++i) {
        ASSERT_EQ(frame[i], i / 256);
    }
    ASSERT_TRUE(Write(R::ReverseY, 1).IsOK());
    EXPECT_EQ(Draw()[0], 255);
}

TEST_F(SimulatedCameraTest, ColorBarsInRGB)
{
    SetSize(256, 16);
    ASSERT_TRUE(Write(R::PixelFormat, uint32_t(LxPixelType::RGB8)).IsOK());
    ASSERT_TRUE(Write(R::TestPattern, 6).IsOK());
    const auto frame = Draw();
    const uint8_t expected[8][3] = {{255, 255, 255}, {255, 255, 0}, {0, 255, 255}, {0, 255, 0},
                                    {255, 0, 255},   {255, 0, 0},   {0, 0, 255},   {0, 0, 0}};
    for (int bar = 0; bar < 8; ++bar) {
        const uint8_t *pixel = frame.data() + (bar * 32 + 16) * 3;
        EXPECT_EQ(std::memcmp(pixel, expected[bar], 3), 0) << bar;
    }
}

TEST_F(SimulatedCameraTest, LookUpTableInverts)
{
    SetSize(64, 16);
    const auto plain = Draw();
    for (uint32_t i = 0; i < 256; ++i) {
        ASSERT_TRUE(Write(R::LUTValue + 4 * i, 255 - i).IsOK());
    }
    ASSERT_TRUE(Write(R::LUTEnable, 1).IsOK());
    const auto inverted = Draw();
    for (size_t i = 0; i < plain.size(); ++i) {
        ASSERT_NEAR(plain[i], 255 - inverted[i], 1) << i;
    }
}

TEST_F(SimulatedCameraTest, PackedFormatsCarryThePixelsOfTheUnpackedOnes)
{
    SetSize(64, 16);
    ASSERT_TRUE(Write(R::PixelFormat, uint32_t(LxPixelType::Mono12)).IsOK());
    const auto plain = Draw(3);
    const auto pixel = [&](size_t i) { return plain[2 * i] | plain[2 * i + 1] << 8; };
    ASSERT_TRUE(Write(R::PixelFormat, uint32_t(LxPixelType::Mono12p)).IsOK());
    const auto lsb = Draw(3);
    ASSERT_TRUE(Write(R::PixelFormat, uint32_t(LxPixelType::Mono12Packed)).IsOK());
    const auto gige = Draw(3);
    for (size_t i = 0; i < 64 * 16; i += 2) {
        const size_t at = i / 2 * 3;
        ASSERT_EQ(lsb[at] | (lsb[at + 1] & 15) << 8, pixel(i));
        ASSERT_EQ(lsb[at + 1] >> 4 | lsb[at + 2] << 4, pixel(i + 1));
        ASSERT_EQ(gige[at] << 4 | (gige[at + 1] & 15), pixel(i));
        ASSERT_EQ(gige[at + 2] << 4 | gige[at + 1] >> 4, pixel(i + 1));
    }
}

TEST_F(SimulatedCameraTest, BayerTilesTakeTheirColorFromTheColorPicture)
{
    SetSize(64, 16);
    ASSERT_TRUE(Write(R::PixelFormat, uint32_t(LxPixelType::RGB8)).IsOK());
    const auto color = Draw(9);
    const struct
    {
        LxPixelType mType;
        const char *mTile;
    } formats[] = {{LxPixelType::BayerRG8, "RGGB"},
                   {LxPixelType::BayerGR8, "GRBG"},
                   {LxPixelType::BayerGB8, "GBRG"},
                   {LxPixelType::BayerBG8, "BGGR"}};
    for (const auto &format : formats) {
        ASSERT_TRUE(Write(R::PixelFormat, uint32_t(format.mType)).IsOK());
        const auto raw = Draw(9);
        for (size_t y = 0; y < 16; ++y) {
            for (size_t x = 0; x < 64; ++x) {
                const size_t channel = std::string("RGB").find(format.mTile[y % 2 * 2 + x % 2]);
                ASSERT_EQ(raw[y * 64 + x], color[(y * 64 + x) * 3 + channel]) << format.mTile << x << ',' << y;
            }
        }
    }
}

TEST_F(SimulatedCameraTest, DrawsNothingBesideASmallBuffer)
{
    std::vector<uint8_t> small(1000, 0xA5);
    mCamera.DrawFrame(0, small.data(), small.size());
    EXPECT_THAT(small, testing::Each(0));
    std::vector<uint8_t> large(mCamera.GetPayloadSize() + 7, 0xA5);
    mCamera.DrawFrame(0, large.data(), large.size());
    EXPECT_EQ(large.back(), 0);
}

TEST_F(SimulatedCameraTest, ManyThreadsReadWriteAndDraw)
{
    ASSERT_TRUE(WriteFloat(R::AcquisitionFrameRate, 500.0).IsOK());
    ASSERT_TRUE(Write(R::Width, 64).IsOK());
    ASSERT_TRUE(Write(R::Height, 64).IsOK());
    std::atomic<int> frames{0};
    std::thread drawing([&] {
        std::vector<uint8_t> frame(64 * 64 * 8);
        while (!mStop) {
            if (mCamera.WaitForFrame(mStop)) {
                mCamera.DrawFrame(static_cast<uint64_t>(frames++), frame.data(), frame.size());
            }
        }
    });
    std::thread writing([&] {
        int stopped = 0;
        for (int i = 0; !mStop; ++i) {
            WriteFloat(R::Gain, i % 20);
            Write(R::AcquisitionStart, 1);
            Write(R::OffsetX, static_cast<uint32_t>(i % 64 * 4));
            if (const int taken = frames; taken != stopped) {  // each acquisition gets its frame
                stopped = taken;
                Write(R::AcquisitionStop, 1);
            }
        }
    });
    std::thread reading([&] {
        while (!mStop) {
            Read64(R::PayloadSize);
            mCamera.GetWidth();
            ReadFloat(R::DeviceTemperature);
        }
    });
    EXPECT_TRUE(WaitFor([&] { return frames >= 20; }));
    mStop = true;
    drawing.join();
    writing.join();
    reading.join();
}
