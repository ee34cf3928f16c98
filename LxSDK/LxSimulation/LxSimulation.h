#pragma once

#include <cstdint>
#include <memory>
#include <thread>
#include <vector>

#include "LxBase/LxDeviceSerial.h"
#include "LxBase/LxResult.h"
#include "LxBase/LxString.h"
#include "LxBuffer/LxBuffer.h"
#include "LxSimulation/LxSimulatedSerial.h"

/// An IPv4 address of a simulated network adapter, dotted decimal.
struct LxSimulatedAddress
{
    LxString mIPAddress = "0.0.0.0";   ///< The address.
    LxString mSubnetMask = "0.0.0.0";  ///< Its mask.
};

/// A network adapter of the simulated host.
struct LxSimulatedNetworkAdapter
{
    LxString mName;                              ///< Unique among the interfaces; also LxInterface::GetUniqueID().
    LxString mDisplayID;                         ///< Empty: made from name and addresses.
    LxString mDescription;                       ///< Empty: "Simulated network adapter".
    LxString mMACAddress = "02:00:00:00:00:01";  ///< Six pairs of hexadecimal digits.
    std::vector<LxSimulatedAddress> mAddresses;  ///< None: a cable without an address.
    LxString mDefaultGateway = "0.0.0.0";        ///< Dotted decimal.
    bool mKelvraDriverInstalled = true;          ///< LxNetworkAdapter::IsKelvraDriverInstalled().
};

/// A USB host controller of the simulated host. Any numbers are allowed.
struct LxSimulatedUSBHostController
{
    LxString mName;                      ///< Unique among the interfaces; also LxInterface::GetUniqueID().
    LxString mDisplayID;                 ///< Empty: "Simulated USB host controller".
    uint32_t mVendorID = 0x8086;         ///< PCI number of the maker.
    uint32_t mDeviceID = 0xA12F;         ///< PCI number of the model.
    uint32_t mSubsystemID = 0x06B91028;  ///< Subsystem in the high, its maker in the low 16 bits.
    uint32_t mRevision = 49;             ///< PCI revision.
    uint32_t mSpeed = 4;                 ///< One of LxUSBSpeed, or any number.
};

/// An answer that follows from the other values unless it is forced.
enum class LxSimulatedAnswer : int
{
    Automatic = -1,
    No = 0,
    Yes = 1,
};

/// A simulated device of any kind. The values that its kind does not have are not looked at.
struct LxSimulatedDevice
{
    int mType = 0;                      ///< One of LxDeviceInfoType, or any number.
    LxString mUniqueID;                 ///< Empty: the MAC address of a network device, the GUID of a USB one.
    std::vector<LxString> mInterfaces;  ///< The names of the interfaces at which it is found; empty: nowhere.

    LxString mDisplayID;                                ///< Empty: made from vendor, model, name and address.
    LxString mVendorName = "LxGUI";                     ///< LxDeviceInfo::GetVendorName()
    LxString mModelName = "Simulated Camera";           ///< LxDeviceInfo::GetModelName()
    LxString mVersion = "1.0.0";                        ///< LxDeviceInfo::GetVersion()
    LxString mManufacturerInfo = "simulated by LxSDK";  ///< LxDeviceInfo::GetManufacturerInfo()
    LxString mSerialNumber = "SIM0001";                 ///< LxDeviceInfo::GetSerialNumber()
    LxString mUserDefinedName;                          ///< LxDeviceInfo::GetUserDefinedName()
    bool mLicenseValid = true;                          ///< LxDeviceInfo::IsLicenseValid()
    LxString mLicenseMessage = "Valid";                 ///< LxDeviceInfo::GetLicenseMessage()
    /// Automatic: a network device is on a subnet of the interface, a USB3 Vision device has SuperSpeed, a USB device
    /// has status 0. Connecting to a device whose configuration is not valid fails with Unavailable.
    LxSimulatedAnswer mConfigurationValid = LxSimulatedAnswer::Automatic;

    /// The GenICam XML that connections get; empty: that of the camera inside. One that is broken makes connecting fail
    /// with GenICamError.
    LxString mGenICamXML;

    // Network devices.
    LxString mMACAddress = "02:00:00:00:01:01";  ///< Six pairs of hexadecimal digits.
    LxString mIPAddress = "0.0.0.0";             ///< Dotted decimal.
    LxString mSubnetMask = "0.0.0.0";            ///< Dotted decimal.
    LxString mDefaultGateway = "0.0.0.0";        ///< Dotted decimal.

    // GigE Vision devices.
    uint32_t mIPConfigOptions = 7;  ///< Bits: 1 persistent IP, 2 DHCP, 4 LLA.
    uint32_t mIPConfigCurrent = 6;  ///< The same bits: what is enabled.
    uint32_t mGEVMajor = 2;         ///< Version of GigE Vision.
    uint32_t mGEVMinor = 0;         ///< Version of GigE Vision.
    int mClass = 1;                 ///< As LxDeviceInfoGEV::GetClass(), or any number.
    int mAccessType = -1;  ///< -1: by the connections to it; else one of LxAccessType: what another application has.

    // Kelvra protocol devices.
    uint32_t mDeviceID = 1;       ///< LxDeviceInfoKelvraProtocol::GetDeviceID()
    uint32_t mModuleID = 2;       ///< LxDeviceInfoKelvraProtocol::GetModuleID()
    uint32_t mSubID = 3;          ///< LxDeviceInfoKelvraProtocol::GetSubID()
    uint32_t mVendorID = 4;       ///< LxDeviceInfoKelvraProtocol::GetVendorID()
    uint32_t mSoftwareMajor = 1;  ///< LxDeviceInfoKelvraProtocol::GetSoftwareMajor()
    uint32_t mSoftwareMinor = 0;  ///< LxDeviceInfoKelvraProtocol::GetSoftwareMinor()

    // USB3 Vision devices.
    bool mKelvraDriverInstalled = true;              ///< LxDeviceInfoU3V::IsKelvraDriverInstalled()
    bool mInitializedCapabilities = true;            ///< LxDeviceInfoU3V::IsInitializedCapabilities()
    LxString mPowerMessage = "Power is sufficient";  ///< LxDeviceInfoU3V::GetPowerMessage()
    bool mLowSpeedSupported = false;                 ///< 1.5 Mbit/s.
    bool mFullSpeedSupported = false;                ///< 12 Mbit/s.
    bool mHighSpeedSupported = true;                 ///< 480 Mbit/s.
    bool mSuperSpeedSupported = true;                ///< 5 Gbit/s.
    LxSimulatedAnswer mCurrentSpeedSupported = LxSimulatedAnswer::Automatic;  ///< Automatic: by the speed.
    uint32_t mSpeed = 4;                                                      ///< One of LxUSBSpeed, or any number.
    LxString mSpeedMessage;                                                   ///< Empty: made from the speed.
    LxString mDeviceGUID = "0000C0FFEE01";                                    ///< Twelve hexadecimal digits.
    LxString mFamilyName = "Simulation";                                      ///< LxDeviceInfoU3V::GetFamilyName()
    LxString mU3VSerialNumber = "SIM0001";                                    ///< LxDeviceInfoU3V::GetU3VSerialNumber()
    uint32_t mGenCPMajor = 1;                                                 ///< Version of GenCP.
    uint32_t mGenCPMinor = 3;                                                 ///< Version of GenCP.
    uint32_t mU3VMajor = 1;                                                   ///< Version of USB3 Vision.
    uint32_t mU3VMinor = 2;                                                   ///< Version of USB3 Vision.
    uint32_t mMaxPower = 900;                                                 ///< In milliamperes.

    // USB devices.
    int mStatus = 0;  ///< As LxDeviceInfoUSB::GetStatus(), or any number.

    // Frame grabbers: GigE Vision and USB3 Vision devices with serial ports. The features of the ports, in the category
    // "SerialControl", are fixed when the device is first connected.
    uint32_t mSerialPorts = 0;  ///< Which ports there are: bit n for the LxDeviceSerial of number n.
    LxSimulatedSpeed mUart0Speed = LxSimulatedSpeed::Enumeration;  ///< How the speed of Serial0 is set.
    LxSimulatedSpeed mUart1Speed = LxSimulatedSpeed::Integer;      ///< How the speed of Serial1 is set.
    LxSimulatedSpeed mBulkSpeed = LxSimulatedSpeed::Enumeration;   ///< How the speed of the bulk ports is set.
    bool mSerialLoopback = true;  ///< Whether there are "Uart0Loopback", "Uart1Loopback" and "BulkLoopback".
    /// Which of the entries "Source0" to "Source3" of the feature "SourceSelector" are available (bit n); 0: there is
    /// no such feature.
    uint32_t mSources = 3;
    bool mPoCL = true;  ///< Whether there is the feature "PoCLEnabled": power over Camera Link, off at first.
};

/// A call that the simulation has seen.
struct LxSimulatedCall
{
    LxString mName;           ///< For example "Connect", "ReadRegister".
    LxString mArguments;      ///< The device first, separated by ", "; numbers in hexadecimal.
    std::thread::id mThread;  ///< The thread that made it.
    uint64_t mTime = 0;       ///< Nanoseconds of the monotonic clock.
};

/// What of the simulation lives at the moment.
struct LxSimulationCounters
{
    uint32_t mScanners = 0;     ///< One for each LxSystem.
    uint32_t mDeviceInfos = 0;  ///< Device informations that scanners have handed out.
    uint32_t mDevices = 0;      ///< Connected or disconnected LxDevice objects.
    uint32_t mReceivers = 0;    ///< Opened streams.
    uint32_t mSerialPorts = 0;  ///< Opened serial ports.
};

/// Tests a camera application without a camera: devices that exist in memory only, found, connected and streamed like
/// real ones, and every fault that a real one may show.
///
/// Off unless Enable() was called or the environment variable LXSDK_SIMULATION is set when the SDK is first used: to
/// "1" for a plausible host beside the real devices, to "only" for that host instead of them. Network cameras and USB3
/// Vision cameras can be connected and streamed; they have some 150 GenICam features (SFNC names).
///
/// All functions may be called from any thread at any time. Devices are named by their unique ID; NotFound for a name
/// that no device has. A change of a device or an interface is seen by the next search.
/// @thread{any}
class LX_API LxSimulation
{
public:
    LxSimulation() = delete;

    /// Lets every LxSystem find what has been added here. Calling it again only changes the argument.
    /// @param aHideRealDevices whether real devices and interfaces are left out.
    static void Enable(bool aHideRealDevices = false);
    /// Hides the simulated host. What has been added stays; connected devices stay connected.
    static void Disable();
    /// Whether the simulated host is to be found, by Enable() or by the environment variable.
    static bool IsEnabled();

    /// Removes all interfaces and devices (which vanish where they are connected) and sets every setting back.
    static void Clear();
    /// Adds a plausible host: two network adapters, a USB controller, three GigE Vision cameras, one of them on a wrong
    /// subnet, a USB3 Vision camera, and a GigE Vision frame grabber with the serial ports Serial0, Serial1 and Bulk0
    /// to Bulk3: a text console ("HELP" and a carriage return) at Serial1, an LxSimulatedGenCPCamera at Bulk2, an
    /// LxSimulatedTextCamera at Bulk3, echoes at the others.
    static void AddDefaultHost();

    /// Adds a network adapter, or replaces the values of the one with this name. InvalidArgument: the name is empty,
    /// used by an interface of the other kind, or an address is none.
    static LxResult SetNetworkAdapter(const LxSimulatedNetworkAdapter &aAdapter);
    /// Adds a USB host controller, or replaces the values of the one with this name. InvalidArgument: the name is empty
    /// or used by an interface of the other kind.
    static LxResult SetUSBHostController(const LxSimulatedUSBHostController &aController);
    /// Removes an interface; devices that are nowhere else vanish.
    static LxResult RemoveInterface(const LxString &aName);
    /// Adds a device, or replaces the values of the one with this unique ID. InvalidArgument: there is no unique ID to
    /// be had, or an address is none.
    static LxResult SetDevice(const LxSimulatedDevice &aDevice);
    /// The values of a device as they are now.
    static LxResult GetDevice(const LxString &aDevice, LxSimulatedDevice &aValues);
    /// Removes a device; where it is connected the link is lost.
    static LxResult RemoveDevice(const LxString &aDevice);

    /// Unplugs a device, or plugs it in again. Where it is connected, the link is lost and comes back; it has restarted
    /// then, so that its settings are the default ones.
    static LxResult SetDevicePresent(const LxString &aDevice, bool aPresent);
    /// The device stops answering without a word: accesses fail with Timeout after this time (milliseconds), frames do
    /// not come, after a second and a half the link is lost.
    static LxResult FreezeDevice(const LxString &aDevice, uint32_t aTimeout = 500);
    /// Ends FreezeDevice(): the device answers again, and a link that was lost comes back.
    static LxResult ThawDevice(const LxString &aDevice);

    /// Register accesses that overlap the range fail with the result, those of features too.
    static LxResult FailRange(const LxString &aDevice, uint64_t aAddress, uint64_t aLength, const LxResult &aResult);
    /// The n-th register access from now on (1 is the next) fails, once.
    static LxResult FailCall(const LxString &aDevice, uint32_t aNumber, const LxResult &aResult);
    /// Every register access fails with the result.
    static LxResult FailAll(const LxString &aDevice, const LxResult &aResult);
    /// Ends what FailRange(), FailCall() and FailAll() began.
    static LxResult ClearFailures(const LxString &aDevice);
    /// Every register access takes this much longer, in microseconds.
    static LxResult SetAccessDelay(const LxString &aDevice, uint32_t aDelay);
    /// So many frames from now on never arrive.
    static LxResult SkipFrames(const LxString &aDevice, uint32_t aCount);
    /// So many frames from now on arrive without some of their packets.
    static LxResult DamageFrames(const LxString &aDevice, uint32_t aCount);
    /// What the frames of a device carry from the next one on: LxPayloadType::Image (from the start), or GenDC, a
    /// container whose only part is the image; the feature "PayloadSize" follows. InvalidArgument for other types.
    /// Where a container comes in damaged, the buffer has the payload type GenDC and no container.
    static LxResult SetPayloadType(const LxString &aDevice, LxPayloadType aType);

    /// Connects something with a serial port of a device in place of what was there; null: nothing. From the start
    /// there is nothing. InvalidArgument: there is no such port.
    static LxResult SetSerialPeer(const LxString &aDevice, LxDeviceSerial aPort,
                                  std::shared_ptr<LxSimulatedSerialPeer> aPeer);
    /// Changes how a serial port behaves, at once. InvalidArgument: there is no such port.
    static LxResult SetSerialConditions(const LxString &aDevice, LxDeviceSerial aPort,
                                        const LxSimulatedSerialConditions &aConditions);
    /// How a serial port behaves now. InvalidArgument: there is no such port.
    static LxResult GetSerialConditions(const LxString &aDevice, LxDeviceSerial aPort,
                                        LxSimulatedSerialConditions &aConditions);

    /// How long devices take to answer a search, in milliseconds; one that answers after the time-out is not found. An
    /// empty name stands for all devices that have no delay of their own. 0 by default.
    static LxResult SetFindDelay(const LxString &aDevice, uint32_t aDelay);

    /// The next call of this operation returns the result and does nothing: "Connect", "FindDevice", "GetAccessType",
    /// "SetGEVIPConfiguration", "SetKelvraIPConfiguration", "StreamStart", "SerialOpen", "SerialRead", "SerialWrite".
    /// Results for one operation queue up.
    static void QueueResult(const LxString &aOperation, const LxResult &aResult);

    /// Keeps the calls from now on, at most the last 10000. Off by default. Recorded are the operations above and
    /// "Find", "Disconnect", "ReadRegister", "WriteRegister", "ReadMemory", "WriteMemory", "StreamStop",
    /// "SerialClose"; "ReadPort" and "WritePort" are what those and the features ask of the device itself.
    static void SetRecording(bool aEnabled);
    /// The recorded calls of a name, in order; all for an empty name.
    static std::vector<LxSimulatedCall> GetCalls(const LxString &aName = LxString());
    /// Forgets the recorded calls.
    static void ClearCalls();
    /// What lives now, for tests that look for leaks.
    static LxSimulationCounters GetCounters();
};
