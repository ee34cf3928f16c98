// The display under load: several threads feed it, sizes and formats change, the window comes and goes. On an X server.

#include <QtCore/QCoreApplication>
#include <QtWidgets/QDialog>
#include <atomic>
#include <thread>

#include "LxGUI/LxDisplayWnd.h"
#include "OpenGLTest.h"

namespace
{

/// Frames of many sizes and formats, with broken ones among them.
std::vector<std::unique_ptr<LxBuffer>> MakeFrames()
{
    std::vector<std::unique_ptr<LxBuffer>> frames;
    for (const LxPixelType type : {LxPixelType::Mono8, LxPixelType::RGB8, LxPixelType::Mono12p, LxPixelType::BayerRG8,
                                   LxPixelType::BGRa8, LxPixelType::YUV422_8, static_cast<LxPixelType>(0x8020FFFF)})
    {
        for (const auto &[width, height] : {std::pair(64u, 48u), std::pair(33u, 101u), std::pair(5000u, 3u)}) {
            auto buffer = std::make_unique<LxBuffer>(LxPayloadType::Image);
            EXPECT_TRUE(buffer->GetImage()->Alloc(width, height, type).IsOK());
            memset(buffer->GetDataPointer(), 0x55, buffer->GetImage()->GetDataSize());
            frames.push_back(std::move(buffer));
        }
    }
    return frames;
}

/// Threads that feed a display until they are stopped.
class Producers
{
public:
    template <typename Display>
    Producers(Display &aDisplay, const std::vector<std::unique_ptr<LxBuffer>> &aFrames, int aCount)
    {
        for (int p = 0; p < aCount; ++p) {
            mThreads.emplace_back([this, &aDisplay, &aFrames, p] {
                for (size_t i = static_cast<size_t>(p) * 5; !mStop; ++i) {
                    const unsigned code = aDisplay.Display(*aFrames[i % aFrames.size()], i % 3 == 0).GetCode();
                    if (code != 0 && code != LxResult(LxResultCode::PixelFormatNotSupported).GetCode()) {
                        ++mFailures;
                    }
                    ++mShown;
                    if (i % 7 == 0) {
                        aDisplay.Refresh();
                    }
                    if (i % 41 == 0) {
                        aDisplay.Clear();
                    }
                }
            });
        }
    }

    ~Producers()
    {
        mStop = true;
        // a producer may be waiting for the GUI thread
        for (std::thread &thread : mThreads) {
            thread.join();
        }
        EXPECT_EQ(mFailures, 0);
    }

    int Shown() const { return mShown; }

private:
    std::atomic<bool> mStop{false};
    std::atomic<int> mFailures{0};
    std::atomic<int> mShown{0};
    std::vector<std::thread> mThreads;
};

void SetText(DisplayWnd &aDisplay, int aNumber)
{
    aDisplay.SetTextOverlay(QString::number(aNumber));
}

void SetText(LxDisplayWnd &aDisplay, int aNumber)
{
    aDisplay.SetTextOverlay(std::to_string(aNumber).c_str());
}

}  // namespace

class DisplayLoad : public DisplayTest
{
};

TEST_F(DisplayLoad, EverythingMayChangeWhileSeveralThreadsFeedTheDisplay)
{
    ShowAt(200, 100);
    const auto frames = MakeFrames();
    const Producers producers(mDisplay, frames, 3);
    int step = 0;
    int shown = 0;
    EXPECT_TRUE(WaitForGui(
        [&] {
            ++step;
            SetText(mDisplay, step);
            mDisplay.SetTextOverlaySize(8 + step % 9);
            mDisplay.SetTextOverlayOffsetX(static_cast<unsigned>(step % 50));
            mHost.resize(150 + step % 70, 90 + step % 40);
            if (step % 3 == 0) {
                mDisplay.SetBackgroundColor(QColor(step % 256, 0, 0));
            }
            if (step % 5 == 0) {
                mDisplay.OnMainZoomIn();
            }
            if (step % 8 == 0) {
                EXPECT_EQ(mDisplay.SetRendererMode(1 - mDisplay.GetRendererMode()).GetCode(), 0u);
            }
            if (step % 20 == 0) {
                mHost.setVisible(step % 40 == 0);
            }
            shown = producers.Shown();
            return step > 120 && shown > 60;
        },
        60000));
}

TEST_F(DisplayLoad, TheWindowMayBeClosedAndShownAgainWhileFramesArrive)
{
    LxDisplayWnd display;
    display.SetPosition(1, 1, 160, 120);
    const auto frames = MakeFrames();
    const Producers producers(display, frames, 2);
    int step = 0;
    EXPECT_TRUE(WaitForGui(
        [&] {
            ++step;
            SetText(display, step);
            if (step % 2 == 0) {
                EXPECT_TRUE(display.Close().IsOK());
            }
            else {
                EXPECT_TRUE(display.ShowModeless(static_cast<QWidget *>(nullptr)).IsOK());
                EXPECT_EQ(display.SetRendererMode(static_cast<LxRendererMode>(step / 2 % 2)).GetCode(), 0u);
            }
            return step > 40;
        },
        60000));
}

TEST_F(DisplayLoad, TheHostsWidgetMayEndWhileFramesArrive)
{
    LxDisplayWnd display;
    const auto frames = MakeFrames();
    const Producers producers(display, frames, 2);
    std::unique_ptr<QWidget> host;
    int step = 0;
    EXPECT_TRUE(WaitForGui(
        [&] {
            host = std::make_unique<QWidget>();
            host->resize(120, 80);
            EXPECT_TRUE(display.Create(host.get()).IsOK());
            EXPECT_EQ(display.SetRendererMode(static_cast<LxRendererMode>(step % 2)).GetCode(), 0u);
            QCoreApplication::processEvents();
            return ++step > 20;
        },
        60000));
    host.reset();
}

TEST_F(DisplayLoad, DisplaysMayEndRightAfterTheirProducersStop)
{
    const auto frames = MakeFrames();
    for (int i = 0; i < 10; ++i) {
        QWidget host;
        host.resize(120, 80);
        auto display = std::make_unique<LxDisplayWnd>();
        ASSERT_TRUE(display->Create(&host).IsOK());
        ASSERT_EQ(display->SetRendererMode(static_cast<LxRendererMode>(i % 2)).GetCode(), 0u);
        {
            const Producers producers(*display, frames, 2);
            EXPECT_TRUE(WaitForGui([&] { return producers.Shown() > 5; }));
        }
        display.reset();  // with refreshes still on their way
        QCoreApplication::processEvents();
    }
}
