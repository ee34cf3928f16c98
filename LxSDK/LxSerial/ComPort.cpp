#include "LxSerial/ComPort.h"

#include <asm/termbits.h>  // termios2, which takes any speed; it excludes <termios.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <map>
#include <mutex>
#include <string>

namespace LxDetail
{

namespace
{

// Linux gives pseudo terminals the majors 136 to 143 (Documentation/admin-guide/devices.txt).
constexpr unsigned FirstPseudoMajor = 136;
constexpr unsigned LastPseudoMajor = 143;

struct Paths
{
    std::mutex mMutex;  // guards mPaths
    std::map<std::string, std::string> mPaths;
};

Paths &GetPaths()
{
    static Paths &paths = *new Paths;  // never destroyed: bridges may live until the very end
    return paths;
}

std::string FindPath(const std::string &aName)
{
    Paths &paths = GetPaths();
    std::lock_guard lock(paths.mMutex);
    const auto path = paths.mPaths.find(aName);
    if (path != paths.mPaths.end()) {
        return path->second;
    }
    return aName.front() == '/' ? aName : "/dev/" + aName;
}

LxResult OpenError(const std::string &aName, int aError)
{
    switch (aError) {
        case ENOENT:
        case ENOTDIR:
        case EISDIR:
        case ENXIO:
        case ENODEV:
        case ENAMETOOLONG:
            return LxResult(LxResultCode::NotFound, "There is no COM port \"" + aName + "\".");
        case EACCES:
        case EPERM:
            return LxResult(LxResultCode::AccessDenied,
                            "You may not use the COM port \"" + aName +
                                "\". Serial ports usually belong to the group \"dialout\".");
        case EBUSY:
        case EWOULDBLOCK:
            return LxResult(LxResultCode::Busy, "Another program uses the COM port \"" + aName + "\".");
        default:
            return LxResult(LxResultCode::Failed,
                            "The COM port \"" + aName + "\" cannot be opened: " + std::strerror(aError) + ".");
    }
}

/// The speed as programs that know no others expect it; the rates that POSIX does not name go as a number (BOTHER).
uint32_t GetSpeedFlag(uint32_t aBaudRate)
{
    static const std::map<uint32_t, uint32_t> flags = {
        {50, B50},           {75, B75},           {110, B110},         {134, B134},         {150, B150},
        {200, B200},         {300, B300},         {600, B600},         {1200, B1200},       {1800, B1800},
        {2400, B2400},       {4800, B4800},       {9600, B9600},       {19200, B19200},     {38400, B38400},
        {57600, B57600},     {115200, B115200},   {230400, B230400},   {460800, B460800},   {500000, B500000},
        {576000, B576000},   {921600, B921600},   {1000000, B1000000}, {1152000, B1152000}, {1500000, B1500000},
        {2000000, B2000000}, {2500000, B2500000}, {3000000, B3000000}, {3500000, B3500000}, {4000000, B4000000}};
    const auto flag = flags.find(aBaudRate);
    return flag == flags.end() ? static_cast<uint32_t>(BOTHER) : flag->second;
}

LxResult Gone()
{
    return LxResult(LxResultCode::NotConnected, "The COM port is gone.");
}

}  // namespace

class ComPort::Settings
{
public:
    bool Read(int aPort) { return ioctl(aPort, TCGETS2, &mValues) == 0; }
    bool Write(int aPort) const { return ioctl(aPort, TCSETS2, &mValues) == 0; }

    struct termios2 mValues = {};
};

void SetComPortPath(const std::string &aName, const std::string &aPath)
{
    Paths &paths = GetPaths();
    std::lock_guard lock(paths.mMutex);
    if (aPath.empty()) {
        paths.mPaths.erase(aName);
    }
    else {
        paths.mPaths[aName] = aPath;
    }
}

std::vector<std::string> GetComPortNames()
{
    Paths &paths = GetPaths();
    std::lock_guard lock(paths.mMutex);
    std::vector<std::string> names;
    for (const auto &[name, path] : paths.mPaths) {
        names.push_back(name);
    }
    return names;
}

uint32_t GetControlFlags(const LxSerialPortConfiguration &aConfiguration)
{
    static constexpr uint32_t sizes[] = {CS5, CS6, CS7, CS8};
    uint32_t flags = aConfiguration.mByteSize >= 5 && aConfiguration.mByteSize <= 8
                         ? sizes[aConfiguration.mByteSize - 5]
                         : static_cast<uint32_t>(CS8);
    if (aConfiguration.mStopBits == 2) {
        flags |= CSTOPB;
    }
    if (aConfiguration.mParity != LxSerialParity::None) {
        flags |= PARENB;
    }
    if (aConfiguration.mParity == LxSerialParity::Odd) {
        flags |= PARODD;
    }
    return flags;
}

ComPort::ComPort() = default;

ComPort::~ComPort()
{
    Close();
}

LxResult ComPort::Open(const LxString &aName, const LxSerialPortConfiguration &aConfiguration)
{
    const std::string &name = aName.GetString();
    if (name.empty()) {
        return OpenError(name, ENOENT);
    }
    mPort = open(FindPath(name).c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (mPort < 0) {
        return OpenError(name, errno);
    }
    LxResult result = Prepare(aConfiguration);
    if (result == LxResultCode::Busy) {
        result = OpenError(name, EBUSY);
    }
    if (!result.IsOK()) {
        Close();
    }
    return result;
}

LxResult ComPort::Prepare(const LxSerialPortConfiguration &aConfiguration)
{
    Settings settings;
    if (!settings.Read(mPort)) {
        return LxResult(LxResultCode::NotFound, "It is no serial port.");
    }
    if (flock(mPort, LOCK_EX | LOCK_NB) != 0) {
        return LxResultCode::Busy;
    }
    struct stat status = {};
    fstat(mPort, &status);
    mPseudo = major(status.st_rdev) >= FirstPseudoMajor && major(status.st_rdev) <= LastPseudoMajor;
    mInterrupt = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (mInterrupt < 0) {
        return LxResult(LxResultCode::NoMemory, "There are no more file descriptors.");
    }
    ioctl(mPort, TIOCEXCL);  // for programs that do not ask for the lock
    mFormer = std::make_unique<Settings>(settings);
    const LxResult result = SetConfiguration(aConfiguration);
    ioctl(mPort, TCFLSH, TCIOFLUSH);
    return result;
}

void ComPort::Close()
{
    if (mPort >= 0) {
        if (mFormer) {
            mFormer->Write(mPort);
            ioctl(mPort, TIOCNXCL);
        }
        close(mPort);
    }
    if (mInterrupt >= 0) {
        close(mInterrupt);
    }
    mFormer.reset();
    mPort = -1;
    mInterrupt = -1;
}

LxResult ComPort::SetConfiguration(const LxSerialPortConfiguration &aConfiguration)
{
    if (!aConfiguration.IsValid()) {
        return LxResult(LxResultCode::InvalidArgument, "The configuration of the COM port is not valid.");
    }
    Settings wanted;
    if (!wanted.Read(mPort)) {
        return Gone();
    }
    const uint32_t shape = CSIZE | CSTOPB | PARENB | PARODD;
    const uint32_t flags = GetControlFlags(aConfiguration);
    // Raw bytes, no flow control, modem lines ignored.
    wanted.mValues.c_iflag = 0;
    wanted.mValues.c_oflag = 0;
    wanted.mValues.c_lflag = 0;
    wanted.mValues.c_cflag &= ~(shape | CBAUD | (CBAUD << IBSHIFT) | CRTSCTS | HUPCL);
    const uint32_t speedFlag = GetSpeedFlag(aConfiguration.mBaudRate);
    wanted.mValues.c_cflag |= flags | CLOCAL | CREAD | speedFlag | (speedFlag << IBSHIFT);
    wanted.mValues.c_ispeed = aConfiguration.mBaudRate;
    wanted.mValues.c_ospeed = aConfiguration.mBaudRate;
    wanted.mValues.c_cc[VMIN] = 1;
    wanted.mValues.c_cc[VTIME] = 0;
    // The call succeeds when the port took any of it, so what it took is read back.
    Settings taken;
    if (!wanted.Write(mPort) || !taken.Read(mPort)) {
        return errno == EIO ? Gone() : LxResult(LxResultCode::NotSupported, "The COM port refuses the configuration.");
    }
    // A pseudo terminal keeps 8 bits without parity: there is no line that it could send others over.
    const uint32_t compared = mPseudo ? static_cast<uint32_t>(CSTOPB) : shape;
    const uint32_t speed = taken.mValues.c_ospeed;
    const uint32_t deviation =
        speed > aConfiguration.mBaudRate ? speed - aConfiguration.mBaudRate : aConfiguration.mBaudRate - speed;
    // Dividers do not meet every speed; a receiver tolerates a deviation of some percent.
    if ((taken.mValues.c_cflag & compared) != (flags & compared) || deviation > aConfiguration.mBaudRate / 40) {
        return LxResult(LxResultCode::NotSupported, "The COM port cannot be set like that.");
    }
    return LxResult();
}

LxResult ComPort::Wait(short aEvents)
{
    pollfd polled[2] = {{mPort, aEvents, 0}, {mInterrupt, POLLIN, 0}};
    for (;;) {
        if (poll(polled, 2, -1) < 0) {
            if (errno == EINTR) {
                continue;
            }
            return Gone();
        }
        if ((polled[1].revents & POLLIN) != 0) {
            return LxResult(LxResultCode::Aborted, "The COM port has been closed.");
        }
        if ((polled[0].revents & aEvents) != 0) {
            return LxResult();
        }
        if ((polled[0].revents & (POLLHUP | POLLERR | POLLNVAL)) != 0) {
            return Gone();
        }
    }
}

LxResult ComPort::Read(uint8_t *aData, uint32_t aCapacity, uint32_t &aRead)
{
    aRead = 0;
    for (;;) {
        if (const LxResult result = Wait(POLLIN); !result.IsOK()) {
            return result;
        }
        const ssize_t count = read(mPort, aData, aCapacity);
        if (count > 0) {
            aRead = static_cast<uint32_t>(count);
            return LxResult();
        }
        if (count == 0 || (errno != EAGAIN && errno != EINTR)) {
            return Gone();
        }
    }
}

LxResult ComPort::Write(const uint8_t *aData, uint32_t aCount)
{
    for (uint32_t written = 0; written < aCount;) {
        const ssize_t count = write(mPort, aData + written, aCount - written);
        if (count >= 0) {
            written += static_cast<uint32_t>(count);
        }
        else if (errno == EAGAIN) {
            if (const LxResult result = Wait(POLLOUT); !result.IsOK()) {
                return result;
            }
        }
        else if (errno != EINTR) {
            return Gone();
        }
    }
    return LxResult();
}

void ComPort::Interrupt()
{
    const uint64_t one = 1;
    [[maybe_unused]] const ssize_t count = write(mInterrupt, &one, sizeof(one));
}

}  // namespace LxDetail
