#include "NodeMap/OtherFeatures.h"

namespace LxDetail
{

namespace
{

LxResult NoText(const char *aKind)
{
    return LxResult(LxResultCode::NotSupported, std::string("A ") + aKind + " has no value that could be set by text.");
}

}  // namespace

LxResult StringFeature::GetValue(LxString &aValue) const
{
    std::string value;
    LxResult result = mCore.Read([&] { return mCore.mEngine.GetString(mCore.mNode, value); });
    if (result.IsOK()) {
        aValue = std::move(value);
    }
    return result;
}

LxResult StringFeature::SetValue(const LxString &aValue)
{
    if (aValue.GetString().find('\0') != std::string::npos) {
        return LxResult(LxResultCode::InvalidParameter, "The text contains a zero byte.");
    }
    return mCore.Write([&] {
        int64_t maxLength = 0;
        LxResult result = mCore.mEngine.GetMaxLength(mCore.mNode, maxLength);
        if (!result.IsOK()) {
            return result;
        }
        if (static_cast<uint64_t>(aValue.GetLength()) > static_cast<uint64_t>(maxLength)) {
            return LxResult(LxResultCode::TooLong, "The text has " + std::to_string(aValue.GetLength()) +
                                                       " bytes; at most " + std::to_string(maxLength) + " fit.");
        }
        return mCore.mEngine.SetString(mCore.mNode, aValue.GetString());
    });
}

LxResult StringFeature::GetMaxLength(int64_t &aMaxLength) const
{
    return mCore.mEngine.Run([&] { return mCore.mEngine.GetMaxLength(mCore.mNode, aMaxLength); });
}

LxString StringFeature::ToString() const
{
    LxString value;
    GetValue(value);
    return value;
}

LxResult StringFeature::FromString(const LxString &aText)
{
    return SetValue(aText);
}

LxResult StringFeature::ReadState(std::string &aState) const
{
    return mCore.mEngine.GetString(mCore.mNode, aState);
}

LxResult CommandFeature::IsDone(bool &aDone) const
{
    return mCore.mEngine.Run([&] { return mCore.mEngine.IsDone(mCore.mNode, aDone); });
}

LxResult CommandFeature::Execute()
{
    return mCore.Write([&] { return mCore.mEngine.Execute(mCore.mNode); });
}

LxString CommandFeature::ToString() const
{
    return "{Command}";
}

LxResult CommandFeature::FromString(const LxString &)
{
    return NoText("command");
}

LxResult CommandFeature::ReadState(std::string &aState) const
{
    bool done = false;
    LxResult result = mCore.mEngine.IsDone(mCore.mNode, done);
    aState += done ? "done" : "executing";
    return result;
}

LxResult RegisterFeature::GetLength(int64_t &aLength) const
{
    return mCore.mEngine.Run([&] { return mCore.mEngine.GetLength(mCore.mNode, aLength); });
}

LxResult RegisterFeature::Get(uint8_t *aData, int64_t aLength) const
{
    return mCore.Read([&] {
        int64_t length = 0;
        LxResult result = mCore.mEngine.GetLength(mCore.mNode, length);
        if (!result.IsOK()) {
            return result;
        }
        if (!aData || aLength < length) {
            return LxResult(LxResultCode::BufferTooSmall, "The register has " + std::to_string(length) +
                                                              " bytes; there is room for " +
                                                              std::to_string(aData ? aLength : 0) + ".");
        }
        return mCore.mEngine.GetBytes(mCore.mNode, aData, length);
    });
}

LxResult RegisterFeature::Set(const uint8_t *aData, int64_t aLength)
{
    return mCore.Write([&] {
        int64_t length = 0;
        LxResult result = mCore.mEngine.GetLength(mCore.mNode, length);
        if (!result.IsOK()) {
            return result;
        }
        if (!aData || aLength != length) {
            return LxResult(LxResultCode::SizeMismatch, "The register has " + std::to_string(length) + " bytes; " +
                                                            std::to_string(aData ? aLength : 0) + " were given.");
        }
        return mCore.mEngine.SetBytes(mCore.mNode, aData, length);
    });
}

LxString RegisterFeature::ToString() const
{
    return "{Register}";
}

LxResult RegisterFeature::FromString(const LxString &)
{
    return NoText("register");
}

LxResult RegisterFeature::ReadState(std::string &aState) const
{
    int64_t length = 0;
    LxResult result = mCore.mEngine.GetLength(mCore.mNode, length);
    if (!result.IsOK()) {
        return result;
    }
    aState.resize(static_cast<size_t>(length));
    return mCore.mEngine.GetBytes(mCore.mNode, reinterpret_cast<uint8_t *>(aState.data()), length);
}

}  // namespace LxDetail
