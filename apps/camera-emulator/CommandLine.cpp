#include "CommandLine.h"

#include <algorithm>
#include <charconv>
#include <functional>
#include <optional>

#include "CommandChannel.h"
#include "NetworkLink.h"
#include "Parse.h"

namespace LxEmulator
{

namespace
{

struct Option
{
    std::string mName;
    std::string mValue;
    std::string mHelp;
    /// False when the value makes no sense.
    std::function<bool(CommandLine &aLine, const std::string &aValue)> mSet;
};

/// Puts a parsed value where it belongs; false when there is none.
template <typename Parsed, typename Target>
bool Store(const std::optional<Parsed> &aParsed, Target &aTarget)
{
    if (aParsed) {
        aTarget = static_cast<Target>(*aParsed);
    }
    return aParsed.has_value();
}

template <typename Target>
auto Number(Target CommandLine::*aMember, uint64_t aMax)
{
    return
        [=](CommandLine &aLine, const std::string &aValue) { return Store(ParseNumber(aValue, aMax), aLine.*aMember); };
}

auto Text(std::string LxDetail::SimulatedCameraIdentity::*aMember)
{
    return [aMember](CommandLine &aLine, const std::string &aValue) {
        aLine.mCamera.mIdentity.*aMember = aValue;
        return true;
    };
}

auto Address(uint32_t LxDetail::SimulatedCameraIdentity::*aMember)
{
    return [aMember](CommandLine &aLine, const std::string &aValue) {
        return Store(ParseAddress(aValue), aLine.mCamera.mIdentity.*aMember);
    };
}

bool SetFrameRate(CommandLine &aLine, const std::string &aValue)
{
    const auto [rest, error] = std::from_chars(aValue.data(), aValue.data() + aValue.size(), aLine.mFrameRate);
    return error == std::errc() && rest == aValue.data() + aValue.size() && aLine.mFrameRate > 0;
}

const std::vector<Option> &GetOptions()
{
    using Identity = LxDetail::SimulatedCameraIdentity;
    static const std::vector<Option> options = {
        {"--address", "ADDRESS", "listen to this address of the machine (127.0.0.1); any 127.x.y.z will do",
         [](CommandLine &aLine, const std::string &aValue) {
             return Store(ParseAddress(aValue), aLine.mCamera.mListenAddress);
         }},
        {"--interface", "NAME",
         "have this network interface for itself: hear broadcasts and what is sent to the claimed address there, and "
         "give it that address (as root; it keeps its own)",
         [](CommandLine &aLine, const std::string &aValue) {
             aLine.mCamera.mInterface = aValue;
             return !aValue.empty();
         }},
        {"--port", "PORT", "control port (3956)",
         [](CommandLine &aLine, const std::string &aValue) {
             return Store(ParseNumber(aValue, UINT16_MAX), aLine.mCamera.mUdpPort) && aLine.mCamera.mUdpPort != 0;
         }},
        {"--ip", "ADDRESS", "address that the camera claims (the one that it listens to); may be in another subnet",
         Address(&Identity::mIPAddress)},
        {"--mask", "MASK", "subnet mask that it claims (that of the interface)", Address(&Identity::mSubnetMask)},
        {"--gateway", "ADDRESS", "default gateway that it claims (0.0.0.0)", Address(&Identity::mDefaultGateway)},
        {"--mac", "MAC", "hardware address that it claims (02:00:00:00:00:01)",
         [](CommandLine &aLine, const std::string &aValue) {
             return Store(ParseMAC(aValue), aLine.mCamera.mIdentity.mMACAddress);
         }},
        {"--vendor", "TEXT", "manufacturer name", Text(&Identity::mVendor)},
        {"--model", "TEXT", "model name", Text(&Identity::mModel)},
        {"--serial", "TEXT", "serial number", Text(&Identity::mSerialNumber)},
        {"--name", "TEXT", "user-defined name", Text(&Identity::mUserName)},
        {"--link-speed", "MBITS", "images are sent with at most so many megabits per second (10000)",
         [](CommandLine &aLine, const std::string &aValue) {
             return Store(ParseNumber(aValue, 1000000), aLine.mCamera.mLinkSpeed) && aLine.mCamera.mLinkSpeed != 0;
         }},
        {"--width", "PIXELS", "width of the images at the start", Number(&CommandLine::mWidth, UINT32_MAX)},
        {"--height", "PIXELS", "height of the images at the start", Number(&CommandLine::mHeight, UINT32_MAX)},
        {"--frame-rate", "HZ", "frames per second at the start", SetFrameRate},
        {"--help", "", "print this and end",
         [](CommandLine &aLine, const std::string &) { return aLine.mHelp = true; }},
    };
    return options;
}

/// Fills in the address and the mask that were not given.
void Complete(CommandLine &aLine, bool aHasIP, bool aHasMask)
{
    EmulatedCameraOptions &camera = aLine.mCamera;
    if (camera.mListenAddress == 0) {
        camera.mListenAddress = 0x7F000001;
    }
    NetworkLink link;
    const LxResult result = camera.mInterface.empty() ? FindLinkOfAddress(camera.mListenAddress, link)
                                                      : FindLinkByName(camera.mInterface, link);
    if (!aHasIP) {
        camera.mIdentity.mIPAddress = camera.mInterface.empty() ? camera.mListenAddress : link.mAddress;
    }
    if (!aHasMask) {
        camera.mIdentity.mSubnetMask = result.IsOK() && link.mMask != 0 ? link.mMask : 0xFFFFFF00;
    }
}

}  // namespace

CommandLine CommandLine::Parse(const std::vector<std::string> &aArguments)
{
    CommandLine line;
    bool hasIP = false;
    bool hasMask = false;
    for (size_t i = 0; i < aArguments.size(); ++i) {
        // "--name=value" and "--name value" are the same.
        const size_t equals = aArguments[i].find('=');
        const std::string name = aArguments[i].substr(0, equals);
        const auto &options = GetOptions();
        const auto option = std::find_if(options.begin(), options.end(),
                                         [&name](const Option &aOption) { return aOption.mName == name; });
        if (option == options.end()) {
            line.mError = "unknown option " + name;
            return line;
        }
        std::string value;
        if (!option->mValue.empty()) {
            if (equals == std::string::npos && i + 1 == aArguments.size()) {
                line.mError = name + " needs a value: " + option->mValue;
                return line;
            }
            value = equals == std::string::npos ? aArguments[++i] : aArguments[i].substr(equals + 1);
        }
        if (!option->mSet(line, value)) {
            line.mError = "not a valid " + option->mValue + " for " + name + ": " + value;
            return line;
        }
        hasIP = hasIP || name == "--ip";
        hasMask = hasMask || name == "--mask";
    }
    if (!line.mCamera.mInterface.empty() && line.mCamera.mListenAddress != 0) {
        line.mError = "--address and --interface exclude each other";
        return line;
    }
    Complete(line, hasIP, hasMask);
    return line;
}

std::string CommandLine::GetHelp()
{
    std::string text =
        "lxgui-camera-emulator [OPTION]...\n"
        "\n"
        "A simulated GigE Vision camera on a real network: answers the control protocol (GVCP, port 3956) and streams\n"
        "images (GVSP). Needs no root. Prints \"ready ADDRESS PORT\" when it can be found. Ends on SIGTERM, SIGINT, "
        "the\n"
        "command \"quit\", or when a pipe at its standard input is closed.\n"
        "\n"
        "Options:\n";
    for (const Option &option : GetOptions()) {
        text +=
            "  " + option.mName + (option.mValue.empty() ? "" : " " + option.mValue) + "\n      " + option.mHelp + "\n";
    }
    text +=
        "\n"
        "Commands, one a line on standard input; each is answered with one line on standard output that starts with\n"
        "\"ok\" or \"error\". Numbers are decimal, or hexadecimal behind 0x.\n" +
        CommandChannel::GetHelp() +
        "\n"
        "Exit status: 0 ended as asked, 1 the network refused something, 2 wrong arguments.\n";
    return text;
}

}  // namespace LxEmulator
