#include <vector>

#include "DisplayTest.h"
#include "FakePayloads.h"
#include "LxGUI/LxDisplayWnd.h"

namespace
{

/// The private events that an object gets.
class EventTypes : public QObject
{
public:
    explicit EventTypes(QObject *aReceiver) { aReceiver->installEventFilter(this); }
    bool eventFilter(QObject *, QEvent *aEvent) override
    {
        if (aEvent->type() > QEvent::User) {
            mTypes.push_back(aEvent->type());
        }
        return false;
    }
    std::vector<int> mTypes;
};

}  // namespace

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
    const EventTypes posted(&mDisplay);
    LxImage image;
    uint8_t data[64 * 8] = {};
    ASSERT_TRUE(image.Attach(data, 8, 8, static_cast<LxPixelType>(0x8020FFFF)).IsOK());
    EXPECT_EQ(mDisplay.Display(static_cast<const ILxImage *>(&image), false),
              LxResult(LxResultCode::PixelFormatNotSupported));
    Settle();
    EXPECT_EQ(posted.mTypes, std::vector<int>({11244}));
}

TEST_F(DisplayResult, RefreshAndClearComeByEventsOfTheirOwn)
{
    const EventTypes posted(&mDisplay);
    mDisplay.Refresh();
    mDisplay.Clear();
    EXPECT_TRUE(posted.mTypes.empty()) << "posted";
    Settle();
    EXPECT_EQ(posted.mTypes, std::vector<int>({11244, 11245}));
}

TEST_F(DisplayResult, TheOverlayIsTakenByEveryFrameThatHasSomethingToShow)
{
    const LxImage empty;
    mDisplay.SetTextOverlay("text");
    EXPECT_FALSE(mDisplay.Display(static_cast<const ILxImage *>(&empty), false).IsOK());
    EXPECT_FALSE(mDisplay.HasOverlay());
    LxImage unknown;
    uint8_t data[64 * 8] = {};
    ASSERT_TRUE(unknown.Attach(data, 8, 8, static_cast<LxPixelType>(0x8020FFFF)).IsOK());
    EXPECT_FALSE(mDisplay.Display(static_cast<const ILxImage *>(&unknown), false).IsOK());
    EXPECT_TRUE(mDisplay.HasOverlay());

    LxBuffer buffer(LxPayloadType::H264);
    buffer.SetH264AccessUnit(std::make_shared<FakeAccessUnit>());
    DecodingDisplay display;
    display.SetTextOverlay("text");
    display.mProcessResult = LxResult(LxResultCode::InvalidDataFormat);
    display.Display(buffer, true);
    EXPECT_FALSE(display.HasOverlay());
    EXPECT_FALSE(display.IsVSync());
    display.mProcessResult = LxResult();
    display.Display(buffer, true);
    EXPECT_TRUE(display.HasOverlay());
    EXPECT_TRUE(display.IsVSync());
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

TEST_F(DisplayResult, TheFirstImageOfAContainerCountsAndWhatBecomesOfItIsTheResult)
{
    const auto first = MakePicture(50, 40);
    const auto second = MakePicture(60, 40);
    const auto third = MakePicture(70, 40);
    const FakeGenDCImage images[] = {FakeGenDCImage(first->GetImage()), FakeGenDCImage(second->GetImage()),
                                     FakeGenDCImage(third->GetImage())};
    FakePart parts[3];
    for (int i = 0; i < 3; ++i) {
        parts[i].mImage = &images[i];
    }
    FakeComponent components[2];
    components[0].mParts = {&parts[0], &parts[1]};
    components[1].mParts = {&parts[2]};
    const auto container = std::make_shared<FakeContainer>();
    container->mComponents = {&components[0], &components[1]};
    const auto buffer = MakePicture(20, 10);
    buffer->SetGenDC(container);
    const auto shownWidth = [&] {
        EXPECT_TRUE(mDisplay.Display(*buffer, false).IsOK());
        return mDisplay.GetInternalBuffer().GetImage()->GetWidth();
    };
    EXPECT_EQ(shownWidth(), 50u);
    parts[0].mImage = nullptr;
    EXPECT_EQ(shownWidth(), 60u);
    parts[1].mImage = nullptr;
    EXPECT_EQ(shownWidth(), 70u);
    const FakeGenDCImage without(nullptr);
    parts[0].mImage = &without;
    EXPECT_EQ(mDisplay.Display(*buffer, false).GetCode(), 1281u) << "there is no second choice";
}

TEST(DisplayH264, AnImageIsShownBeforeAnAccessUnitAndAnAccessUnitOfAContainerWithoutImages)
{
    DecodingDisplay display;
    display.mFrames = 1;
    const auto buffer = MakePicture(20, 10);
    buffer->SetH264AccessUnit(std::make_shared<FakeAccessUnit>());
    EXPECT_TRUE(display.Display(*buffer, false).IsOK());
    EXPECT_EQ(display.GetInternalBuffer().GetImage()->GetWidth(), 20u);
    EXPECT_EQ(display.mFrames, 1);
    LxBuffer compressed(LxPayloadType::H264);
    compressed.SetGenDC(std::make_shared<FakeContainer>());
    compressed.SetH264AccessUnit(std::make_shared<FakeAccessUnit>());
    EXPECT_TRUE(display.Display(compressed, false).IsOK());
    EXPECT_EQ(display.GetInternalBuffer().GetImage()->GetWidth(), 40u);
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
