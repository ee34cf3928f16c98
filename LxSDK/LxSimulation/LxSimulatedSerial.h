#pragma once

#include <cstdint>
#include <memory>

#include "LxBase/LxResult.h"
#include "LxBase/LxString.h"

/// How a feature of a simulated frame grabber lets the speed of a serial port be set.
enum class LxSimulatedSpeed : uint32_t
{
    None = 0,          ///< There is no such feature; the port runs at 115200 baud.
    Enumeration = 1,   ///< "Uart0BaudRate", "Uart1BaudRate" or "BulkBaudRate" with entries "Baud9600" to "Baud921600".
    Integer = 2,       ///< A number of baud, 1200 to 921600.
    ClockDivider = 3,  ///< Bulk ports only: "BulkSystemClockDivider", by which 100 MHz are divided. UARTs: as None.
};

/// What happens to bytes on their way. Counts are of bytes in this direction since the setting was made.
struct LxSimulatedSerialNoise
{
    uint32_t mLossPeriod = 0;        ///< Every n-th byte is lost; 0: none.
    uint32_t mCorruptionPeriod = 0;  ///< Every n-th byte comes with its lowest bit inverted; 0: none.
    uint32_t mLoseFirst = 0;         ///< So many of the first bytes are lost.
    uint32_t mCorruptFirst = 0;      ///< So many of the first bytes come with their lowest bit inverted.
};

/// How a serial port of a simulated device behaves. Perfect from the start.
struct LxSimulatedSerialConditions
{
    /// Bytes take the time that they take at the speed of the port, 10 bits each; otherwise they are there at once.
    bool mPaced = false;
    /// The port takes no bytes from its buffer: when it is full, Write() blocks.
    bool mStalled = false;
    /// How many bytes wait in each direction before the side that sends has to wait; not 0.
    uint32_t mCapacity = 65536;
    /// What happens to bytes from the peer to the host.
    LxSimulatedSerialNoise mToHost;
    /// What happens to bytes from the host to the peer.
    LxSimulatedSerialNoise mToPeer;
    LxResult mReadResult;   ///< Unless OK, every Read() fails with it at once.
    LxResult mWriteResult;  ///< Unless OK, every Write() fails with it at once.
};

/// A serial port as what is connected to it sees it. All operations may be called from any thread. It stays usable for
/// as long as a peer keeps it; when the device is gone, bytes vanish.
/// @thread{any}
class LX_API LxSimulatedSerialLine
{
public:
    virtual ~LxSimulatedSerialLine();

    /// Sends bytes to the host. Waits while the buffer to the host is full. Nobody hears them while the port is not
    /// open, its loopback is on or the device is away.
    /// @return how many of the bytes are on their way, fewer than aCount when the port is not open (0) or was closed
    ///         meanwhile.
    virtual uint32_t Send(const uint8_t *aData, uint32_t aCount) = 0;
    /// The speed at which the port runs now, in baud.
    virtual uint32_t GetBaudRate() const = 0;
    /// Whether an application has the port open.
    virtual bool IsOpen() const = 0;
};

/// What is connected to a serial port of a simulated device: something that hears bytes and sends some. Implement it to
/// put a camera of your own behind a frame grabber; see LxSimulation::SetSerialPeer.
/// @thread{called on the port's own thread and on that of SetSerialPeer()}
class LX_API LxSimulatedSerialPeer
{
public:
    virtual ~LxSimulatedSerialPeer();

    /// It has been connected to a port; keep the line to send without being asked. Called once for each port, on the
    /// thread of SetSerialPeer, with no lock held. By default nothing.
    virtual void OnConnected(const std::shared_ptr<LxSimulatedSerialLine> &aLine);
    /// The host has sent bytes. Called on the port's own thread, one call at a time, with no lock held; while it runs
    /// the next bytes wait, so that a peer that takes its time makes the host wait in the end.
    virtual void OnReceive(const uint8_t *aData, uint32_t aCount, LxSimulatedSerialLine &aLine) = 0;
    /// The speed of this side, in baud; bytes of another speed arrive as garbage in both directions. 0: any. Called on
    /// any thread.
    virtual uint32_t GetBaudRate() const;
};

/// Sends back what it hears.
class LX_API LxSimulatedSerialEcho : public LxSimulatedSerialPeer
{
public:
    void OnReceive(const uint8_t *aData, uint32_t aCount, LxSimulatedSerialLine &aLine) override;
};

/// Answers texts with texts: as soon as what it has heard ends with a request, it sends the answer and forgets what it
/// has heard. Thread-safe.
/// @thread{any}
class LX_API LxSimulatedSerialScript : public LxSimulatedSerialPeer
{
public:
    LxSimulatedSerialScript();
    ~LxSimulatedSerialScript() override;

    /// Adds a request (not empty; any bytes) and its answer (any bytes), sent after aDelay milliseconds. Of requests
    /// that fit at the same time the first added counts.
    void Add(const LxString &aRequest, const LxString &aAnswer, uint32_t aDelay = 0);
    void OnReceive(const uint8_t *aData, uint32_t aCount, LxSimulatedSerialLine &aLine) override;
    /// All bytes that it has heard, at most the last 65536.
    LxString GetReceived() const;

private:
    class Data;
    std::unique_ptr<Data> mData;
};
