#include "LxGUI/SerialTerminal/PortFeatures.h"

#include <algorithm>

#include "LxGUI/Frame/Text.h"
#include "LxGenICam/LxGenBoolean.h"
#include "LxGenICam/LxGenEnum.h"
#include "LxGenICam/LxGenInteger.h"
#include "LxGenICam/LxGenParameterArray.h"

namespace
{

constexpr uint64_t MostNumbers = 32;
constexpr char ClockDivider[] = "BulkSystemClockDivider";

LxGenParameter *Find(LxGenParameterArray *aParameters, const char *aName)
{
    LxGenParameter *feature = aParameters ? aParameters->Get(aName) : nullptr;
    return feature && feature->IsImplemented() ? feature : nullptr;
}

std::vector<int64_t> PreferredSpeeds(const LxGenInteger &aFeature)
{
    LxString name;
    if (!aFeature.GetName(name).IsOK() || name != ClockDivider) {
        return {1200,  2400,  4800,   9600,   14400,  19200,  28800,  38400,
                57600, 76800, 115200, 230400, 460800, 500000, 921600, 1000000};
    }
    std::vector<int64_t> powers;
    for (int64_t power = 1; power <= INT64_C(1) << 31; power *= 2) {
        powers.push_back(power);
    }
    return powers;
}

SpeedChoices ReadNumber(const LxGenInteger &aFeature)
{
    SpeedChoices choices;
    int64_t current = 0;
    int64_t min = 0;
    int64_t max = 0;
    int64_t increment = 1;
    if (!aFeature.GetValue(current).IsOK()) {
        return choices;
    }
    if (!aFeature.GetMin(min).IsOK() || !aFeature.GetMax(max).IsOK() || !aFeature.GetIncrement(increment).IsOK()) {
        min = current;
        max = current;
    }
    for (const int64_t number : NumbersToOffer(min, max, increment, current, PreferredSpeeds(aFeature))) {
        if (number == current) {
            choices.mCurrent = static_cast<int>(choices.mTexts.size());
        }
        choices.mTexts << QString::number(number);
    }
    return choices;
}

SpeedChoices ReadEntries(const LxGenEnum &aFeature)
{
    SpeedChoices choices;
    int64_t current = 0;
    int64_t count = 0;
    const bool readable = aFeature.GetValue(current).IsOK();
    if (!aFeature.GetEntriesCount(count).IsOK()) {
        count = 0;
    }
    for (int64_t i = 0; i < count; ++i) {
        const LxGenEnumEntry *entry = nullptr;
        LxString name;
        int64_t number = 0;
        if (aFeature.GetEntryByIndex(i, &entry).IsOK() && entry && entry->IsAvailable() &&
            entry->GetName(name).IsOK() && entry->GetValue(number).IsOK())
        {
            if (readable && number == current) {
                choices.mCurrent = static_cast<int>(choices.mTexts.size());
            }
            choices.mTexts << ToQString(name);
        }
    }
    return choices;
}

}  // namespace

bool IsBulkPort(LxDeviceSerial aPort)
{
    return aPort >= LxDeviceSerial::Bulk0 && aPort <= LxDeviceSerial::Bulk7;
}

void SelectBulkPort(LxGenParameterArray *aParameters, LxDeviceSerial aPort)
{
    if (IsBulkPort(aPort) && Find(aParameters, "BulkSelector")) {
        aParameters->SetEnumValue("BulkSelector", LxDeviceSerialToString(aPort));
    }
}

LxGenParameter *FindSpeedFeature(LxGenParameterArray *aParameters, LxDeviceSerial aPort)
{
    if (!IsBulkPort(aPort)) {
        return aPort == LxDeviceSerial::Serial0   ? Find(aParameters, "Uart0BaudRate")
               : aPort == LxDeviceSerial::Serial1 ? Find(aParameters, "Uart1BaudRate")
                                                  : nullptr;
    }
    LxGenParameter *baudRate = Find(aParameters, "BulkBaudRate");
    return baudRate ? baudRate : Find(aParameters, ClockDivider);
}

LxGenParameter *FindLoopbackFeature(LxGenParameterArray *aParameters, LxDeviceSerial aPort)
{
    return aPort == LxDeviceSerial::Serial0   ? Find(aParameters, "Uart0Loopback")
           : aPort == LxDeviceSerial::Serial1 ? Find(aParameters, "Uart1Loopback")
           : IsBulkPort(aPort)                ? Find(aParameters, "BulkLoopback")
                                              : nullptr;
}

std::vector<int64_t> NumbersToOffer(int64_t aMin, int64_t aMax, int64_t aIncrement, int64_t aCurrent,
                                    const std::vector<int64_t> &aPreferred)
{
    std::vector<int64_t> numbers;
    if (aMin <= aMax) {
        // Unsigned, because the range may be wider than a signed number.
        const auto increment = static_cast<uint64_t>(std::max<int64_t>(aIncrement, 1));
        const auto from = static_cast<uint64_t>(aMin);
        const uint64_t steps = (static_cast<uint64_t>(aMax) - from) / increment;
        if (steps < MostNumbers) {
            for (uint64_t i = 0; i <= steps; ++i) {
                numbers.push_back(static_cast<int64_t>(from + i * increment));
            }
        }
        else {
            std::copy_if(aPreferred.begin(), aPreferred.end(), std::back_inserter(numbers), [&](int64_t aNumber) {
                return aNumber >= aMin && aNumber <= aMax && (static_cast<uint64_t>(aNumber) - from) % increment == 0;
            });
        }
    }
    const auto place = std::lower_bound(numbers.begin(), numbers.end(), aCurrent);
    if (place == numbers.end() || *place != aCurrent) {
        numbers.insert(place, aCurrent);
    }
    return numbers;
}

SpeedChoices ReadSpeed(LxGenParameter &aFeature)
{
    if (const auto *number = dynamic_cast<const LxGenInteger *>(&aFeature)) {
        return ReadNumber(*number);
    }
    const auto *enumeration = dynamic_cast<const LxGenEnum *>(&aFeature);
    return enumeration ? ReadEntries(*enumeration) : SpeedChoices();
}

LxResult WriteSpeed(LxGenParameter &aFeature, const QString &aText)
{
    if (auto *number = dynamic_cast<LxGenInteger *>(&aFeature)) {
        bool ok = false;
        const qlonglong value = aText.toLongLong(&ok);
        return ok ? number->SetValue(value) : LxResult(LxResultCode::InvalidParameter);
    }
    auto *enumeration = dynamic_cast<LxGenEnum *>(&aFeature);
    return enumeration ? enumeration->SetValue(ToLxString(aText)) : LxResult(LxResultCode::InvalidParameter);
}

bool ReadFlag(LxGenParameter &aFeature)
{
    bool flag = false;
    int64_t number = 0;
    if (const auto *boolean = dynamic_cast<const LxGenBoolean *>(&aFeature)) {
        return boolean->GetValue(flag).IsOK() && flag;
    }
    if (const auto *integer = dynamic_cast<const LxGenInteger *>(&aFeature)) {
        return integer->GetValue(number).IsOK() && number != 0;
    }
    const auto *enumeration = dynamic_cast<const LxGenEnum *>(&aFeature);
    return enumeration && enumeration->GetValue(number).IsOK() && number != 0;
}

LxResult WriteFlag(LxGenParameter &aFeature, bool aValue)
{
    if (auto *boolean = dynamic_cast<LxGenBoolean *>(&aFeature)) {
        return boolean->SetValue(aValue);
    }
    if (auto *integer = dynamic_cast<LxGenInteger *>(&aFeature)) {
        return integer->SetValue(aValue ? 1 : 0);
    }
    auto *enumeration = dynamic_cast<LxGenEnum *>(&aFeature);
    return enumeration ? enumeration->SetValue(int64_t{aValue}) : LxResult(LxResultCode::NotSupported);
}
