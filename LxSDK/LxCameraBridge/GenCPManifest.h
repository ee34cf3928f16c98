#pragma once

// Internal: what a GenCP camera says of itself (EMVA GenICam GenCP 1.3, chapters "Bootstrap Register Map", "Manifest").

#include <array>
#include <string>
#include <vector>

#include "LxCameraBridge/CameraRegisters.h"

namespace LxDetail
{

/// A file in the camera with its GenICam XML.
struct GenCPFile
{
    uint32_t mFileVersion = 0;    ///< Major in the upper 8 bits, minor in the next 8, sub-minor in the lower 16.
    uint32_t mSchemaVersion = 0;  ///< Major in bits 8 to 15, minor in bits 0 to 7.
    bool mZipped = false;
    uint64_t mAddress = 0;
    uint64_t mSize = 0;
    std::array<uint8_t, 20> mSHA1 = {};  ///< All 0: none.
};

/// The layout of an entry of the manifest.
constexpr size_t GenCPManifestEntrySize = 64;

/// A text register of 64 bytes; a failure gives the empty text.
LxResult ReadGenCPString(CameraRegisters &aCamera, uint64_t aAddress, std::string &aText);
/// The XML files that the camera offers, the best first: highest schema version, then highest file version.
/// GenICamError when there is none.
LxResult ReadGenCPManifest(CameraRegisters &aCamera, std::vector<GenCPFile> &aFiles);
/// Reads a file, checks it and unpacks it. GenICamError when it is damaged.
LxResult ReadGenCPFile(CameraRegisters &aCamera, const GenCPFile &aFile, std::string &aXML);

/// SHA-1 (FIPS 180).
std::array<uint8_t, 20> ComputeSHA1(const std::string &aBytes);

/// The name by which applications choose a file, in a form of our own (no standard defines one):
///   "SCHEMA#VERSION#CAMERA", for example "1.1#XML 1.0.0#LxGUI Line Camera"
/// the schema version; "XML " and the file version; manufacturer and model. A '#' in a name becomes a blank.
std::string MakeGenCPXMLID(const GenCPFile &aFile, const std::string &aManufacturer, const std::string &aModel);

}  // namespace LxDetail
