#include "LxCameraBridge/GenCPManifest.h"

#include <glib.h>

#include <algorithm>
#include <tuple>

#include "LxCameraBridge/GenCPPacket.h"
#include "LxCameraBridge/ZipFile.h"

namespace LxDetail
{

namespace
{

constexpr uint64_t MaxFiles = 64;
constexpr uint64_t MaxFileSize = 16 << 20;
constexpr uint32_t DeviceXML = 0;

LxResult Bad(const std::string &aWhy)
{
    return LxResult(LxResultCode::GenICamError, "The camera's list of XML files is wrong: " + aWhy + ".");
}

}  // namespace

LxResult ReadGenCPString(CameraRegisters &aCamera, uint64_t aAddress, std::string &aText)
{
    char bytes[GenCP::StringSize] = {};
    const LxResult result = aCamera.Read(aAddress, bytes, sizeof(bytes));
    aText = result.IsOK() ? std::string(bytes, std::find(bytes, bytes + sizeof(bytes), '\0')) : std::string();
    return result;
}

LxResult ReadGenCPManifest(CameraRegisters &aCamera, std::vector<GenCPFile> &aFiles)
{
    uint8_t bytes[GenCPManifestEntrySize];
    LxResult result = aCamera.Read(GenCP::RegManifestAddress, bytes, 8);
    const uint64_t table = result.IsOK() ? GenCP::Get64(bytes) : 0;
    if (result.IsOK()) {
        result = aCamera.Read(table, bytes, 8);
    }
    if (!result.IsOK()) {
        return result;
    }
    const uint64_t count = GenCP::Get64(bytes);
    if (count == 0 || count > MaxFiles) {
        return Bad(std::to_string(count) + " entries");
    }
    std::vector<GenCPFile> files;
    for (uint64_t i = 0; i < count; ++i) {
        result = aCamera.Read(table + 8 + i * GenCPManifestEntrySize, bytes, sizeof(bytes));
        if (!result.IsOK()) {
            return result;
        }
        const uint32_t kind = GenCP::Get32(bytes + 4);
        if ((kind & 7) != DeviceXML) {
            continue;
        }
        GenCPFile file;
        file.mFileVersion = GenCP::Get32(bytes);
        file.mSchemaVersion = kind >> 24 << 8 | (kind >> 16 & 0xFF);
        file.mZipped = (kind >> 10 & 0x3F) == 1;
        file.mAddress = GenCP::Get64(bytes + 8);
        file.mSize = GenCP::Get64(bytes + 16);
        std::copy(bytes + 24, bytes + 44, file.mSHA1.begin());
        if (file.mSize == 0 || file.mSize > MaxFileSize || file.mAddress + file.mSize < file.mAddress) {
            return Bad("a file of " + std::to_string(file.mSize) + " bytes");
        }
        files.push_back(file);
    }
    if (files.empty()) {
        return Bad("no file describes the camera");
    }
    std::stable_sort(files.begin(), files.end(), [](const GenCPFile &aFirst, const GenCPFile &aSecond) {
        return std::tie(aFirst.mSchemaVersion, aFirst.mFileVersion) >
               std::tie(aSecond.mSchemaVersion, aSecond.mFileVersion);
    });
    aFiles = std::move(files);
    return LxResult();
}

LxResult ReadGenCPFile(CameraRegisters &aCamera, const GenCPFile &aFile, std::string &aXML)
{
    std::string bytes(aFile.mSize, '\0');
    if (const LxResult result = aCamera.Read(aFile.mAddress, bytes.data(), static_cast<uint32_t>(bytes.size()));
        !result.IsOK())
    {
        return LxResult(result.GetCode(), "The camera's XML could not be read. " + result.GetDescription().GetString());
    }
    if (aFile.mSHA1 != std::array<uint8_t, 20>{} && aFile.mSHA1 != ComputeSHA1(bytes)) {
        return LxResult(LxResultCode::GenICamError, "The camera's XML is damaged: its SHA-1 checksum is wrong.");
    }
    if (!aFile.mZipped && !IsZip(bytes)) {
        bytes.resize(bytes.find_last_not_of('\0') + 1);  // some cameras fill up to the next address
        aXML = std::move(bytes);
        return LxResult();
    }
    const LxResult result = ExtractZip(bytes, MaxFileSize, aXML);
    return result.IsOK() ? result : LxResult(LxResultCode::GenICamError, result.GetDescription());
}

std::array<uint8_t, 20> ComputeSHA1(const std::string &aBytes)
{
    std::array<uint8_t, 20> digest = {};
    gsize size = digest.size();
    GChecksum *checksum = g_checksum_new(G_CHECKSUM_SHA1);
    g_checksum_update(checksum, reinterpret_cast<const guchar *>(aBytes.data()), static_cast<gssize>(aBytes.size()));
    g_checksum_get_digest(checksum, digest.data(), &size);
    g_checksum_free(checksum);
    return digest;
}

std::string MakeGenCPXMLID(const GenCPFile &aFile, const std::string &aManufacturer, const std::string &aModel)
{
    std::string camera = aManufacturer + " " + aModel;
    std::replace(camera.begin(), camera.end(), '#', ' ');
    return std::to_string(aFile.mSchemaVersion >> 8) + "." + std::to_string(aFile.mSchemaVersion & 0xFF) + "#XML " +
           std::to_string(aFile.mFileVersion >> 24) + "." + std::to_string(aFile.mFileVersion >> 16 & 0xFF) + "." +
           std::to_string(aFile.mFileVersion & 0xFFFF) + "#" + camera;
}

}  // namespace LxDetail
