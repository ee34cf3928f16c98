#include <gtest/gtest.h>

#include "LxDevice/LxDeviceGEV.h"
#include "LxGUI/DeviceFinder/TreeItemInfoGEV.h"
#include "LxGUI/DeviceFinder/TreeItemInfoKelvraProtocol.h"
#include "LxGUI/DeviceFinder/TreeItemInfoNetworkAdapter.h"
#include "LxGUI/DeviceFinder/TreeItemInfoU3V.h"
#include "LxGUI/DeviceFinder/TreeItemInfoUSB.h"
#include "LxGUI/DeviceFinder/TreeItemInfoUSBHostController.h"
#include "LxSystem/LxSystem.h"
#include "ScriptedBackend.h"

namespace
{

std::string Print(const InfoRows &aRows)
{
    QString text;
    for (const InfoRow &row : aRows) {
        text += QStringLiteral("\n  %1 = %2 (%3)").arg(row.mLabel, row.mValue, row.mColor.name());
    }
    return text.toStdString();
}

void ExpectRows(const TreeItemInfo &aItem, const InfoRows &aRows)
{
    EXPECT_EQ(Print(aItem.GetRows()), Print(aRows));
}

InfoRow Row(const TreeItemInfo &aItem, const char *aLabel)
{
    for (const InfoRow &row : aItem.GetRows()) {
        if (row.mLabel == aLabel) {
            return row;
        }
    }
    ADD_FAILURE() << "no row " << aLabel;
    return {};
}

void ExpectRow(const TreeItemInfo &aItem, const char *aLabel, const char *aValue, const QColor &aColor)
{
    const InfoRow row = Row(aItem, aLabel);
    EXPECT_EQ(row.mValue, aValue) << aLabel;
    EXPECT_EQ(row.mColor, aColor) << aLabel;
}

class TreeItems : public testing::Test
{
protected:
    ScriptedDevices mDevices;
};

}  // namespace

// Interfaces

TEST_F(TreeItems, AdapterWithOneAddress)
{
    const ScriptedAdapter &adapter = mDevices->AddAdapter("a", [](AdapterValues &aValues) {
        aValues.mDescription = "Größe";
        aValues.mGateway = "192.168.1.254";
    });
    const LxSystem system;
    TreeItemInfoNetworkAdapter item;
    item.Refill(system, adapter);
    EXPECT_FALSE(item.IsDevice());
    EXPECT_TRUE(item.IsInterface());
    EXPECT_EQ(item.GetInterfaceType(), 1);
    EXPECT_EQ(item.GetUniqueID(), "a");
    EXPECT_EQ(item.GetDisplayText(), "Interface a");
    EXPECT_EQ(item.GetIconIndex(), 7);
    ExpectRows(item, {{"Description", "Größe"},
                      {"MAC", "02:00:00:00:00:01"},
                      {"IP Address", "192.168.1.1"},
                      {"Subnet Mask", "255.255.255.0"},
                      {"Default Gateway", "192.168.1.254"}});
}

TEST_F(TreeItems, AdapterWithTwoAddressesOnOneSubnet)
{
    ScriptedAdapter &adapter = mDevices->AddAdapter("a", [](AdapterValues &aValues) {
        aValues.mAddresses = {{"10.0.0.1", "255.0.0.0"}, {"10.0.0.2", "255.0.0.0"}};
        aValues.mDriver = false;
    });
    const LxSystem system;
    TreeItemInfoNetworkAdapter item;
    item.Refill(system, adapter);
    ExpectRows(item, {{"Description", "Scripted adapter"},
                      {"MAC", "02:00:00:00:00:01"},
                      {"IP Address 0", "10.0.0.1: subnet not unique", Qt::yellow},
                      {"Subnet Mask 0", "255.0.0.0", Qt::yellow},
                      {"IP Address 1", "10.0.0.2: subnet not unique", Qt::yellow},
                      {"Subnet Mask 1", "255.0.0.0", Qt::yellow},
                      {"Default Gateway", "0.0.0.0"}});
    EXPECT_EQ(item.GetIconIndex(), 9);
    adapter.Change([](AdapterValues &aValues) { aValues.mDriver = true; });
    item.Refill(system, adapter);
    EXPECT_EQ(item.GetIconIndex(), 11);
    EXPECT_EQ(item.GetRows().size(), 7) << "filling again must start anew";
}

TEST_F(TreeItems, AdapterWithoutAnAddress)
{
    ScriptedAdapter &adapter = mDevices->AddAdapter("a", [](AdapterValues &aValues) {
        aValues.mAddresses.clear();
        aValues.mDriver = false;
    });
    const LxSystem system;
    TreeItemInfoNetworkAdapter item;
    item.Refill(system, adapter);
    ExpectRows(item,
               {{"Description", "Scripted adapter"}, {"MAC", "02:00:00:00:00:01"}, {"Default Gateway", "0.0.0.0"}});
    EXPECT_EQ(item.GetIconIndex(), 5);
    adapter.Change([](AdapterValues &aValues) { aValues.mDriver = true; });
    item.Refill(system, adapter);
    EXPECT_EQ(item.GetIconIndex(), 7);
}

TEST_F(TreeItems, AdapterWhoseAddressIsUnset)
{
    const ScriptedAdapter &adapter = mDevices->AddAdapter("a", [](AdapterValues &aValues) {
        aValues.mAddresses = {{"0.0.0.0", "0.0.0.0"}};
    });
    const LxSystem system;
    TreeItemInfoNetworkAdapter item;
    item.Refill(system, adapter);
    ExpectRow(item, "IP Address", "0.0.0.0", Qt::red);
    ExpectRow(item, "Subnet Mask", "0.0.0.0", Qt::red);
    EXPECT_EQ(item.GetIconIndex(), 10);
}

TEST_F(TreeItems, AdapterWhoseMaskIsUnsetIsColouredByItsAddress)
{
    const ScriptedAdapter &adapter = mDevices->AddAdapter("a", [](AdapterValues &aValues) {
        aValues.mAddresses = {{"192.168.1.1", "0.0.0.0"}, {"192.168.1.2", "0.0.0.0"}};
    });
    const LxSystem system;
    TreeItemInfoNetworkAdapter item;
    item.Refill(system, adapter);
    ExpectRow(item, "IP Address 0", "192.168.1.1", Qt::white);
    ExpectRow(item, "Subnet Mask 0", "0.0.0.0", Qt::white);
    ExpectRow(item, "IP Address 1", "192.168.1.2", Qt::white);
    EXPECT_EQ(item.GetIconIndex(), 11);
}

TEST_F(TreeItems, AdapterWhoseUnsetAddressSharesItsSubnetIsRed)
{
    const ScriptedAdapter &adapter = mDevices->AddAdapter("a", [](AdapterValues &aValues) {
        aValues.mAddresses = {{"0.0.0.0", "255.0.0.0"}, {"0.0.0.0", "255.0.0.0"}};
    });
    const LxSystem system;
    TreeItemInfoNetworkAdapter item;
    item.Refill(system, adapter);
    ExpectRow(item, "IP Address 0", "0.0.0.0: subnet not unique", Qt::red);
    ExpectRow(item, "Subnet Mask 0", "255.0.0.0", Qt::red);
}

TEST_F(TreeItems, AdapterOnTheSubnetOfAnother)
{
    const ScriptedAdapter &adapter = mDevices->AddAdapter("a");
    mDevices->AddAdapter("b", [](AdapterValues &aValues) { aValues.mAddresses = {{"192.168.1.9", "255.255.255.0"}}; });
    const LxSystem system;
    TreeItemInfoNetworkAdapter item;
    item.Refill(system, adapter);
    ExpectRow(item, "IP Address", "192.168.1.1: subnet not unique", Qt::yellow);
    ExpectRow(item, "Subnet Mask", "255.255.255.0", Qt::yellow);
}

TEST_F(TreeItems, HostController)
{
    ScriptedController &controller = mDevices->AddController("c");
    const LxSystem system;
    TreeItemInfoUSBHostController item;
    item.Refill(system, controller);
    ExpectRows(item, {{"Description", "Interface c"},
                      {"Vendor ID", "0x8086"},
                      {"Device ID", "0x1e31"},
                      {"Subsystem ID", "0x00a1b2c3"},
                      {"Revision", "4"},
                      {"Speed", "Super"}});
    EXPECT_EQ(item.GetIconIndex(), 17);
    EXPECT_EQ(item.GetInterfaceType(), 0);
    for (const auto &[speed, text] :
         {std::pair(0u, "Unknown"), {1u, "Low"}, {2u, "Full"}, {3u, "High"}, {4u, "Super"}, {5u, "Unknown"}})
    {
        controller.Change([number = speed](ControllerValues &aValues) { aValues.mSpeed = number; });
        item.Refill(system, controller);
        ExpectRow(item, "Speed", text, speed == 4 ? Qt::white : Qt::yellow);
    }
}

// GigE Vision devices

TEST_F(TreeItems, GEVDeviceInOrder)
{
    const ScriptedAdapter &adapter = mDevices->AddAdapter("a");
    const ScriptedGEV &info = mDevices->AddGEV(adapter, "g");
    TreeItemInfoGEV item(true);
    item.Refill(info);
    EXPECT_TRUE(item.IsDevice());
    EXPECT_FALSE(item.IsInterface());
    EXPECT_EQ(item.GetDisplayText(), "Device g");
    EXPECT_EQ(item.GetUniqueID(), "g");
    EXPECT_EQ(item.GetDeviceType(), 0);
    EXPECT_TRUE(item.IsReachable());
    EXPECT_TRUE(item.CanSetIP());
    EXPECT_EQ(item.GetIconIndex(), 1);
    ExpectRows(item, {{"MAC", "00:11:22:33:44:55"},
                      {"IP", "192.168.1.10"},
                      {"Subnet Mask", "255.255.255.0"},
                      {"Default Gateway", "0.0.0.0"},
                      {"Vendor", "Vendor"},
                      {"Model", "Model"},
                      {"Access Status", "Unknown"},
                      {"Manufacturer Info", "Info"},
                      {"Version", "1.2.3"},
                      {"Serial Number", "SN7"},
                      {"User Defined Name", "User"},
                      {"Protocol Version", "2.1"},
                      {"IP Configuration", "Valid"},
                      {"Receiver License", "Valid"},
                      {"Device Class", "Transmitter"},
                      {"IP Config Options", "Persistent IP, DHCP, LLA"},
                      {"Current IP Config", "DHCP, LLA"}});
}

TEST_F(TreeItems, GEVDeviceWithoutAnAddress)
{
    const ScriptedAdapter &adapter = mDevices->AddAdapter("a");
    const ScriptedGEV &info = mDevices->AddGEV(adapter, "g", [](GEVValues &aValues) {
        aValues.mIPAddress = "0.0.0.0";
        aValues.mSubnetMask = "0.0.0.0";
        aValues.mConfigurationValid = false;
    });
    TreeItemInfoGEV item(true);
    item.Refill(info);
    ExpectRow(item, "IP", "0.0.0.0", Qt::yellow);
    ExpectRow(item, "Subnet Mask", "0.0.0.0", Qt::yellow);
    ExpectRow(item, "IP Configuration", "Invalid", Qt::darkRed);
    EXPECT_FALSE(item.IsReachable());
    EXPECT_EQ(item.GetIconIndex(), 3);
}

TEST_F(TreeItems, GEVDeviceOnAnotherSubnet)
{
    const ScriptedAdapter &adapter = mDevices->AddAdapter("a");
    const ScriptedGEV &info = mDevices->AddGEV(adapter, "g", [](GEVValues &aValues) {
        aValues.mIPAddress = "10.1.1.1";
        aValues.mSubnetMask = "255.0.0.0";
        aValues.mConfigurationValid = false;
        aValues.mLicenseValid = false;
    });
    TreeItemInfoGEV item(false);
    item.Refill(info);
    ExpectRow(item, "IP", "10.1.1.1", Qt::white);
    ExpectRow(item, "Subnet Mask", "255.0.0.0", Qt::yellow);
    ExpectRow(item, "IP Configuration", "Invalid on this interface", Qt::darkRed);
    ExpectRow(item, "Receiver License", "Invalid", Qt::darkRed);
    EXPECT_EQ(item.GetIconIndex(), 25);
    EXPECT_FALSE(item.CanSetIP()) << "not enabled";
}

TEST_F(TreeItems, GEVDeviceAtNoNetworkAdapterHasADoubtfulMask)
{
    const ScriptedController &controller = mDevices->AddController("c");
    const ScriptedGEV &info = mDevices->AddGEV(controller, "g");
    TreeItemInfoGEV item(true);
    item.Refill(info);
    ExpectRow(item, "Subnet Mask", "255.255.255.0", Qt::yellow);
}

TEST_F(TreeItems, AccessOfAGEVDeviceIsAskedForAndColoured)
{
    const ScriptedAdapter &adapter = mDevices->AddAdapter("a");
    const ScriptedGEV &info = mDevices->AddGEV(adapter, "g");
    TreeItemInfoGEV item(true);
    item.Refill(info);
    const struct
    {
        int mType;
        const char *mText;
        QColor mColor;
    } cases[] = {{1, "Open", Qt::white},
                 {2, "Control", Qt::yellow},
                 {3, "Exclusive", Qt::yellow},
                 {4, "Read-Only", Qt::white},
                 {9, "Unknown", Qt::white}};
    for (const auto &one : cases) {
        mDevices->SetAccessType("192.168.1.10", one.mType);
        item.RefreshAccess();
        ExpectRow(item, "Access Status", one.mText, one.mColor);
    }
    EXPECT_EQ(mDevices->GetAccessTypeCalls().size(), 5u);
    item.Refill(info);
    ExpectRow(item, "Access Status", "Unknown", Qt::white);
}

TEST_F(TreeItems, AccessOfADeviceThatDoesNotAnswerIsUnknown)
{
    const ScriptedAdapter &adapter = mDevices->AddAdapter("a");
    const ScriptedGEV &info = mDevices->AddGEV(adapter, "g");
    TreeItemInfoGEV item(true);
    item.Refill(info);
    item.RefreshAccess();
    ExpectRow(item, "Access Status", "Unknown", Qt::white);
}

TEST_F(TreeItems, AccessIsNotAskedForWhileTheConfigurationIsInvalid)
{
    const ScriptedAdapter &adapter = mDevices->AddAdapter("a");
    ScriptedGEV &info = mDevices->AddGEV(adapter, "g");
    TreeItemInfoGEV item(true);
    item.RefreshAccess();
    item.Refill(info);
    info.Change([](GEVValues &aValues) { aValues.mConfigurationValid = false; });
    item.Refill(info);
    item.RefreshAccess();
    EXPECT_TRUE(mDevices->GetAccessTypeCalls().empty());
}

// Other devices

TEST_F(TreeItems, KelvraDevice)
{
    const ScriptedAdapter &adapter = mDevices->AddAdapter("a");
    ScriptedKelvra &info = mDevices->AddKelvra(adapter, "k");
    TreeItemInfoKelvraProtocol item(true);
    item.Refill(info);
    ExpectRows(item, {{"MAC", "00:11:22:33:44:66"},
                      {"IP", "192.168.1.20"},
                      {"Subnet Mask", "255.255.255.0"},
                      {"Default Gateway", "192.168.1.254"},
                      {"Device ID", "0x0a"},
                      {"Module ID", "0x1b"},
                      {"Sub ID", "0x02"},
                      {"Vendor ID", "0x123"},
                      {"Software Major", "10"},
                      {"Software Minor", "3"}});
    EXPECT_EQ(item.GetIconIndex(), 0);
    EXPECT_TRUE(item.IsReachable());
    EXPECT_TRUE(item.CanSetIP());
    info.Change([](KelvraValues &aValues) { aValues.mConfigurationValid = false; });
    item.Refill(info);
    EXPECT_FALSE(item.IsReachable());
    EXPECT_EQ(item.GetIconIndex(), 2);
}

TEST_F(TreeItems, U3VDeviceInOrder)
{
    const ScriptedController &controller = mDevices->AddController("c");
    const ScriptedU3V &info = mDevices->AddU3V(controller, "u");
    TreeItemInfoU3V item(true);
    item.Refill(info);
    ExpectRows(item, {{"Vendor Name", "Vendor"},
                      {"Model Name", "Model"},
                      {"Version", "1.2.3"},
                      {"Manufacturer Info", "Info"},
                      {"Serial Number", "SN7"},
                      {"User Defined Name", "User"},
                      {"Configuration Valid", "True"},
                      {"Receiver License", "Valid license"},
                      {"Power", "Enough power"},
                      {"GenCP Version", "1.3"},
                      {"U3V Version", "1.0"},
                      {"Device GUID", "ABCD12345678"},
                      {"Family Name", "Family"},
                      {"U3V Serial Number", "U3V9"},
                      {"Low Speed Supported", "False"},
                      {"Full Speed Supported", "False"},
                      {"High Speed Supported", "True"},
                      {"Super Speed Supported", "True"},
                      {"Speed", "SuperSpeed"},
                      {"Max Power", "896 mA"},
                      {"Kelvra Driver Installed", "True"}});
    EXPECT_EQ(item.GetIconIndex(), 21);
    EXPECT_FALSE(item.CanSetIP());
}

TEST_F(TreeItems, U3VDeviceWithEverythingWrong)
{
    const ScriptedController &controller = mDevices->AddController("c");
    ScriptedU3V &info = mDevices->AddU3V(controller, "u", [](U3VValues &aValues) {
        aValues.mConfigurationValid = false;
        aValues.mLicenseValid = false;
        aValues.mLicenseMessage = "No license";
        aValues.mCapabilities = false;
        aValues.mPowerMessage = "Too little power";
        aValues.mSpeed = 3;
        aValues.mSpeedMessage = "High speed";
        aValues.mDriver = false;
    });
    TreeItemInfoU3V item(true);
    item.Refill(info);
    ExpectRow(item, "Configuration Valid", "False", Qt::white);
    ExpectRow(item, "Receiver License", "No license", Qt::darkRed);
    ExpectRow(item, "Power", "Too little power", Qt::darkRed);
    ExpectRow(item, "Speed", "High speed", Qt::yellow);
    ExpectRow(item, "Kelvra Driver Installed", "Missing driver. See Corvo Player guide", Qt::darkRed);
    EXPECT_EQ(item.GetIconIndex(), 24);
    EXPECT_TRUE(item.IsReachable()) << "only network devices can be unreachable";
    info.Change([](U3VValues &aValues) { aValues.mCurrentSpeedSupported = false; });
    item.Refill(info);
    ExpectRow(item, "Speed", "High speed", Qt::darkRed);
}

TEST_F(TreeItems, EverySpeedThatAU3VDeviceSupportsHasItsRow)
{
    const ScriptedController &controller = mDevices->AddController("c");
    ScriptedU3V &info = mDevices->AddU3V(controller, "u");
    TreeItemInfoU3V item(true);
    const std::pair<const char *, bool U3VValues::*> rows[] = {{"Low Speed Supported", &U3VValues::mLowSpeed},
                                                               {"Full Speed Supported", &U3VValues::mFullSpeed},
                                                               {"High Speed Supported", &U3VValues::mHighSpeed},
                                                               {"Super Speed Supported", &U3VValues::mSuperSpeed}};
    for (const auto &[only, flag] : rows) {
        info.Change([&rows, set = flag](U3VValues &aValues) {
            for (const auto &[label, other] : rows) {
                aValues.*other = other == set;
            }
        });
        item.Refill(info);
        for (const auto &[label, other] : rows) {
            ExpectRow(item, label, label == only ? "True" : "False", Qt::white);
        }
    }
}

TEST_F(TreeItems, USBDeviceShowsItsStatus)
{
    const ScriptedController &controller = mDevices->AddController("c");
    ScriptedUSB &info = mDevices->AddUSB(controller, "s");
    TreeItemInfoUSB item(false);
    item.Refill(info);
    ExpectRows(item, {{"Status", "Connected"}});
    EXPECT_EQ(item.GetIconIndex(), 28);
    info.Change([](USBValues &aValues) { aValues.mStatus = 10; });
    item.Refill(info);
    ExpectRows(item, {{"Status", "Unknown"}});
}
