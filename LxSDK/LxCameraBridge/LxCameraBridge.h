#pragma once

#include <memory>

#include "LxBase/LxDeviceSerial.h"
#include "LxBase/LxResult.h"
#include "LxBase/LxStringList.h"

class LxConfigurationReader;
class LxConfigurationWriter;
class LxDevice;
class LxGenParameterArray;
class LxStream;

/// Connects to the camera behind a serial port of a frame grabber and offers its features.
///
/// The device and the stream are not owned and must outlive the bridge. The destructor disconnects. Operations block
/// for as long as the camera takes; one at a time per object, the counters from any thread.
/// @thread{any; one operation at a time, the counters at any time}
class LX_API LxCameraBridge
{
public:
    /// A bridge that is not connected.
    /// @param aDevice the frame grabber
    /// @param aPort the port behind which the camera is
    /// @param aStream the stream of the grabber, for which it is told the geometry; may be null
    LxCameraBridge(LxDevice *aDevice, LxDeviceSerial aPort, LxStream *aStream);
    ~LxCameraBridge();
    LxCameraBridge(const LxCameraBridge &) = delete;
    LxCameraBridge &operator=(const LxCameraBridge &) = delete;

    /// Frees the camera's features. Succeeds also when not connected.
    LxResult Disconnect();
    /// Whether there is a camera; true also while it is unplugged.
    bool IsConnected() const;

    /// Connects by a Kelvra camera file (*.yml; docs/camera-file.md describes the format). Errors: FileError,
    /// InvalidDataFormat (with the line), AlreadyOpen (it is connected), those of the serial port and of the camera.
    LxResult ConnectKelvraCameraFile(const LxString &aPath);

    /// The installed GenICam CL Protocol templates, as full '#'-separated texts: directory # file # manufacturer #
    /// family. NotFound when no driver is installed.
    static LxResult GetCLProtocolTemplates(LxStringList &aTemplates);
    /// Asks for the camera behind the port with a template: its ID and the XML descriptions that fit.
    /// Errors: NotFound (no such template), those of the serial port and of the camera.
    LxResult ProbeCLProtocol(const LxString &aTemplate, LxString &aCameraID, LxStringList &aXMLIDs);
    /// @param aTemplate a template, or a camera ID, which begins with one.
    /// @param aXMLID one of those that ProbeCLProtocol() gave.
    /// @return NotFound (no such template, or no such XML), AlreadyOpen, GenICamError, those of the serial port and of
    ///         the camera.
    LxResult ConnectCLProtocol(const LxString &aTemplate, const LxString &aXMLID);

    /// Asks a GenCP camera for its XML descriptions, the best first. An ID is a text of the form
    /// "SCHEMA#XML VERSION#MANUFACTURER MODEL", for example "1.1#XML 1.0.0#LxGUI Line Camera"; no standard defines one.
    /// Errors: those of the serial port and of the camera, Timeout when it is silent.
    LxResult GetGenCPXMLIDs(LxStringList &aXMLIDs);
    /// May be repeated while connected by GenCP; when that fails the bridge stays connected as it was. Errors: NotFound
    /// (no such XML), AlreadyOpen (connected otherwise), Timeout, GenICamError, those of the serial port and of the
    /// camera.
    LxResult ConnectGenCP(const LxString &aXMLID);

    /// The camera file; succeeds only when the bridge is connected by one.
    LxResult GetKelvraCameraFilePath(LxString &aPath) const;
    /// The ID of the camera; succeeds only when the bridge is connected by the CL Protocol.
    LxResult GetCLProtocolCameraID(LxString &aCameraID) const;
    /// The template; succeeds only when the bridge is connected by the CL Protocol.
    LxResult GetCLProtocolTemplate(LxString &aTemplate) const;
    /// The XML description; succeeds only when the bridge is connected by the CL Protocol.
    LxResult GetCLProtocolXMLID(LxString &aXMLID) const;
    /// The XML description; succeeds only when the bridge is connected by GenCP.
    LxResult GetGenCPXMLID(LxString &aXMLID) const;

    /// The camera's features; null when not connected.
    LxGenParameterArray *GetParameters();

    /// Saves how the bridge is connected and its settings under a name. NotConnected when it is not.
    LxResult Save(const LxString &aName, LxConfigurationWriter &aWriter);
    /// Connects as it was saved. What could not be restored is added to the errors.
    LxResult Load(const LxString &aName, LxConfigurationReader &aReader, LxStringList &aErrors);

    /// Bytes on the line since the bridge was made or ResetStatistics(); may be called from any thread at any time.
    uint64_t GetBytesSentToCamera() const;
    /// The same for the other direction.
    uint64_t GetBytesReceivedFromCamera() const;
    /// Sets both counts to 0; may be called from any thread at any time.
    void ResetStatistics();

    /// Whether Width, Height and PixelFormat of the camera are copied to the grabber, at once and when they change; off
    /// at first. What the grabber does not take while it streams it gets afterwards.
    void SetParametersSyncEnabled(bool aEnabled);
    /// As it was set.
    bool GetParametersSyncEnabled() const;
    /// The data source of the grabber that the camera feeds: an entry of the grabber's feature "SourceSelector", at
    /// first the current one. NotFound when there is no such entry.
    LxResult SetSource(const LxString &aSource);
    /// As it was set; at first the source that the grabber had.
    LxString GetSource() const;

    /// Whether the grabber has Power over Camera Link (the feature "PoCLEnabled"); false for a null device.
    static bool IsPoCLSupported(LxDevice *aDevice);
    /// Whether the power is on; false for a null device and one without PoCL.
    static bool IsPoCLEnabled(LxDevice *aDevice);
    /// Switches the power. InvalidArgument for a null device, NotSupported without PoCL, those of the device.
    static LxResult SetPoCLEnabled(LxDevice *aDevice, bool aEnabled);

private:
    class Data;
    std::unique_ptr<Data> mData;
};
