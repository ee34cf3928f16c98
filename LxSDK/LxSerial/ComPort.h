#pragma once

// Internal: a serial port of the host.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "LxBase/LxResult.h"
#include "LxSerial/LxSerialPortConfiguration.h"

namespace LxDetail
{

/// The flags of a configuration in the terminal's control mode (termios c_cflag), without the speed.
uint32_t GetControlFlags(const LxSerialPortConfiguration &aConfiguration);

/// Gives a path a name of its own; an empty path takes it away. Usable from any thread.
void SetComPortPath(const std::string &aName, const std::string &aPath);
/// The names that have a path of their own, in alphabetical order. Usable from any thread.
std::vector<std::string> GetComPortNames();

/// An open serial port of the host (a tty), for this process alone. Its former settings come back when it is closed.
///
/// Read(), Write(), SetConfiguration() and Interrupt() may be called by several threads at the same time.
class ComPort
{
public:
    ComPort();
    ~ComPort();
    ComPort(const ComPort &) = delete;
    ComPort &operator=(const ComPort &) = delete;

    /// A name is one that SetComPortPath() gave, one under /dev, or a path. Errors: NotFound (none of this name, or no
    /// serial port), AccessDenied, Busy (another program has it), those of SetConfiguration().
    LxResult Open(const LxString &aName, const LxSerialPortConfiguration &aConfiguration);
    /// Only when no other call runs.
    void Close();
    /// InvalidArgument: the configuration is not valid. NotSupported: the port did not take it.
    LxResult SetConfiguration(const LxSerialPortConfiguration &aConfiguration);

    /// Waits for at least one byte. Errors: Aborted (interrupted), NotConnected (the port is gone).
    LxResult Read(uint8_t *aData, uint32_t aCapacity, uint32_t &aRead);
    /// Waits until all is taken. Errors as Read().
    LxResult Write(const uint8_t *aData, uint32_t aCount);
    /// Ends the calls above, also those to come.
    void Interrupt();

private:
    class Settings;

    /// Waits until the port can be read or written (poll events).
    LxResult Wait(short aEvents);
    LxResult Prepare(const LxSerialPortConfiguration &aConfiguration);

    int mPort = -1;
    int mInterrupt = -1;
    bool mPseudo = false;  // a pseudo terminal, which has no line
    std::unique_ptr<Settings> mFormer;
};

}  // namespace LxDetail
