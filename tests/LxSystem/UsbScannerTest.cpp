// USB controllers and USB3 Vision devices, from a made tree in the form of sysfs.

#include "LxSystem/UsbScanner.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "Backends/UsbBackend.h"
#include "LxSystem/LxSystem.h"

namespace fs = std::filesystem;
using LxDetail::U3VDescriptor;
using LxDetail::U3VDeviceData;
using LxDetail::U3VTexts;

namespace
{

using Data = std::vector<uint8_t>;

const Data deviceDescriptor{18, 1, 0x00, 0x03, 0xEF, 2, 1, 9, 0x34, 0x12, 0x78, 0x56, 0, 1, 1, 2, 3, 1};
const Data configuration{9, 2, 0, 0, 3, 1, 0, 0x80, 0x70};
const Data association{8, 0x0B, 0, 3, 0xEF, 5, 0, 0};
const Data controlInterface{9, 4, 0, 0, 2, 0xEF, 5, 0, 0};
const Data eventInterface{9, 4, 1, 0, 1, 0xEF, 5, 1, 0};
// GenCP 1.2, U3V 1.1; GUID 4, vendor 1, model 2, family 5, version 6, info 7, serial 3, user name 8; full, high, super
const Data deviceInfo{20, 0x24, 1, 2, 0, 1, 0, 1, 0, 1, 0, 4, 1, 2, 5, 6, 7, 3, 8, 0x0E};
const Data endpoint{7, 5, 0x81, 2, 0, 4, 0};

Data Join(const std::vector<Data> &aParts)
{
    Data all;
    for (const Data &part : aParts) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

Data MakeCamera(const Data &aInfo = deviceInfo)
{
    return Join(
        {deviceDescriptor, configuration, association, controlInterface, aInfo, endpoint, eventInterface, endpoint});
}

// A folder like /sys, removed at the end.
class Tree
{
public:
    Tree()
    {
        char name[] = "/tmp/lx-usb-XXXXXX";
        mRoot = mkdtemp(name);
        fs::create_directories(GetDevices());
    }
    ~Tree() { fs::remove_all(mRoot); }
    Tree(const Tree &) = delete;
    Tree &operator=(const Tree &) = delete;

    fs::path GetDevices() const { return mRoot / "bus/usb/devices"; }
    fs::path GetController() const { return mRoot / "devices/pci0000:00/0000:00:14.0"; }

    void Write(const fs::path &aFile, const std::string &aText) const
    {
        fs::create_directories(aFile.parent_path());
        std::ofstream(aFile, std::ios::binary) << aText;
    }
    // A folder that the list of devices links to.
    void AddDevice(const fs::path &aPath, const std::string &aSpeed) const
    {
        Write(aPath / "speed", aSpeed + '\n');
        fs::create_directory_symlink(aPath, GetDevices() / aPath.filename());
    }
    void AddController() const
    {
        const fs::path controller = GetController();
        Write(controller / "vendor", "0x8086\n");
        Write(controller / "device", "0xa36d\n");
        Write(controller / "subsystem_vendor", "0x1028\n");
        Write(controller / "subsystem_device", "0x0871\n");
        Write(controller / "revision", "0x10\n");
        for (const auto &[hub, speed] : {std::pair("usb1", "480"), std::pair("usb2", "10000")}) {
            AddDevice(controller / hub, speed);
            Write(controller / hub / "product", "xHCI Host Controller\n");
        }
    }
    void AddCamera(const std::string &aName, const std::string &aSpeed, const Data &aDescriptors = MakeCamera()) const
    {
        const fs::path device = GetController() / "usb2" / aName;
        AddDevice(device, aSpeed);
        Write(device / "descriptors", std::string(aDescriptors.begin(), aDescriptors.end()));
        Write(device / "manufacturer", "Maker\n");
        Write(device / "product", "Model\n");
        Write(device / "serial", "S1\n");
        Write(device / "bMaxPower", "896mA\n");
    }

private:
    fs::path mRoot;
};

std::vector<U3VTexts> NoTexts()
{
    return {};
}

// Collects what a scanner reports.
class Reports : public LxDetail::SearchContext
{
public:
    uint32_t GetTimeout() const override { return 1000; }
    bool IsSubnetBroadcastEnabled() const override { return false; }
    bool IsCancelled() const override { return false; }
    void ReportDevice(const LxInterface *aInterface, const LxDeviceInfo *aInfo) override
    {
        EXPECT_EQ(aInfo->GetInterface(), aInterface);
        mInfos.push_back(aInfo);
    }

    std::vector<const LxDeviceInfo *> mInfos;
};

std::vector<const LxDeviceInfo *> Find(LxDetail::UsbScanner &aScanner)
{
    Reports reports;
    aScanner.UpdateInterfaces();
    aScanner.Find(reports);
    return reports.mInfos;
}

}  // namespace

TEST(U3VDescriptor, IsReadFromBehindTheControlInterface)
{
    const auto descriptor = LxDetail::ParseU3VDescriptor(MakeCamera());
    ASSERT_TRUE(descriptor);
    const U3VDescriptor expected{1, 2, 1, 1, 4, 1, 2, 5, 6, 7, 3, 8, 0x0E, 1, 2, 3};
    EXPECT_EQ(*descriptor, expected);
}

TEST(U3VDescriptor, IsRefusedWhenItIsCutShortAnywhere)
{
    const Data camera = MakeCamera();
    const size_t end = deviceDescriptor.size() + configuration.size() + association.size() + controlInterface.size() +
                       deviceInfo.size();
    for (size_t size = 0; size < camera.size(); ++size) {
        const Data cut(camera.begin(), camera.begin() + static_cast<std::ptrdiff_t>(size));
        EXPECT_EQ(LxDetail::ParseU3VDescriptor(cut).has_value(), size >= end) << size;
    }
}

TEST(U3VDescriptor, IsNotThereInOtherDevices)
{
    Data storage = controlInterface;
    storage[5] = 8;
    Data shortInfo(deviceInfo.begin(), deviceInfo.begin() + 19);
    shortInfo[0] = 19;
    Data otherSubtype = deviceInfo;
    otherSubtype[2] = 2;
    for (const Data &descriptors :
         {Join({deviceDescriptor, configuration, storage, deviceInfo}),
          Join({deviceDescriptor, configuration, eventInterface, deviceInfo}),
          Join({deviceDescriptor, configuration, controlInterface, endpoint}),
          Join({deviceDescriptor, configuration, controlInterface, eventInterface, deviceInfo}),
          Join({deviceDescriptor, configuration, deviceInfo}), Join({deviceDescriptor, controlInterface, shortInfo}),
          Join({deviceDescriptor, controlInterface, otherSubtype}), Join({configuration, controlInterface, deviceInfo}),
          deviceDescriptor})
    {
        EXPECT_FALSE(LxDetail::ParseU3VDescriptor(descriptors));
    }
}

TEST(U3VDescriptor, OfImpossibleLengthsIsRefused)
{
    EXPECT_FALSE(LxDetail::ParseU3VDescriptor(Join({deviceDescriptor, {0, 0}, controlInterface, deviceInfo})));
    EXPECT_FALSE(LxDetail::ParseU3VDescriptor(Join({deviceDescriptor, {1, 4}, controlInterface, deviceInfo})));
    EXPECT_FALSE(LxDetail::ParseU3VDescriptor(Join({deviceDescriptor, {255, 4}, controlInterface, deviceInfo})));
    EXPECT_FALSE(LxDetail::ParseU3VDescriptor(Data(18, 0)));
    EXPECT_FALSE(LxDetail::ParseU3VDescriptor(Data(1000, 0xFF)));
}

TEST(U3VDescriptor, LongerThanKnownIsReadToo)
{
    Data longer = deviceInfo;
    longer[0] = 24;
    longer.insert(longer.end(), {9, 9, 9, 9});
    EXPECT_EQ(LxDetail::ParseU3VDescriptor(MakeCamera(longer)), LxDetail::ParseU3VDescriptor(MakeCamera()));
}

TEST(UsbSpeed, HasANumberForEachSpeedOfTheSystem)
{
    const std::vector<std::pair<const char *, LxUSBSpeed>> speeds{
        {"1.5", LxUSBSpeedLow},    {"12", LxUSBSpeedFull},        {"480", LxUSBSpeedHigh},
        {"5000", LxUSBSpeedSuper}, {"10000", LxUSBSpeedSuper},    {"20000", LxUSBSpeedSuper},
        {"", LxUSBSpeedUnknown},   {"unknown", LxUSBSpeedUnknown}};
    for (const auto &[text, speed] : speeds) {
        EXPECT_EQ(LxDetail::ParseUsbSpeed(text), speed) << text;
    }
}

TEST(UsbScanner, FindsNothingWhereThereIsNoUsb)
{
    LxDetail::UsbScanner scanner("/does/not/exist", NoTexts);
    EXPECT_TRUE(Find(scanner).empty());
    EXPECT_TRUE(scanner.GetInterfaces().empty());
    const LxDeviceInfo *info = nullptr;
    EXPECT_EQ(scanner.FindDevice("usb:1-1", &info), LxResultCode::NotFound);
}

TEST(UsbScanner, ListsOneControllerForAllItsRootHubs)
{
    const Tree tree;
    tree.AddController();
    LxDetail::UsbScanner scanner(tree.GetDevices(), NoTexts);
    scanner.UpdateInterfaces();
    const auto interfaces = scanner.GetInterfaces();
    ASSERT_EQ(interfaces.size(), 1U);
    const auto *controller = dynamic_cast<const LxUSBHostController *>(interfaces[0]);
    ASSERT_NE(controller, nullptr);
    EXPECT_EQ(controller->GetType(), LxInterfaceTypeUSBHostController);
    EXPECT_EQ(controller->GetUniqueID(), "usb:0000:00:14.0");
    EXPECT_EQ(controller->GetDisplayID(), "xHCI Host Controller (0000:00:14.0)");
    EXPECT_EQ(controller->GetVendorID(), 0x8086U);
    EXPECT_EQ(controller->GetDeviceID(), 0xA36DU);
    EXPECT_EQ(controller->GetSubsystemID(), 0x08711028U);
    EXPECT_EQ(controller->GetRevision(), 0x10U);
    EXPECT_EQ(controller->GetSpeed(), LxUSBSpeedSuper);
    EXPECT_EQ(controller->GetDeviceCount(), 0U);
}

TEST(UsbScanner, ShowsAControllerThatIsNoPCIDeviceWithoutNumbers)
{
    const Tree tree;
    tree.AddDevice(tree.GetDevices().parent_path() / "platform/xhci-hcd.0.auto/usb1", "480");
    LxDetail::UsbScanner scanner(tree.GetDevices(), NoTexts);
    scanner.UpdateInterfaces();
    ASSERT_EQ(scanner.GetInterfaces().size(), 1U);
    const auto *controller = dynamic_cast<const LxUSBHostController *>(scanner.GetInterfaces()[0]);
    EXPECT_EQ(controller->GetUniqueID(), "usb:xhci-hcd.0.auto");
    EXPECT_EQ(controller->GetDisplayID(), "USB host controller (xhci-hcd.0.auto)");
    EXPECT_EQ(controller->GetVendorID(), 0U);
    EXPECT_EQ(controller->GetSubsystemID(), 0U);
    EXPECT_EQ(controller->GetSpeed(), LxUSBSpeedHigh);
}

TEST(UsbScanner, FindsACameraWithAllThatTheSystemKnows)
{
    const Tree tree;
    tree.AddController();
    tree.AddCamera("2-1.4", "5000");
    tree.AddDevice(tree.GetController() / "usb2/2-1", "5000");  // a hub
    LxDetail::UsbScanner scanner(tree.GetDevices(), [] {
        return std::vector<U3VTexts>{{"CAFE0001", "Maker", "Model", "S1"}};
    });
    const auto found = Find(scanner);
    ASSERT_EQ(found.size(), 1U);
    const auto *info = dynamic_cast<const LxDeviceInfoU3V *>(found[0]);
    ASSERT_NE(info, nullptr);
    EXPECT_EQ(info->GetType(), LxDeviceInfoTypeU3V);
    ASSERT_EQ(info->GetInterface()->GetDeviceCount(), 1U);
    EXPECT_EQ(info->GetInterface()->GetDeviceInfo(0), info);
    EXPECT_EQ(info->GetUniqueID(), "CAFE0001");
    EXPECT_EQ(info->GetConnectionID(), "CAFE0001");
    EXPECT_EQ(info->GetDeviceGUID(), "CAFE0001");
    EXPECT_EQ(info->GetDisplayID(), "Maker Model [S1]");
    EXPECT_EQ(info->GetVendorName(), "Maker");
    EXPECT_EQ(info->GetModelName(), "Model");
    EXPECT_EQ(info->GetSerialNumber(), "S1");
    EXPECT_EQ(info->GetU3VSerialNumber(), "S1");
    EXPECT_EQ(info->GetMaxPower(), 896U);
    uint32_t major = 0;
    uint32_t minor = 0;
    info->GetGenCPVersion(major, minor);
    EXPECT_EQ(std::pair(major, minor), std::pair(1U, 2U));
    info->GetU3VVersion(major, minor);
    EXPECT_EQ(std::pair(major, minor), std::pair(1U, 1U));
    EXPECT_FALSE(info->IsLowSpeedSupported());
    EXPECT_TRUE(info->IsFullSpeedSupported());
    EXPECT_TRUE(info->IsHighSpeedSupported());
    EXPECT_TRUE(info->IsSuperSpeedSupported());
    EXPECT_TRUE(info->IsCurrentSpeedSupported());
    EXPECT_EQ(info->GetSpeed(), LxUSBSpeedSuper);
    EXPECT_EQ(info->GetSpeedMessage(), "SuperSpeed (5 Gbit/s)");
    EXPECT_TRUE(info->IsConfigurationValid());
    EXPECT_TRUE(info->IsKelvraDriverInstalled());
    EXPECT_TRUE(info->IsInitializedCapabilities());
    EXPECT_TRUE(info->IsLicenseValid());
}

TEST(UsbScanner, ACameraAtASlowPortIsNotConfigured)
{
    const std::vector<std::tuple<const char *, uint32_t, const char *, bool>> speeds{
        {"1.5", LxUSBSpeedLow, "Low speed (1.5 Mbit/s)", false},
        {"12", LxUSBSpeedFull, "Full speed (12 Mbit/s)", true},
        {"480", LxUSBSpeedHigh, "High speed (480 Mbit/s)", true},
        {"10000", LxUSBSpeedSuper, "SuperSpeed+ (10 Gbit/s)", true},
        {"", LxUSBSpeedUnknown, "Unknown", false},
    };
    for (const auto &[megabits, speed, message, supported] : speeds) {
        const Tree tree;
        tree.AddController();
        tree.AddCamera("2-1", megabits);
        LxDetail::UsbScanner scanner(tree.GetDevices(), NoTexts);
        const auto found = Find(scanner);
        ASSERT_EQ(found.size(), 1U);
        const auto *info = dynamic_cast<const LxDeviceInfoU3V *>(found[0]);
        EXPECT_EQ(info->GetSpeed(), speed);
        EXPECT_EQ(info->GetSpeedMessage(), message);
        EXPECT_EQ(info->IsCurrentSpeedSupported(), supported);
        EXPECT_EQ(info->IsConfigurationValid(), speed == LxUSBSpeedSuper);
    }
}

TEST(UsbScanner, ACameraThatCannotBeOpenedIsListedByItsPort)
{
    const Tree tree;
    tree.AddController();
    tree.AddCamera("2-1", "5000");
    LxDetail::UsbScanner scanner(tree.GetDevices(), NoTexts);
    const auto found = Find(scanner);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0]->GetUniqueID(), "usb:2-1");
    EXPECT_EQ(found[0]->GetVendorName(), "Maker");
    const LxDeviceInfo *info = nullptr;
    EXPECT_TRUE(scanner.FindDevice("usb:2-1", &info).IsOK());
    EXPECT_EQ(info, found[0]);
    EXPECT_EQ(scanner.FindDevice("usb:2-2", &info), LxResultCode::NotFound);
    EXPECT_EQ(scanner.FindDevice("127.0.0.1", &info), LxResultCode::NotFound);
}

TEST(UsbScanner, KeepsObjectsAndEmptiesListsWhenACameraGoes)
{
    const Tree tree;
    tree.AddController();
    tree.AddCamera("2-1", "5000");
    LxDetail::UsbScanner scanner(tree.GetDevices(), NoTexts);
    const auto first = Find(scanner);
    ASSERT_EQ(first.size(), 1U);
    const LxInterface *controller = first[0]->GetInterface();
    fs::remove(tree.GetDevices() / "2-1");
    EXPECT_TRUE(Find(scanner).empty());
    EXPECT_EQ(controller->GetDeviceCount(), 0U);
    EXPECT_EQ(first[0]->GetVendorName(), "Maker");
    tree.Write(tree.GetController() / "usb2/2-1/speed", "480\n");
    fs::create_directory_symlink(tree.GetController() / "usb2/2-1", tree.GetDevices() / "2-1");
    EXPECT_EQ(Find(scanner), first);
    EXPECT_FALSE(first[0]->IsConfigurationValid()) << "brought up to date";
    fs::remove(tree.GetDevices() / "usb1");
    fs::remove(tree.GetDevices() / "usb2");
    EXPECT_TRUE(Find(scanner).empty());
    EXPECT_TRUE(scanner.GetInterfaces().empty());
    EXPECT_EQ(controller->GetDeviceCount(), 0U);
}

TEST(UsbScanner, DevicesThatAreNoCamerasAreNotListed)
{
    const Tree tree;
    tree.AddController();
    tree.AddCamera("2-1", "5000", deviceDescriptor);
    tree.AddCamera("2-2", "5000", {});
    tree.AddCamera("2-3", "5000", Data(300, 0xFF));
    bool asked = false;
    LxDetail::UsbScanner scanner(tree.GetDevices(), [&asked] {
        asked = true;
        return NoTexts();
    });
    EXPECT_TRUE(Find(scanner).empty());
    EXPECT_FALSE(asked) << "nothing is opened without need";
}

TEST(U3VTexts, AreTakenFromTheOneDeviceThatFits)
{
    U3VDeviceData known;
    known.mVendorName = "Maker";
    known.mModelName = "Model";
    known.mSerialNumber = "S1";
    const auto add = [&known](const std::vector<U3VTexts> &aTexts) {
        U3VDeviceData data = known;
        LxDetail::AddTexts(data, aTexts);
        return data.mGUID;
    };
    EXPECT_EQ(add({}), "");
    EXPECT_EQ(add({{"G2", "Maker", "Model", "S2"}, {"G1", "Maker", "Model", "S1"}}), "G1");
    EXPECT_EQ(add({{"G1", "Maker", "Other", "S1"}}), "");
    EXPECT_EQ(add({{"G1", "Maker", "Model", ""}, {"G2", "Maker", "Model", ""}}), "") << "it cannot be told which";
}

TEST(UsbBackend, RefusesASlowPortAndSaysWhatToDo)
{
    const Tree tree;
    tree.AddController();
    tree.AddCamera("2-1", "480");
    LxDetail::UsbBackend backend(tree.GetDevices());
    const auto scanner = backend.CreateScanner();
    Reports reports;
    scanner->UpdateInterfaces();
    scanner->Find(reports);
    ASSERT_EQ(reports.mInfos.size(), 1U);
    std::unique_ptr<LxDevice> device;
    const LxResult result = backend.Connect(*reports.mInfos[0], LxDeviceAccess::Control, device);
    EXPECT_EQ(result, LxResultCode::Unavailable);
    EXPECT_EQ(result.GetDescription(),
              "The camera is connected with High speed (480 Mbit/s). Connect it to a USB 3.0 (SuperSpeed) port.");
    EXPECT_EQ(device, nullptr);
}
