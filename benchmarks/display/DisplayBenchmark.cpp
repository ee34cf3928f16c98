// How many frames a second reach the screen: every frame carries its number, and counts when a pixel that is read back
// from the root window shows it. Beside the display run widgets that do nothing but draw. On an X server.
//
// The producer is one frame ahead, as a camera is that does not wait for the screen: it begins the next frame when one
// has been drawn, while that is still on its way to the screen.
#include <benchmark/benchmark.h>

#include <QtCore/QElapsedTimer>
#include <QtCore/QSemaphore>
#include <QtCore/QTimer>
#include <QtGui/QPainter>
#include <QtGui/QScreen>
#include <QtOpenGLWidgets/QOpenGLWidget>
#include <QtWidgets/QApplication>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstring>
#include <functional>
#include <thread>
#include <vector>

#include "LxBuffer/LxBuffer.h"
#include "LxCodec/LxBufferConverter.h"
#include "LxGUI/Display/OpenGLFunctions.h"
#include "LxGUI/LxDisplayWnd.h"
#include "RunBenchmarks.h"

namespace
{

constexpr int MarkerSize = 64;      // The square at the top left that carries the number, in pixels of the frame.
const QPoint ReadBackPoint(4, 16);  // Within it on the screen, for all sizes that are measured.

/// The grey value that tells a frame from those before.
uint8_t Marker(int aNumber)
{
    return static_cast<uint8_t>(16 + aNumber % 200);
}

/// A thread that calls a function with the next frame's number whenever it is told to, like an acquisition thread.
class Producer
{
public:
    explicit Producer(std::function<void(int)> aShow) : mShow(std::move(aShow)), mThread([this] { Run(); }) {}
    ~Producer()
    {
        mStop = true;
        mNext.release();
        mThread.join();
    }
    void Next() { mNext.release(); }

private:
    void Run()
    {
        for (int number = 1;; ++number) {
            mNext.acquire();
            if (mStop) {
                return;
            }
            mShow(number);
        }
    }

    std::function<void(int)> mShow;
    QSemaphore mNext;
    std::atomic<bool> mStop{false};
    std::thread mThread;
};

uint8_t ReadBack(const QPoint &aPoint)
{
    return static_cast<uint8_t>(
        qGreen(QGuiApplication::primaryScreen()->grabWindow(0, aPoint.x(), aPoint.y(), 1, 1).toImage().pixel(0, 0)));
}

/// Sees when a window has drawn. The screen is not asked before: the question would keep a processor from the producer.
class Updates : public QObject
{
public:
    explicit Updates(QWidget &aWindow)
    {
        aWindow.installEventFilter(this);
        mPatience.callOnTimeout([this] { mSeen = true; });  // drawn for another reason than an update
        mPatience.start(std::chrono::milliseconds(100));
    }
    bool eventFilter(QObject *, QEvent *aEvent) override
    {
        mSeen |= aEvent->type() == QEvent::UpdateRequest;
        return false;
    }
    /// Waits until there has been one since the last call.
    void Wait()
    {
        while (!mSeen) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        mSeen = false;
    }

private:
    bool mSeen = false;
    QTimer mPatience;
};

/// Runs frames through a producer and counts those that the screen confirms.
void Run(benchmark::State &aState, QWidget &aWindow, std::function<void(int)> aShow)
{
    Updates updates(aWindow);
    Producer producer(std::move(aShow));
    int begun = 0;
    int seen = 0;
    const auto begin = [&] {
        ++begun;
        producer.Next();
    };
    int64_t frames = 0;
    QElapsedTimer clock;
    for (auto _ : aState) {
        clock.start();
        for (const int before = seen; seen == before;) {
            if (begun == seen) {
                begin();
            }
            updates.Wait();
            if (begun == seen + 1) {
                begin();
            }
            const uint8_t marker = ReadBack(ReadBackPoint);
            for (int number = begun; number > before; --number) {
                if (marker == Marker(number)) {
                    seen = number;
                    break;
                }
            }
            if (clock.hasExpired(10000)) {
                aState.SkipWithError("a frame has not reached the screen for ten seconds");
                return;
            }
        }
        ++frames;
    }
    aState.counters["rate fps"] = benchmark::Counter(static_cast<double>(frames), benchmark::Counter::kIsRate);
}

void ShowFullScreen(QWidget &aWidget, const QSize &aSize)
{
    aWidget.setGeometry(QRect({}, aSize));
    aWidget.show();
    while (!aWidget.isVisible() || aWidget.size() != aSize) {
        QCoreApplication::processEvents();
    }
    for (int i = 0; i < 20; ++i) {
        QCoreApplication::processEvents();
    }
}

/// Mono8 frames with their number in them.
class Frames
{
public:
    Frames(int aWidth, int aHeight)
    {
        for (LxBuffer &buffer : mBuffers) {
            buffer = LxBuffer(LxPayloadType::Image);
            buffer.GetImage()->Alloc(static_cast<uint32_t>(aWidth), static_cast<uint32_t>(aHeight), LxPixelType::Mono8);
            auto *pixels = static_cast<uint8_t *>(buffer.GetDataPointer());
            for (int i = 0; i < aWidth * aHeight; ++i) {
                pixels[i] = static_cast<uint8_t>(i * 7 / 5);
            }
        }
    }

    const LxBuffer &Next(int aNumber)
    {
        LxBuffer &buffer = mBuffers[aNumber % 3];
        auto *pixels = static_cast<uint8_t *>(buffer.GetDataPointer());
        for (int y = 0; y < MarkerSize; ++y) {
            std::memset(pixels + y * buffer.GetImage()->GetWidth(), Marker(aNumber), MarkerSize);
        }
        return buffer;
    }

private:
    LxBuffer mBuffers[3];
};

/// A widget that draws a ready picture, fitted when it has another size.
class PlainWidget : public QWidget
{
public:
    PlainWidget(int aWidth, int aHeight)
    {
        setAttribute(Qt::WA_OpaquePaintEvent);
        for (QImage &image : mImages) {
            image = QImage(aWidth, aHeight, QImage::Format_RGB32);
            auto *pixels = reinterpret_cast<QRgb *>(image.bits());
            for (int i = 0; i < aWidth * aHeight; ++i) {
                pixels[i] = qRgb(i * 7 / 5 & 255, i * 7 / 5 & 255, i * 7 / 5 & 255);
            }
        }
    }

    void Show(int aNumber)
    {
        QImage &image = mImages[aNumber % 3];
        const uint8_t marker = Marker(aNumber);
        for (int y = 0; y < MarkerSize; ++y) {
            std::fill_n(reinterpret_cast<QRgb *>(image.scanLine(y)), MarkerSize, qRgb(marker, marker, marker));
        }
        mShown = aNumber % 3;
        QMetaObject::invokeMethod(this, [this] { update(); });
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.drawImage(rect(), mImages[mShown]);
    }

private:
    QImage mImages[3];
    std::atomic<int> mShown{0};
};

/// A bare OpenGL widget that uploads a ready picture through a pixel buffer object.
class BareOpenGLWidget : public QOpenGLWidget
{
public:
    BareOpenGLWidget(int aWidth, int aHeight) : mWidth(aWidth), mHeight(aHeight)
    {
        setFormat(DisplaySurfaceFormat());
        for (std::vector<QRgb> &image : mImages) {
            image.resize(static_cast<size_t>(aWidth) * static_cast<size_t>(aHeight), qRgb(1, 2, 3));
        }
    }

    void Show(int aNumber)
    {
        std::vector<QRgb> &image = mImages[aNumber % 3];
        const uint8_t marker = Marker(aNumber);
        for (int y = 0; y < MarkerSize; ++y) {
            std::fill_n(image.begin() + y * mWidth, MarkerSize, qRgb(marker, marker, marker));
        }
        mShown = aNumber % 3;
        QMetaObject::invokeMethod(this, [this] { update(); });
    }

protected:
    void initializeGL() override
    {
        mGL.Load();
        mGL.glGenBuffers(1, &mBuffer);
        mGL.glGenTextures(1, &mTexture);
        mGL.glBindTexture(GL_TEXTURE_2D, mTexture);
        mGL.glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
        mGL.glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
        mGL.glEnable(GL_TEXTURE_2D);
    }

    void paintGL() override
    {
        const GLsizeiptr size = GLsizeiptr{4} * mWidth * mHeight;
        mGL.glBindBuffer(GL_PIXEL_UNPACK_BUFFER, mBuffer);
        mGL.glBufferData(GL_PIXEL_UNPACK_BUFFER, size, nullptr, GL_STREAM_DRAW);
        std::memcpy(mGL.glMapBuffer(GL_PIXEL_UNPACK_BUFFER, GL_WRITE_ONLY), mImages[mShown].data(),
                    static_cast<size_t>(size));
        mGL.glUnmapBuffer(GL_PIXEL_UNPACK_BUFFER);
        mGL.glBindTexture(GL_TEXTURE_2D, mTexture);
        mGL.glTexImage2D(GL_TEXTURE_2D, 0, 4, mWidth, mHeight, 0, GL_BGRA, GL_UNSIGNED_BYTE, nullptr);
        mGL.glBindBuffer(GL_PIXEL_UNPACK_BUFFER, 0);
        mGL.glClear(GL_COLOR_BUFFER_BIT);
        mGL.glBegin(GL_QUADS);
        const int corners[][2] = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
        for (const auto &[x, y] : corners) {
            mGL.glTexCoord2f(static_cast<float>(x), static_cast<float>(y));
            mGL.glVertex2f(static_cast<float>(2 * x - 1), static_cast<float>(1 - 2 * y));
        }
        mGL.glEnd();
    }

private:
    int mWidth;
    int mHeight;
    std::vector<QRgb> mImages[3];
    std::atomic<int> mShown{0};
    OpenGLFunctions mGL;
    GLuint mBuffer = 0;
    GLuint mTexture = 0;
};

const QSize FullHD(1920, 1080);

// arguments: width and height of the frame, width and height of the window
void Display(benchmark::State &aState, LxRendererMode aMode)
{
    Frames frames(static_cast<int>(aState.range(0)), static_cast<int>(aState.range(1)));
    QWidget host;
    LxDisplayWnd display;
    if (!display.SetRendererMode(aMode).IsOK()) {
        aState.SkipWithError("this machine cannot draw in this mode");
        return;
    }
    display.Create(&host);
    ShowFullScreen(host, {static_cast<int>(aState.range(2)), static_cast<int>(aState.range(3))});
    Run(aState, host, [&](int aNumber) { display.Display(frames.Next(aNumber)); });
}

template <typename Widget>
void Bare(benchmark::State &aState)
{
    Widget widget(static_cast<int>(aState.range(0)), static_cast<int>(aState.range(1)));
    ShowFullScreen(widget, {static_cast<int>(aState.range(2)), static_cast<int>(aState.range(3))});
    Run(aState, widget, [&](int aNumber) { widget.Show(aNumber); });
}

void Software(benchmark::State &aState)
{
    Display(aState, LxRendererModeSoftware);
}

void OpenGL(benchmark::State &aState)
{
    Display(aState, LxRendererModeOpenGL);
}

// How long the software renderer holds the caller beyond the conversion itself.
void CallerHeld(benchmark::State &aState)
{
    Frames frames(1920, 1080);
    QWidget host;
    LxDisplayWnd display;
    display.Create(&host);
    ShowFullScreen(host, FullHD);
    LxBufferConverter converter(-1);
    LxBuffer target(LxPayloadType::Image);
    const auto seconds = [](const auto &aCall) {
        const auto start = std::chrono::steady_clock::now();
        aCall();
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    };
    std::vector<double> extra;
    int number = 0;
    for (auto _ : aState) {
        const LxBuffer &frame = frames.Next(++number);
        const double converted = seconds([&] { converter.Convert(frame.GetImage(), &target, true, false); });
        const double shown = seconds([&] { display.Display(frame); });
        aState.SetIterationTime(shown);
        extra.push_back(shown - converted);
    }
    std::nth_element(extra.begin(), extra.begin() + static_cast<long>(extra.size() / 2), extra.end());
    aState.counters["beyond_conversion us"] = extra[extra.size() / 2] * 1e6;
}

void Sizes(benchmark::internal::Benchmark *aBenchmark)
{
    aBenchmark->Args({1920, 1080, 1920, 1080})->Args({4096, 3000, 1280, 960});
    aBenchmark->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(2.0);
}

BENCHMARK(Software)->Apply(Sizes);
BENCHMARK_TEMPLATE(Bare, PlainWidget)->Apply(Sizes);
BENCHMARK(OpenGL)->Apply(Sizes);
BENCHMARK_TEMPLATE(Bare, BareOpenGLWidget)->Apply(Sizes);
BENCHMARK(CallerHeld)->Unit(benchmark::kMicrosecond)->UseManualTime()->MinTime(1.0);

}  // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    return RunBenchmarks(argc, argv);
}
