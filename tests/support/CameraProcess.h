#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

/// A camera that runs as a process of its own and serves GigE Vision at an address. It ends with the test.
class CameraProcess
{
public:
    /// @param aCommand the program and its arguments; found by PATH unless it has a slash.
    /// @param aAddress where it answers; empty when only a search can tell.
    explicit CameraProcess(std::vector<std::string> aCommand, std::string aAddress = "127.0.0.1");
    ~CameraProcess();
    CameraProcess(const CameraProcess &) = delete;
    CameraProcess &operator=(const CameraProcess &) = delete;

    /// Starts the process and waits until it answers at its address, if it has one. False when it cannot be started or
    /// does not answer.
    bool Start();
    void Kill();
    /// Stops and continues the process with signals: it is there, but it does not answer.
    void Freeze();
    void Thaw();
    /// Gives a line to the emulator's standard input. False unless it answers "ok".
    bool Command(const std::string &aLine);

    const std::string &GetAddress() const { return mAddress; }

private:
    const std::vector<std::string> mCommand;
    const std::string mAddress;
    pid_t mProcess = -1;
    int mInput = -1;   // what the process reads
    int mOutput = -1;  // and what it writes
};

/// The camera that comes with libaravis, as an independent second opinion. It can only be at 127.0.0.1.
std::vector<std::string> FakeCameraCommand();
/// The emulator of this project.
std::vector<std::string> EmulatorCommand(const std::string &aAddress = "127.0.0.1");
