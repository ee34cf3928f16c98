#pragma once

// Internal: Kelvra camera files. docs/camera-file.md describes the format.

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "LxBase/LxResult.h"

namespace LxDetail
{

enum class CameraFileKind
{
    Integer,
    Float,
    Boolean,
    Enumeration,
    String,
    Command,
};

struct CameraFileFeature
{
    std::string mName;
    CameraFileKind mKind = CameraFileKind::Integer;
    std::string mCategory = "Camera";
    std::string mDisplayName;
    std::string mToolTip;
    std::string mUnit;
    std::string mVisibility = "Beginner";
    std::string mMin;  ///< numbers as the file has them; empty: none
    std::string mMax;
    std::string mIncrement;
    std::vector<std::pair<std::string, std::string>> mEntries;  ///< name, and what the camera calls it

    // of text cameras
    std::string mRead;   ///< empty: it cannot be read
    std::string mWrite;  ///< empty: it cannot be written
    std::string mAnswer = "{value}";

    // of GenCP cameras
    uint64_t mAddress = 0;
    uint32_t mLength = 4;
    bool mWritable = true;
};

struct CameraFile
{
    std::string mVendor = "Camera";
    std::string mModel = "Camera";
    bool mIsGenCP = false;
    std::string mTerminator = "\r";
    std::string mAcknowledge = "OK";  ///< empty: writing is not answered
    uint32_t mTimeout = 1000;         ///< milliseconds
    std::vector<CameraFileFeature> mFeatures;
};

/// FileError when it cannot be read, InvalidDataFormat when it is no camera file; the description has the line.
LxResult LoadCameraFile(const std::string &aPath, CameraFile &aFile);
LxResult ParseCameraFile(const std::string &aText, const std::string &aName, CameraFile &aFile);

/// Where a feature of a text camera is in the registers that stand for it.
uint64_t GetTextFeatureAddress(size_t aIndex);
constexpr uint32_t TextNumberLength = 8;
constexpr uint32_t TextStringLength = 256;

/// The GenICam XML of the features, on registers.
std::string MakeCameraFileXML(const CameraFile &aFile);

}  // namespace LxDetail
