#include "LxCameraBridge/CameraFile.h"

#include <gtest/gtest.h>

using namespace LxDetail;

namespace
{

const std::string Head = "kelvraCameraFile: 1\nprotocol:\n  type: ascii\n";
const std::string GenCPHead = "kelvraCameraFile: 1\nprotocol: {type: gencp}\n";

}  // namespace

struct CameraFileCase
{
    const char *mName;
    std::string mText;
    const char *mError;
};

class WrongCameraFile : public testing::TestWithParam<CameraFileCase>
{
};

TEST_P(WrongCameraFile, IsRefusedWithTheLine)
{
    CameraFile file;
    const LxResult result = ParseCameraFile(GetParam().mText, "camera.yml", file);
    EXPECT_EQ(result, LxResultCode::InvalidDataFormat);
    const std::string text = result.GetDescription().GetString();
    EXPECT_EQ(text.substr(0, std::string(GetParam().mError).size()), GetParam().mError) << text;
}

INSTANTIATE_TEST_SUITE_P(
    Files, WrongCameraFile,
    testing::Values(
        CameraFileCase{"Empty", "", "camera.yml"},
        CameraFileCase{"NoMapping", "- 1\n", "camera.yml:1: The file must begin"},
        CameraFileCase{"NoYAML", "a: [1\nb: }", "camera.yml:2: This is no YAML"},
        CameraFileCase{"UnknownVersion", "kelvraCameraFile: 2\n", "camera.yml:1: Only version 1"},
        CameraFileCase{"UnknownKey", Head + "faetures: []\n", "camera.yml:4: \"faetures\" is not known"},
        CameraFileCase{"KeyTwice", Head + "protocol: {}\n", "camera.yml:4: \"protocol\" is there twice."},
        CameraFileCase{"NoFeatures", Head + "features: []\n", "camera.yml:4: \"features\" must be a list"},
        CameraFileCase{"UnknownFeatureKey", Head + "features:\n  - name: A\n    type: integer\n    raed: x\n",
                       "camera.yml:7: \"raed\" is not known in a feature."},
        CameraFileCase{"UnknownType", Head + "features:\n  - name: A\n    type: number\n    read: x\n",
                       "camera.yml:6: \"type\" must be one of"},
        CameraFileCase{"WrongType", Head + "features:\n  - name: A\n    type: integer\n    read: [1]\n",
                       "camera.yml:7: \"read\" must be a text."},
        CameraFileCase{"NoNumber", Head + "features:\n  - name: A\n    type: integer\n    read: x\n    min: few\n",
                       "camera.yml:8: \"min\" must be a whole number."},
        CameraFileCase{"NoIdentifier", Head + "features:\n  - name: A-B\n    type: integer\n    read: x\n",
                       "camera.yml:5: \"name\" must be made of"},
        CameraFileCase{"NameOfTheDescription", Head + "features:\n  - {name: Root, type: integer, read: x}\n",
                       "camera.yml:5: \"name\" must be made of"},
        CameraFileCase{"NameOfARegister", Head + "features:\n  - {name: A_Reg, type: integer, read: x}\n",
                       "camera.yml:5: \"name\" must be made of"},
        CameraFileCase{"CategoryOfTheDescription",
                       Head + "features:\n  - {name: A, category: Device, type: integer, read: x}\n",
                       "camera.yml:5: \"category\" must be made of"},
        CameraFileCase{"MinAboveMax", Head + "features:\n  - {name: A, type: float, read: x, min: 2.5, max: 1}\n",
                       "camera.yml:5: \"min\" must not be above"},
        CameraFileCase{"NotFinite", Head + "features:\n  - {name: A, type: float, read: x, max: inf}\n",
                       "camera.yml:5: \"max\" must be a number."},
        CameraFileCase{"NoIncrement", Head + "features:\n  - {name: A, type: integer, read: x, increment: 0}\n",
                       "camera.yml:5: \"increment\" must be at least 1."},
        CameraFileCase{"FeatureTwice",
                       Head + "features:\n  - {name: A, type: integer, read: x}\n  - {name: A, type: float, read: y}\n",
                       "camera.yml:6: There are two features"},
        CameraFileCase{"NoRead", Head + "features:\n  - {name: A, type: integer}\n",
                       "camera.yml:5: The feature \"A\" lacks"},
        CameraFileCase{"WriteWithoutPlace", Head + "features:\n  - {name: A, type: integer, read: x, write: y}\n",
                       "camera.yml:5: \"write\" must have"},
        CameraFileCase{"EntriesMissing", Head + "features:\n  - {name: A, type: enumeration, read: x}\n",
                       "camera.yml:5: a feature lacks \"entries\"."},
        CameraFileCase{"Loop", Head + "features: &a\n  - *a\n", "camera.yml:"},
        CameraFileCase{"LoopOfMappings", Head + "features:\n  - &a\n    name: *a\n    type: integer\n    read: x\n",
                       "camera.yml:"},
        CameraFileCase{"TooDeep", std::string(10000, '['), "camera.yml"},
        CameraFileCase{"GenCPWithoutAddress", GenCPHead + "features:\n  - {name: A, type: integer}\n",
                       "camera.yml:4: a feature of a GenCP camera lacks \"address\"."},
        CameraFileCase{"GenCPWithRead", GenCPHead + "features:\n  - {name: A, type: integer, address: 1, read: x}\n",
                       "camera.yml:4: \"read\" is not known"},
        CameraFileCase{"GenCPLength", GenCPHead + "features:\n  - {name: A, type: float, address: 0x10, length: 2}\n",
                       "camera.yml:4: \"length\" of a float"}),
    [](const auto &aInfo) { return aInfo.param.mName; });

TEST(CameraFile, MissingAndUnreadableFilesAreSaid)
{
    CameraFile file;
    LxResult result = LoadCameraFile("/nowhere/camera.yml", file);
    EXPECT_EQ(result, LxResultCode::FileError);
    EXPECT_NE(result.GetDescription().GetString().find("No such file"), std::string::npos);
    EXPECT_EQ(LoadCameraFile("/tmp", file), LxResultCode::FileError);
    EXPECT_EQ(LoadCameraFile("", file), LxResultCode::FileError);
}

TEST(CameraFile, GenCPFeaturesAreRegisters)
{
    CameraFile file;
    const LxResult result = ParseCameraFile(
        GenCPHead + "features:\n  - {name: Gain, type: integer, address: 0x2000C, access: RO}\n", "camera.yml", file);
    ASSERT_TRUE(result.IsOK()) << result.GetDescription().GetAscii();
    EXPECT_TRUE(file.mIsGenCP);
    ASSERT_EQ(file.mFeatures.size(), 1u);
    EXPECT_EQ(file.mFeatures[0].mAddress, 0x2000Cu);
    EXPECT_NE(MakeCameraFileXML(file).find("<AccessMode>RO</AccessMode>"), std::string::npos);
}
