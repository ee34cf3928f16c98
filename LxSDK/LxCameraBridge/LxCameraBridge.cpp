#include "LxCameraBridge/LxCameraBridge.h"

#include <algorithm>

#include "LxCameraBridge/CLProtocolDriver.h"
#include "LxCameraBridge/CameraFile.h"
#include "LxCameraBridge/CountedPort.h"
#include "LxCameraBridge/GenCPClient.h"
#include "LxCameraBridge/GenCPManifest.h"
#include "LxCameraBridge/GeometrySync.h"
#include "LxCameraBridge/TextRegisters.h"
#include "LxCameraBridge/WatchedPort.h"
#include "LxDevice/LxDevice.h"
#include "LxDevice/LxDeviceAdapter.h"
#include "LxGenICam/LxGenBoolean.h"
#include "LxGenICam/LxGenEnum.h"
#include "LxGenICam/LxGenParameterArray.h"
#include "LxPersistence/LxConfigurationReader.h"
#include "LxPersistence/LxConfigurationWriter.h"
#include "NodeMap/NodeMap.h"

using namespace LxDetail;

namespace
{

constexpr const char *SourceFeature = "SourceSelector";
constexpr const char *PoCLFeature = "PoCLEnabled";

// Names and values of the saved properties.
constexpr const char *ConnectionProperty = "Connection";
constexpr const char *FileConnection = "KelvraCameraFile";
constexpr const char *CLProtocolConnection = "CLProtocol";
constexpr const char *GenCPConnection = "GenCP";
constexpr const char *PathProperty = "Path";
constexpr const char *TemplateProperty = "Template";
constexpr const char *XMLIDProperty = "XMLID";
constexpr const char *SyncProperty = "ParametersSync";
constexpr const char *SourceProperty = "Source";

enum class Way
{
    CameraFile,
    CLProtocol,
    GenCP,
};

/// What a connected bridge has. Destroyed from the last member on: what uses the camera first.
struct Connection
{
    Way mWay;
    std::shared_ptr<CountedPort> mPort;
    std::string mPath;
    std::string mCameraID;
    std::string mTemplate;
    std::string mXMLID;
    std::unique_ptr<NodeMap> mNodes;
    std::unique_ptr<GeometrySync> mSync;
};

LxGenParameterArray *GetFeatures(LxDevice *aDevice)
{
    return aDevice == nullptr ? nullptr : aDevice->GetParameters();
}

LxGenBoolean *GetPoCL(LxDevice *aDevice)
{
    LxGenParameterArray *features = GetFeatures(aDevice);
    return features == nullptr ? nullptr : features->GetBoolean(PoCLFeature);
}

LxString GetText(const LxPropertyList &aList, const char *aName)
{
    const LxProperty *property = aList.GetProperty(aName);
    return property == nullptr ? LxString() : property->GetValue();
}

LxResult ListGenCPFiles(CameraRegisters &aCamera, std::vector<GenCPFile> &aFiles, std::vector<std::string> &aIDs)
{
    std::string manufacturer;
    std::string model;
    LxResult result = ReadGenCPString(aCamera, GenCP::RegManufacturerName, manufacturer);
    if (result.IsOK()) {
        result = ReadGenCPString(aCamera, GenCP::RegModelName, model);
    }
    if (result.IsOK()) {
        result = ReadGenCPManifest(aCamera, aFiles);
    }
    if (result.IsOK()) {
        for (const GenCPFile &file : aFiles) {
            aIDs.push_back(MakeGenCPXMLID(file, manufacturer, model));
        }
    }
    return result;
}

}  // namespace

class LX_NO_EXPORT LxCameraBridge::Data
{
public:
    Data(LxDevice *aDevice, LxDeviceSerial aSerial) : mDevice(aDevice), mSerial(aSerial)
    {
        LxString source;
        if (LxGenParameterArray *features = GetFeatures(aDevice)) {
            features->GetEnumValue(SourceFeature, source);
        }
        mSource = source.GetString();
    }

    LxResult OpenPort(std::shared_ptr<CountedPort> &aPort) const
    {
        if (mConnection) {
            return LxResult(LxResultCode::AlreadyOpen, "The bridge is connected in another way; disconnect it first.");
        }
        aPort = std::make_shared<CountedPort>(mTraffic);
        LxDeviceAdapter adapter(mDevice);
        return aPort->Open(&adapter, mSerial);
    }
    /// A client on the port of the present GenCP connection, or on one opened for it.
    LxResult OpenGenCP(std::shared_ptr<CountedPort> &aPort, std::shared_ptr<GenCPClient> &aClient) const
    {
        LxResult result;
        if (mConnection && mConnection->mWay == Way::GenCP) {
            aPort = mConnection->mPort;
        }
        else {
            result = OpenPort(aPort);
        }
        if (result.IsOK()) {
            aClient = std::make_shared<GenCPClient>(aPort);
            result = aClient->Open();
        }
        return result;
    }
    /// Makes the features and, when that succeeds, the new connection takes the place of the present one.
    LxResult Establish(std::unique_ptr<Connection> aConnection, std::shared_ptr<CameraRegisters> aRegisters,
                       const std::string &aXML)
    {
        const LxResult result =
            NodeMap::Create(std::make_shared<WatchedPort>(std::move(aRegisters)), aXML, aConnection->mNodes);
        if (result.IsOK()) {
            mConnection = std::move(aConnection);
            mConnection->mSync =
                std::make_unique<GeometrySync>(mDevice, *mConnection->mNodes->GetParameters(), mSource, mSyncEnabled);
        }
        return result;
    }
    LxResult GetText(Way aWay, std::string Connection::*aMember, LxString &aText) const
    {
        if (!mConnection || mConnection->mWay != aWay) {
            return LxResult(LxResultCode::NotConnected, "The bridge is not connected in this way.");
        }
        aText = LxString((*mConnection).*aMember);
        return LxResult();
    }

    LxDevice *const mDevice;
    const LxDeviceSerial mSerial;
    const std::shared_ptr<Traffic> mTraffic = std::make_shared<Traffic>();
    std::string mSource;
    bool mSyncEnabled = false;
    std::unique_ptr<Connection> mConnection;
};

LxCameraBridge::LxCameraBridge(LxDevice *aDevice, LxDeviceSerial aPort, LxStream *)
    : mData(std::make_unique<Data>(aDevice, aPort))
{
}

LxCameraBridge::~LxCameraBridge()
{
    Disconnect();
}

LxResult LxCameraBridge::Disconnect()
{
    if (mData->mConnection) {
        mData->mConnection->mPort->Close();  // accesses that still wait end at once
        mData->mConnection.reset();
    }
    return LxResult();
}

bool LxCameraBridge::IsConnected() const
{
    return mData->mConnection != nullptr;
}

LxResult LxCameraBridge::ConnectKelvraCameraFile(const LxString &aPath)
{
    CameraFile file;
    auto connection = std::make_unique<Connection>();
    connection->mWay = Way::CameraFile;
    connection->mPath = aPath.GetString();
    LxResult result = LoadCameraFile(connection->mPath, file);
    if (result.IsOK()) {
        result = mData->OpenPort(connection->mPort);
    }
    std::shared_ptr<CameraRegisters> registers;
    if (result.IsOK() && file.mIsGenCP) {
        const auto client = std::make_shared<GenCPClient>(connection->mPort);
        result = client->Open();
        registers = client;
    }
    else if (result.IsOK()) {
        registers = std::make_shared<TextRegisters>(connection->mPort, file);
        result = registers->Ping();
    }
    return result.IsOK() ? mData->Establish(std::move(connection), registers, MakeCameraFileXML(file)) : result;
}

LxResult LxCameraBridge::GetCLProtocolTemplates(LxStringList &aTemplates)
{
    aTemplates.Clear();
    for (const auto &driver : CLProtocolDrivers::Get()) {
        for (const std::string &text : driver->GetTemplates()) {
            aTemplates.Add(text);
        }
    }
    return aTemplates.GetSize() > 0
               ? LxResult()
               : LxResult(LxResultCode::NotFound, "No drivers of the GenICam CL Protocol are installed.");
}

LxResult LxCameraBridge::ProbeCLProtocol(const LxString &aTemplate, LxString &aCameraID, LxStringList &aXMLIDs)
{
    std::string text;
    const auto driver = CLProtocolDrivers::Find(aTemplate.GetString(), text);
    if (!driver) {
        return LxResult(LxResultCode::NotFound,
                        "There is no CL Protocol driver for \"" + aTemplate.GetString() + "\".");
    }
    std::shared_ptr<CountedPort> port;
    LxResult result = mData->OpenPort(port);
    std::string camera;
    std::vector<std::string> ids;
    if (result.IsOK()) {
        result = driver->Probe(port, text, camera, ids);
    }
    if (result.IsOK()) {
        aCameraID = camera;
        aXMLIDs.Clear();
        std::for_each(ids.begin(), ids.end(), [&](const std::string &aID) { aXMLIDs.Add(aID); });
    }
    return result;
}

LxResult LxCameraBridge::ConnectCLProtocol(const LxString &aTemplate, const LxString &aXMLID)
{
    auto connection = std::make_unique<Connection>();
    connection->mWay = Way::CLProtocol;
    connection->mXMLID = aXMLID.GetString();
    const auto driver = CLProtocolDrivers::Find(aTemplate.GetString(), connection->mTemplate);
    if (!driver) {
        return LxResult(LxResultCode::NotFound,
                        "There is no CL Protocol driver for \"" + aTemplate.GetString() + "\".");
    }
    LxResult result = mData->OpenPort(connection->mPort);
    std::vector<std::string> ids;
    if (result.IsOK()) {
        result = driver->Probe(connection->mPort, connection->mTemplate, connection->mCameraID, ids);
    }
    if (result.IsOK() && std::find(ids.begin(), ids.end(), connection->mXMLID) == ids.end()) {
        result = LxResult(LxResultCode::NotFound, "The camera has no XML description \"" + connection->mXMLID + "\".");
    }
    std::string xml;
    std::shared_ptr<CameraRegisters> registers;
    if (result.IsOK()) {
        result = driver->Connect(connection->mPort, connection->mXMLID, xml, registers);
    }
    return result.IsOK() ? mData->Establish(std::move(connection), registers, xml) : result;
}

LxResult LxCameraBridge::GetGenCPXMLIDs(LxStringList &aXMLIDs)
{
    std::shared_ptr<CountedPort> port;
    std::shared_ptr<GenCPClient> client;
    std::vector<GenCPFile> files;
    std::vector<std::string> ids;
    LxResult result = mData->OpenGenCP(port, client);
    if (result.IsOK()) {
        result = ListGenCPFiles(*client, files, ids);
    }
    if (result.IsOK()) {
        aXMLIDs.Clear();
        std::for_each(ids.begin(), ids.end(), [&](const std::string &aID) { aXMLIDs.Add(aID); });
    }
    return result;
}

LxResult LxCameraBridge::ConnectGenCP(const LxString &aXMLID)
{
    auto connection = std::make_unique<Connection>();
    connection->mWay = Way::GenCP;
    connection->mXMLID = aXMLID.GetString();
    std::shared_ptr<GenCPClient> client;
    std::vector<GenCPFile> files;
    std::vector<std::string> ids;
    std::string xml;
    LxResult result = mData->OpenGenCP(connection->mPort, client);
    if (result.IsOK()) {
        result = ListGenCPFiles(*client, files, ids);
    }
    if (result.IsOK()) {
        const auto found = std::find(ids.begin(), ids.end(), connection->mXMLID);
        result = found == ids.end() ? LxResult(LxResultCode::NotFound,
                                               "The camera has no XML description \"" + connection->mXMLID + "\".")
                                    : ReadGenCPFile(*client, files[static_cast<size_t>(found - ids.begin())], xml);
    }
    return result.IsOK() ? mData->Establish(std::move(connection), client, xml) : result;
}

LxResult LxCameraBridge::GetKelvraCameraFilePath(LxString &aPath) const
{
    return mData->GetText(Way::CameraFile, &Connection::mPath, aPath);
}

LxResult LxCameraBridge::GetCLProtocolCameraID(LxString &aCameraID) const
{
    return mData->GetText(Way::CLProtocol, &Connection::mCameraID, aCameraID);
}

LxResult LxCameraBridge::GetCLProtocolTemplate(LxString &aTemplate) const
{
    return mData->GetText(Way::CLProtocol, &Connection::mTemplate, aTemplate);
}

LxResult LxCameraBridge::GetCLProtocolXMLID(LxString &aXMLID) const
{
    return mData->GetText(Way::CLProtocol, &Connection::mXMLID, aXMLID);
}

LxResult LxCameraBridge::GetGenCPXMLID(LxString &aXMLID) const
{
    return mData->GetText(Way::GenCP, &Connection::mXMLID, aXMLID);
}

LxGenParameterArray *LxCameraBridge::GetParameters()
{
    return mData->mConnection ? mData->mConnection->mNodes->GetParameters() : nullptr;
}

LxResult LxCameraBridge::Save(const LxString &aName, LxConfigurationWriter &aWriter)
{
    const Connection *connection = mData->mConnection.get();
    if (connection == nullptr) {
        return LxResult(LxResultCode::NotConnected, "The bridge is not connected: there is nothing to save.");
    }
    LxPropertyList list;
    switch (connection->mWay) {
        case Way::CameraFile:
            list.Add(LxProperty(ConnectionProperty, LxString(FileConnection)));
            list.Add(LxProperty(PathProperty, connection->mPath));
            break;
        case Way::CLProtocol:
            list.Add(LxProperty(ConnectionProperty, LxString(CLProtocolConnection)));
            list.Add(LxProperty(TemplateProperty, connection->mTemplate));
            list.Add(LxProperty(XMLIDProperty, connection->mXMLID));
            break;
        case Way::GenCP:
            list.Add(LxProperty(ConnectionProperty, LxString(GenCPConnection)));
            list.Add(LxProperty(XMLIDProperty, connection->mXMLID));
            break;
    }
    list.Add(LxProperty(SyncProperty, mData->mSyncEnabled ? 1u : 0u));
    list.Add(LxProperty(SourceProperty, mData->mSource));
    return aWriter.Store(&list, aName);
}

LxResult LxCameraBridge::Load(const LxString &aName, LxConfigurationReader &aReader, LxStringList &aErrors)
{
    LxPropertyList list;
    const auto port = LxDeviceSerialToString(mData->mSerial).GetString();
    LxResult result = aReader.Restore(aName, &list);
    if (!result.IsOK()) {
        aErrors.Add(port + ": the bridge's settings are missing.");
        return result;
    }
    Disconnect();
    SetParametersSyncEnabled(GetText(list, SyncProperty) == LxString("1"));
    if (const LxString source = GetText(list, SourceProperty); !source.IsEmpty()) {
        if (const LxResult set = SetSource(source); !set.IsOK()) {
            aErrors.Add(port + ": " + set.GetDescription().GetString());
        }
    }
    const LxString way = GetText(list, ConnectionProperty);
    if (way == LxString(FileConnection)) {
        result = ConnectKelvraCameraFile(GetText(list, PathProperty));
    }
    else if (way == LxString(CLProtocolConnection)) {
        result = ConnectCLProtocol(GetText(list, TemplateProperty), GetText(list, XMLIDProperty));
    }
    else if (way == LxString(GenCPConnection)) {
        result = ConnectGenCP(GetText(list, XMLIDProperty));
    }
    else {
        result = LxResult(LxResultCode::InvalidDataFormat,
                          "\"" + way.GetString() + "\" is no known way to connect a bridge.");
    }
    if (!result.IsOK()) {
        aErrors.Add(port + ": " + result.GetDescription().GetString());
    }
    return result;
}

uint64_t LxCameraBridge::GetBytesSentToCamera() const
{
    return mData->mTraffic->mSent;
}

uint64_t LxCameraBridge::GetBytesReceivedFromCamera() const
{
    return mData->mTraffic->mReceived;
}

void LxCameraBridge::ResetStatistics()
{
    mData->mTraffic->mSent = 0;
    mData->mTraffic->mReceived = 0;
}

void LxCameraBridge::SetParametersSyncEnabled(bool aEnabled)
{
    mData->mSyncEnabled = aEnabled;
    if (mData->mConnection) {
        mData->mConnection->mSync->SetEnabled(aEnabled);
    }
}

bool LxCameraBridge::GetParametersSyncEnabled() const
{
    return mData->mSyncEnabled;
}

LxResult LxCameraBridge::SetSource(const LxString &aSource)
{
    LxGenParameterArray *features = GetFeatures(mData->mDevice);
    const LxGenEnum *sources = features == nullptr ? nullptr : features->GetEnum(SourceFeature);
    const LxGenEnumEntry *entry = nullptr;
    if (sources == nullptr || !sources->GetEntryByName(aSource, &entry).IsOK()) {
        return LxResult(LxResultCode::NotFound, "The frame grabber has no source \"" + aSource.GetString() + "\".");
    }
    mData->mSource = aSource.GetString();
    if (mData->mConnection) {
        mData->mConnection->mSync->SetSource(mData->mSource);
    }
    return LxResult();
}

LxString LxCameraBridge::GetSource() const
{
    return mData->mSource;
}

bool LxCameraBridge::IsPoCLSupported(LxDevice *aDevice)
{
    const LxGenBoolean *feature = GetPoCL(aDevice);
    return feature != nullptr && feature->IsAvailable();
}

bool LxCameraBridge::IsPoCLEnabled(LxDevice *aDevice)
{
    const LxGenBoolean *feature = GetPoCL(aDevice);
    bool enabled = false;
    return feature != nullptr && feature->GetValue(enabled).IsOK() && enabled;
}

LxResult LxCameraBridge::SetPoCLEnabled(LxDevice *aDevice, bool aEnabled)
{
    if (aDevice == nullptr) {
        return LxResult(LxResultCode::InvalidArgument, "There is no device.");
    }
    LxGenBoolean *feature = GetPoCL(aDevice);
    return feature != nullptr
               ? feature->SetValue(aEnabled)
               : LxResult(LxResultCode::NotSupported, "The device does not supply power over Camera Link.");
}
