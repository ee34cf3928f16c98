#include "LxCameraBridge/TextRegisters.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cstring>

#include "LxCameraBridge/GenCPPacket.h"

namespace LxDetail
{

namespace
{

const std::string Place = "{value}";
constexpr unsigned ReadRetries = 1;

template <class Number>
bool Parse(const std::string &aText, Number &aNumber)
{
    const auto [end, error] = std::from_chars(aText.data(), aText.data() + aText.size(), aNumber);
    return error == std::errc() && end == aText.data() + aText.size();
}

/// The value as 8 bytes; false when the text is none.
bool ToNumber(const CameraFileFeature &aFeature, const std::string &aText, uint64_t &aNumber)
{
    int64_t whole = 0;
    double real = 0;
    if (aFeature.mKind == CameraFileKind::Enumeration) {
        const auto found = std::find_if(aFeature.mEntries.begin(), aFeature.mEntries.end(),
                                        [&](const auto &aEntry) { return aEntry.second == aText; });
        aNumber = static_cast<uint64_t>(found - aFeature.mEntries.begin());
        return found != aFeature.mEntries.end();
    }
    if (aFeature.mKind == CameraFileKind::Float) {
        const bool good = Parse(aText, real);
        aNumber = std::bit_cast<uint64_t>(real);
        return good;
    }
    const bool good = Parse(aText, whole);
    aNumber = static_cast<uint64_t>(whole);
    return good;
}

bool ToText(const CameraFileFeature &aFeature, uint64_t aNumber, std::string &aText)
{
    if (aFeature.mKind == CameraFileKind::Enumeration) {
        if (aNumber >= aFeature.mEntries.size()) {
            return false;
        }
        aText = aFeature.mEntries[aNumber].second;
        return true;
    }
    char text[40];
    const auto result = aFeature.mKind == CameraFileKind::Float
                            ? std::to_chars(text, text + sizeof(text), std::bit_cast<double>(aNumber))
                            : std::to_chars(text, text + sizeof(text), static_cast<int64_t>(aNumber));
    aText.assign(text, result.ptr);
    return true;
}

}  // namespace

TextRegisters::TextRegisters(std::shared_ptr<CountedPort> aPort, CameraFile aFile)
    : mFile(std::move(aFile)), mLine(std::move(aPort), mFile.mTerminator, mFile.mTimeout)
{
}

const CameraFileFeature *TextRegisters::Find(uint64_t aAddress, uint32_t aLength) const
{
    const uint64_t index = aAddress / TextStringLength - 1;
    if (index >= mFile.mFeatures.size() || aAddress != GetTextFeatureAddress(index)) {
        return nullptr;
    }
    const CameraFileFeature &feature = mFile.mFeatures[index];
    const bool text = feature.mKind == CameraFileKind::String;
    return (text ? aLength <= TextStringLength : aLength == TextNumberLength) ? &feature : nullptr;
}

LxResult TextRegisters::AskValue(const CameraFileFeature &aFeature, std::string &aValue)
{
    std::string answer;
    LxResult result;
    for (unsigned attempt = 0; attempt <= ReadRetries; ++attempt) {
        result = mLine.Ask(aFeature.mRead, answer);
        if (result != LxResultCode::Timeout) {
            break;
        }
    }
    if (!result.IsOK()) {
        return result;
    }
    const size_t place = aFeature.mAnswer.find(Place);
    const std::string before = aFeature.mAnswer.substr(0, place);
    const std::string after = aFeature.mAnswer.substr(place + Place.size());
    if (!answer.starts_with(before) || !answer.ends_with(after) || answer.size() < before.size() + after.size()) {
        return LxResult(LxResultCode::ProtocolError,
                        "The camera answered \"" + answer + "\" to \"" + aFeature.mRead + "\".");
    }
    aValue = answer.substr(before.size(), answer.size() - before.size() - after.size());
    return LxResult();
}

LxResult TextRegisters::Read(uint64_t aAddress, void *aData, uint32_t aLength)
{
    const CameraFileFeature *feature = Find(aAddress, aLength);
    if (feature == nullptr) {
        return LxResultCode::InvalidAddress;
    }
    std::memset(aData, 0, aLength);
    if (feature->mRead.empty()) {
        return LxResult();  // a command that is done
    }
    std::string value;
    if (const LxResult result = AskValue(*feature, value); !result.IsOK()) {
        return result;
    }
    if (feature->mKind == CameraFileKind::String) {
        std::memcpy(aData, value.data(), std::min<size_t>(aLength, value.size()));
        return LxResult();
    }
    uint64_t number = 0;
    if (!ToNumber(*feature, value, number)) {
        return LxResult(LxResultCode::ProtocolError, "The camera gave \"" + value + "\" as the value of \"" +
                                                         feature->mName + "\", which cannot be.");
    }
    std::vector<uint8_t> bytes;
    GenCP::Append64(bytes, number);
    std::memcpy(aData, bytes.data(), bytes.size());
    return LxResult();
}

LxResult TextRegisters::Write(uint64_t aAddress, const void *aData, uint32_t aLength)
{
    const CameraFileFeature *feature = Find(aAddress, aLength);
    if (feature == nullptr || feature->mWrite.empty()) {
        return feature == nullptr ? LxResultCode::InvalidAddress : LxResultCode::WriteProtected;
    }
    const auto *bytes = static_cast<const uint8_t *>(aData);
    std::string value;
    if (feature->mKind == CameraFileKind::String) {
        value.assign(bytes, std::find(bytes, bytes + aLength, 0));
        if (value.find(mFile.mTerminator) != std::string::npos) {
            return LxResult(LxResultCode::InvalidParameter, "The text has the character that ends a command.");
        }
    }
    else if (!ToText(*feature, GenCP::Get64(bytes), value)) {
        return LxResultCode::InvalidParameter;
    }
    std::string command = feature->mWrite;
    if (const size_t place = command.find(Place); place != std::string::npos) {
        command.replace(place, Place.size(), value);
    }
    if (mFile.mAcknowledge.empty()) {
        return mLine.Tell(command);
    }
    std::string answer;
    const LxResult result = mLine.Ask(command, answer);
    if (!result.IsOK() || answer == mFile.mAcknowledge) {
        return result;
    }
    return LxResult(LxResultCode::InvalidParameter, "The camera answered \"" + answer + "\" to \"" + command + "\".");
}

LxResult TextRegisters::Ping()
{
    for (const CameraFileFeature &feature : mFile.mFeatures) {
        if (!feature.mRead.empty()) {
            std::string answer;
            return mLine.Ask(feature.mRead, answer);
        }
    }
    return LxResult();
}

}  // namespace LxDetail
