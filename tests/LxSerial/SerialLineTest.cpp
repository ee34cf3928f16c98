// How a serial line of the host is set. A pseudo terminal, with which the other tests work, has no line: it keeps 8
// bits without parity. Here one answers as a line does, which is told apart from it by its device number and by its
// settings.

#include <asm/termbits.h>  // termios2; it excludes <termios.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <cstdarg>
#include <mutex>
#include <optional>

#include "LxSerial/LxSerialBridge.h"
#include "SimulatedGrabber.h"

namespace
{

constexpr uint32_t Shape = CSIZE | CSTOPB | PARENB | PARODD;
constexpr unsigned SerialMajor = 4;  // ttyS0 (Documentation/admin-guide/devices.txt of Linux)

/// What the terminals of this process that are asked for termios2 answer while it is on.
struct Line
{
    std::mutex mMutex;  // guards all members
    bool mOn = false;
    uint32_t mLacking = 0;  // control flags that it does not take
    std::optional<termios2> mSettings;
};

Line &TheLine()
{
    static Line line;
    return line;
}

class SerialLineTest : public testing::Test
{
protected:
    SerialLineTest()
    {
        mMaster = posix_openpt(O_RDWR | O_NOCTTY);
        grantpt(mMaster);
        unlockpt(mMaster);
        Turn(true);
    }
    ~SerialLineTest() override
    {
        mBridge.Stop();
        Turn(false);
        close(mMaster);
    }
    static void Turn(bool aOn)
    {
        Line &line = TheLine();
        const std::lock_guard lock(line.mMutex);
        line.mOn = aOn;
        line.mLacking = 0;
        line.mSettings.reset();
    }
    static void SetLacking(uint32_t aFlags)
    {
        const std::lock_guard lock(TheLine().mMutex);
        TheLine().mLacking = aFlags;
    }
    static termios2 GetSettings()
    {
        const std::lock_guard lock(TheLine().mMutex);
        return TheLine().mSettings.value_or(termios2());
    }
    LxResult Start(const LxSerialPortConfiguration &aConfiguration)
    {
        return mBridge.Start(ptsname(mMaster), aConfiguration, mGrabber.GetAdapter(), LxDeviceSerial::Serial0);
    }

    int mMaster = -1;
    SimulatedGrabber mGrabber;
    LxSerialBridge mBridge;
};

}  // namespace

extern "C" int ioctl(int aDescriptor, unsigned long aRequest, ...) noexcept
{
    va_list arguments;
    va_start(arguments, aRequest);
    void *argument = va_arg(arguments, void *);
    va_end(arguments);
    const auto result = static_cast<int>(syscall(SYS_ioctl, aDescriptor, aRequest, argument));
    Line &line = TheLine();
    if (result == 0 && (aRequest == TCSETS2 || aRequest == TCGETS2)) {
        const std::lock_guard lock(line.mMutex);
        auto *settings = static_cast<termios2 *>(argument);
        if (line.mOn && aRequest == TCSETS2) {
            line.mSettings = *settings;
            line.mSettings->c_cflag &= ~line.mLacking;
        }
        else if (line.mOn && line.mSettings) {
            *settings = *line.mSettings;
        }
    }
    return result;
}

extern "C" int fstat(int aDescriptor, struct stat *aStatus) noexcept
{
    const int result = fstatat(aDescriptor, "", aStatus, AT_EMPTY_PATH);
    const std::lock_guard lock(TheLine().mMutex);
    if (result == 0 && TheLine().mOn) {
        aStatus->st_rdev = makedev(SerialMajor, 64);
    }
    return result;
}

TEST_F(SerialLineTest, EveryConfigurationIsApplied)
{
    ASSERT_TRUE(Start({}).IsOK());
    const uint32_t sizes[] = {CS5, CS6, CS7, CS8};
    const std::pair<LxSerialParity, uint32_t> parities[] = {
        {LxSerialParity::None, 0}, {LxSerialParity::Even, PARENB}, {LxSerialParity::Odd, PARENB | PARODD}};
    for (uint32_t size = 5; size <= 8; ++size) {
        for (const auto &[parity, parityFlags] : parities) {
            for (const uint32_t stopBits : {1u, 2u}) {
                const LxResult result = mBridge.SetSerialPortConfiguration({19200, parity, size, stopBits});
                ASSERT_TRUE(result.IsOK()) << result.GetDescription().GetAscii();
                const uint32_t flags = sizes[size - 5] | parityFlags | (stopBits == 2 ? CSTOPB : 0);
                EXPECT_EQ(GetSettings().c_cflag & Shape, flags) << size << " bits, " << stopBits << " stop bits";
                EXPECT_EQ(GetSettings().c_cflag & CBAUD, static_cast<uint32_t>(B19200));
            }
        }
    }
}

TEST_F(SerialLineTest, ALineWithoutParityRefusesIt)
{
    SetLacking(PARENB);
    EXPECT_EQ(Start({9600, LxSerialParity::Even, 8, 1}), LxResultCode::NotSupported);
    EXPECT_TRUE(mBridge.GetSerialPort().IsEmpty());
    ASSERT_TRUE(Start({9600, LxSerialParity::None, 7, 2}).IsOK());
    EXPECT_EQ(mBridge.SetSerialPortConfiguration({19200, LxSerialParity::Odd, 8, 1}), LxResultCode::NotSupported);
    EXPECT_EQ(mBridge.GetSerialPortConfiguration().mBaudRate, 9600u) << "nothing has changed";
    EXPECT_EQ(GetSettings().c_cflag & Shape, static_cast<uint32_t>(CS7 | CSTOPB));
    EXPECT_EQ(GetSettings().c_cflag & CBAUD, static_cast<uint32_t>(B9600));
}
