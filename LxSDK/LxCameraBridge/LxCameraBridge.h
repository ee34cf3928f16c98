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
class LX_API LxCameraBridge
{
public:
    LxCameraBridge(LxDevice *aDevice, LxDeviceSerial aPort, LxStream *aStream);
    ~LxCameraBridge();
    LxCameraBridge(const LxCameraBridge &) = delete;
    LxCameraBridge &operator=(const LxCameraBridge &) = delete;

    /// Frees the camera's features. Succeeds also when not connected.
    LxResult Disconnect();
    bool IsConnected() const;

    /// Connects by a Kelvra camera file (*.yml; docs/camera-file.md describes the format). Errors: FileError,
    /// InvalidDataFormat (with the line), AlreadyOpen (it is connected), those of the serial port and of the camera.
    LxResult ConnectKelvraCameraFile(const LxString &aPath);

    /// The installed GenICam CL Protocol templates, as full '#'-separated texts: directory # file # manufacturer #
    /// family. NotFound when no driver is installed.
    static LxResult GetCLProtocolTemplates(LxStringList &aTemplates);
    /// Asks for the camera behind the port with a template: its ID and the XML descriptions that fit.
    LxResult ProbeCLProtocol(const LxString &aTemplate, LxString &aCameraID, LxStringList &aXMLIDs);
    /// @param aTemplate a template, or a camera ID, which begins with one.
    /// @param aXMLID one of those that ProbeCLProtocol() gave. Errors: NotFound, AlreadyOpen, GenICamError, those of
    /// the
    ///        serial port and of the camera.
    LxResult ConnectCLProtocol(const LxString &aTemplate, const LxString &aXMLID);

    /// Asks a GenCP camera for its XML descriptions, the best first. An ID is a text of the form
    /// "SCHEMA#XML VERSION#MANUFACTURER MODEL", for example "1.1#XML 1.0.0#LxGUI Line Camera"; no standard defines one.
    LxResult GetGenCPXMLIDs(LxStringList &aXMLIDs);
    /// May be repeated while connected by GenCP; when that fails the bridge stays connected as it was. Errors: NotFound
    /// (no such XML), AlreadyOpen (connected otherwise), Timeout, GenICamError, those of the serial port and of the
    /// camera.
    LxResult ConnectGenCP(const LxString &aXMLID);

    /// How the bridge is connected; each succeeds only when it is connected that way.
    LxResult GetKelvraCameraFilePath(LxString &aPath) const;
    LxResult GetCLProtocolCameraID(LxString &aCameraID) const;
    LxResult GetCLProtocolTemplate(LxString &aTemplate) const;
    LxResult GetCLProtocolXMLID(LxString &aXMLID) const;
    LxResult GetGenCPXMLID(LxString &aXMLID) const;

    /// The camera's features; null when not connected.
    LxGenParameterArray *GetParameters();

    /// Saves how the bridge is connected and its settings under a name; fails when it is not connected.
    LxResult Save(const LxString &aName, LxConfigurationWriter &aWriter);
    /// Connects as it was saved. What could not be restored is added to the errors.
    LxResult Load(const LxString &aName, LxConfigurationReader &aReader, LxStringList &aErrors);

    uint64_t GetBytesSentToCamera() const;
    uint64_t GetBytesReceivedFromCamera() const;
    void ResetStatistics();

    /// Whether Width, Height and PixelFormat of the camera are copied to the grabber, at once and when they change; off
    /// at first. What the grabber does not take while it streams it gets afterwards.
    void SetParametersSyncEnabled(bool aEnabled);
    bool GetParametersSyncEnabled() const;
    /// The data source of the grabber that the camera feeds: an entry of the grabber's feature "SourceSelector", at
    /// first the current one. NotFound when there is no such entry.
    LxResult SetSource(const LxString &aSource);
    LxString GetSource() const;

    /// Power over Camera Link, a property of the grabber; false, and InvalidArgument, for a null device.
    static bool IsPoCLSupported(LxDevice *aDevice);
    static bool IsPoCLEnabled(LxDevice *aDevice);
    static LxResult SetPoCLEnabled(LxDevice *aDevice, bool aEnabled);

private:
    class Data;
    std::unique_ptr<Data> mData;
};
