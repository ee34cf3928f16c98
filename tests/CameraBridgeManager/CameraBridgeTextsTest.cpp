#include "LxGUI/CameraBridgeManager/CameraBridgeTexts.h"

#include <gtest/gtest.h>

using namespace CameraBridgeTexts;

TEST(CameraBridgeTexts, TemplateWithoutItsFirstTwoFields)
{
    EXPECT_EQ(ShowTemplate("A#B#C#D"), "C D");
    EXPECT_EQ(ShowTemplate("A#B#C#D#E"), "C D E");
    EXPECT_EQ(ShowTemplate("A#B#C"), "C");
    EXPECT_EQ(ShowTemplate("A#B"), "B");
    EXPECT_EQ(ShowTemplate("A"), "A");
    EXPECT_EQ(ShowTemplate("##C#D"), "C D");
    EXPECT_EQ(ShowTemplate(""), "");
}

TEST(CameraBridgeTexts, CameraIDWithoutItsFirstTwoFieldsUnlessTheFirstIsEmpty)
{
    EXPECT_EQ(ShowCameraID("X#Y#Z"), "Z");
    EXPECT_EQ(ShowCameraID("X#Y#Z#1#2"), "Z 1 2");
    EXPECT_EQ(ShowCameraID("#X#Y#Z"), " X Y Z");
    EXPECT_EQ(ShowCameraID("X#Y"), "X Y");
    EXPECT_EQ(ShowCameraID("X"), "X");
}

TEST(CameraBridgeTexts, CLProtocolXMLIDBehindItsSecondSeparator)
{
    EXPECT_EQ(ShowCLProtocolXMLID("v@1@Name"), "Name");
    EXPECT_EQ(ShowCLProtocolXMLID("v@1@Name@x"), "Name@x");
    EXPECT_EQ(ShowCLProtocolXMLID("@1@Name"), "@1@Name");
    EXPECT_EQ(ShowCLProtocolXMLID("v@Name"), "v@Name");
}

TEST(CameraBridgeTexts, GenCPXMLIDNamesTheXMLAndTheCamera)
{
    EXPECT_EQ(ShowGenCPXMLID("a#b#c"), "b for c");
    EXPECT_EQ(ShowGenCPXMLID("a#b#c#d"), "b for c#d");
    EXPECT_EQ(ShowGenCPXMLID("#b#c"), "#b#c");
    EXPECT_EQ(ShowGenCPXMLID("a#b"), "a#b");
    EXPECT_EQ(ShowGenCPXMLID(""), "");
}
