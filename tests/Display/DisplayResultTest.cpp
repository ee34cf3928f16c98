#include "DisplayTest.h"
#include "FakePayloads.h"
#include "LxGUI/LxDisplayWnd.h"

class DisplayResult : public DisplayTest
{
};

TEST_F(DisplayResult, ABufferWithNothingToShowGivesNoImage)
{
    EXPECT_EQ(mDisplay.Display(LxBuffer(LxPayloadType::Raw), false).GetCode(), 1281u);
    EXPECT_EQ(mDisplay.Display(LxBuffer(LxPayloadType::Image), false).GetCode(), 1281u);
}

TEST_F(DisplayResult, AnImageWithoutSizeOrTypeGivesNoImage)
{
    LxImage image;
    EXPECT_EQ(mDisplay.Display(static_cast<const ILxImage *>(&image), false).GetCode(), 1281u);
    const FakeGenDCImage part(nullptr);
    EXPECT_EQ(mDisplay.Display(&part, false).GetCode(), 1281u);
}

TEST_F(DisplayResult, NullImagesAreInvalidArguments)
{
    EXPECT_EQ(mDisplay.Display(static_cast<const ILxImage *>(nullptr), false).GetCode(), 16385u);
    EXPECT_EQ(mDisplay.Display(static_cast<const ILxGenDCImage *>(nullptr), false).GetCode(), 16385u);
}

TEST_F(DisplayResult, AFailedAttachGivesItsCode)
{
    const auto picture = MakePicture(8, 8);
    FakeGenDCImage part(picture->GetImage());
    part.mNoData = true;
    EXPECT_EQ(mDisplay.Display(&part, false), LxResult(LxResultCode::InvalidArgument));
}

TEST_F(DisplayResult, AFailedConversionGivesTheConvertersCodeAndStillRepaints)
{
    LxImage image;
    uint8_t data[64 * 8] = {};
    ASSERT_TRUE(image.Attach(data, 8, 8, static_cast<LxPixelType>(0x8020FFFF)).IsOK());
    EXPECT_EQ(mDisplay.Display(static_cast<const ILxImage *>(&image), false),
              LxResult(LxResultCode::PixelFormatNotSupported));
}

TEST_F(DisplayResult, TheGenDCPartIsShownBeforeThePlainImage)
{
    ShowAt(100, 100);
    const auto container = std::make_shared<FakeContainer>();
    const auto inside = MakePicture(50, 40);
    const FakeGenDCImage image(inside->GetImage());
    FakePart without;
    FakePart with;
    with.mImage = &image;
    FakeComponent empty;
    FakeComponent full;
    full.mParts = {&without, nullptr, &with};
    container->mComponents = {&empty, nullptr, &full};
    const auto buffer = MakePicture(20, 10);
    buffer->SetGenDC(container);
    ASSERT_TRUE(mDisplay.Display(*buffer, false).IsOK());
    EXPECT_EQ(mDisplay.GetInternalBuffer().GetImage()->GetWidth(), 50u);
    EXPECT_EQ(mDisplay.GetInternalBuffer().GetImage()->GetHeight(), 40u);

    with.mImage = nullptr;
    ASSERT_TRUE(mDisplay.Display(*buffer, false).IsOK());
    EXPECT_EQ(mDisplay.GetInternalBuffer().GetImage()->GetWidth(), 20u) << "no part had an image";
}

TEST(DisplayH264, EveryDecodedFrameIsShownAndNoneIsAFailure)
{
    LxBuffer buffer(LxPayloadType::H264);
    buffer.SetH264AccessUnit(std::make_shared<FakeAccessUnit>());
    DecodingDisplay display;
    EXPECT_EQ(display.Display(buffer, false).GetCode(), 16384u) << "no frame";
    display.mFrames = 2;
    EXPECT_EQ(display.Display(buffer, false).GetCode(), 0u);
    EXPECT_EQ(display.mFrames, 0);
    EXPECT_EQ(display.GetInternalBuffer().GetImage()->GetWidth(), 40u);
    display.mFrames = 1;
    display.mProcessResult = LxResult(LxResultCode::InvalidDataFormat);
    EXPECT_EQ(display.Display(buffer, false).GetCode(), 16384u);
    EXPECT_EQ(display.mFrames, 1) << "nothing is retrieved after a failure";
}

TEST(DisplayRenderer, OnlySoftwareIsThereAndUnknownModesAreRejected)
{
    LxDisplayWnd display;
    EXPECT_EQ(LxDisplayWnd::GetHighestRendererMode(), LxRendererModeSoftware);
    EXPECT_EQ(display.GetRendererMode(), LxRendererModeSoftware);
    EXPECT_EQ(display.SetRendererMode(LxRendererModeSoftware).GetCode(), 0u);
    EXPECT_EQ(display.SetRendererMode(LxRendererModeOpenGL).GetCode(), 26u);
    EXPECT_EQ(display.SetRendererMode(LxRendererModeReserved).GetCode(), 26u);
    EXPECT_EQ(display.SetRendererMode(static_cast<LxRendererMode>(3)).GetCode(), 16385u);
    EXPECT_EQ(display.SetRendererMode(static_cast<LxRendererMode>(-1)).GetCode(), 16385u);
    EXPECT_EQ(display.SetRendererMode(LxRendererModeUnknown).GetCode(), 16385u);
    EXPECT_STREQ(LxDisplayWnd::GetRenderer().GetAscii(), "OpenGL Default");
    EXPECT_STREQ(LxDisplayWnd::GetRendererVersion().GetAscii(), "N/A");
}
