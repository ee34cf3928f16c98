#include "LxSerial/PortSpeed.h"

#include <algorithm>
#include <cctype>
#include <string>

#include "LxDevice/ILxDeviceAdapter.h"
#include "LxGenICam/LxGenEnum.h"
#include "LxGenICam/LxGenInteger.h"
#include "LxGenICam/LxGenParameterArray.h"

namespace LxDetail
{

namespace
{

constexpr uint32_t StandardRates[] = {9600, 14400, 19200, 28800, 38400, 57600, 115200, 230400, 460800, 921600};

/// The number at the end of an entry's name; 0 when there is none.
uint32_t ParseRate(const LxString &aName)
{
    const std::string &name = aName.GetString();
    size_t first = name.size();
    while (first > 0 && std::isdigit(static_cast<unsigned char>(name[first - 1])) != 0) {
        --first;
    }
    const std::string digits = name.substr(first);
    return digits.empty() || digits.size() > 9 ? 0 : static_cast<uint32_t>(std::stoul(digits));
}

}  // namespace

/// The feature of the port; the port is selected for as long as this lives.
class PortSpeed::Selection
{
public:
    explicit Selection(const PortSpeed &aSpeed)
    {
        LxGenParameterArray *parameters = aSpeed.mAdapter ? aSpeed.mAdapter->GetParameters() : nullptr;
        if (parameters == nullptr) {
            return;
        }
        LxString name = "BulkBaudRate";
        if (aSpeed.mPort == LxDeviceSerial::Serial0 || aSpeed.mPort == LxDeviceSerial::Serial1) {
            name = "Uart" + std::to_string(static_cast<uint32_t>(aSpeed.mPort)) + "BaudRate";
        }
        else if (LxGenEnum *selector = parameters->GetEnum("BulkSelector")) {
            const LxString port = LxDeviceSerialToString(aSpeed.mPort);
            if (!selector->GetValue(mFormer).IsOK()) {
                return;
            }
            if (mFormer != port) {
                if (!selector->SetValue(port).IsOK()) {
                    return;  // the features are those of another port
                }
                mSelector = selector;
            }
        }
        mEnum = parameters->GetEnum(name);
        mInteger = parameters->GetInteger(name);
    }
    ~Selection()
    {
        if (mSelector) {
            mSelector->SetValue(mFormer);
        }
    }
    Selection(const Selection &) = delete;
    Selection &operator=(const Selection &) = delete;

    LxGenEnum *mEnum = nullptr;
    LxGenInteger *mInteger = nullptr;

private:
    LxGenEnum *mSelector = nullptr;  // when it must be set back
    LxString mFormer;
};

std::vector<uint32_t> PortSpeed::GetSupported() const
{
    const Selection port(*this);
    std::vector<uint32_t> rates;
    int64_t min = 0;
    int64_t max = 0;
    int64_t step = 1;
    int64_t count = 0;
    if (port.mEnum && port.mEnum->GetEntriesCount(count).IsOK()) {
        for (int64_t i = 0; i < count; ++i) {
            const LxGenEnumEntry *entry = nullptr;
            LxString name;
            bool available = false;
            if (port.mEnum->GetEntryByIndex(i, &entry).IsOK() && entry && entry->IsAvailable(available).IsOK() &&
                available && entry->GetName(name).IsOK() && ParseRate(name) != 0)
            {
                rates.push_back(ParseRate(name));
            }
        }
    }
    else if (port.mInteger && port.mInteger->GetMin(min).IsOK() && port.mInteger->GetMax(max).IsOK() &&
             port.mInteger->GetIncrement(step).IsOK())
    {
        std::copy_if(std::begin(StandardRates), std::end(StandardRates), std::back_inserter(rates), [&](int64_t aRate) {
            return aRate >= min && aRate <= max && (aRate - min) % std::max<int64_t>(step, 1) == 0;
        });
    }
    return rates;
}

uint32_t PortSpeed::Get() const
{
    const Selection port(*this);
    LxString name;
    int64_t value = 0;
    if (port.mEnum && port.mEnum->GetValue(name).IsOK()) {
        return ParseRate(name);
    }
    const bool read = port.mInteger && port.mInteger->GetValue(value).IsOK() && value > 0 && value <= UINT32_MAX;
    return read ? static_cast<uint32_t>(value) : 0;
}

LxResult PortSpeed::Set(uint32_t aBaudRate) const
{
    const Selection port(*this);
    int64_t count = 0;
    if (port.mEnum && port.mEnum->GetEntriesCount(count).IsOK()) {
        for (int64_t i = 0; i < count; ++i) {
            const LxGenEnumEntry *entry = nullptr;
            LxString name;
            if (port.mEnum->GetEntryByIndex(i, &entry).IsOK() && entry && entry->GetName(name).IsOK() &&
                ParseRate(name) == aBaudRate)
            {
                return port.mEnum->SetValue(name);
            }
        }
    }
    else if (port.mInteger) {
        return port.mInteger->SetValue(static_cast<int64_t>(aBaudRate));
    }
    return LxResult(LxResultCode::NotSupported,
                    "The device's serial port cannot be set to " + std::to_string(aBaudRate) + " baud.");
}

}  // namespace LxDetail
