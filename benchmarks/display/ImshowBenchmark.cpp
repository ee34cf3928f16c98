// How many frames a second cv::imshow brings to the screen, as bench-display measures it. A program of its own:
// OpenCV's windows may be those of another Qt. On an X server.
#include <benchmark/benchmark.h>
#include <xcb/xcb.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <opencv2/highgui.hpp>

#include "RunBenchmarks.h"

namespace
{

constexpr int MarkerSize =
    64;  // The square at the top left that tells a frame from those before, in pixels of the frame.
constexpr const char *WindowName = "imshow";

uint8_t Marker(int aNumber)
{
    return static_cast<uint8_t>(16 + aNumber % 200);
}

/// Reads pixels of the root window.
class Screen
{
public:
    Screen() : mConnection(xcb_connect(nullptr, nullptr))
    {
        mRoot = xcb_setup_roots_iterator(xcb_get_setup(mConnection)).data->root;
    }
    ~Screen() { xcb_disconnect(mConnection); }
    Screen(const Screen &) = delete;
    Screen &operator=(const Screen &) = delete;

    uint8_t Read(int16_t aX, int16_t aY) const
    {
        const auto cookie = xcb_get_image(mConnection, XCB_IMAGE_FORMAT_Z_PIXMAP, mRoot, aX, aY, 1, 1, ~0u);
        const std::unique_ptr<xcb_get_image_reply_t, void (*)(void *)> reply(
            xcb_get_image_reply(mConnection, cookie, nullptr), std::free);
        return reply ? xcb_get_image_data(reply.get())[1] : 0;
    }

private:
    xcb_connection_t *mConnection;
    xcb_window_t mRoot = 0;
};

// arguments: width and height of the frame, width and height of the window
void Imshow(benchmark::State &aState)
{
    const cv::Size frame(static_cast<int>(aState.range(0)), static_cast<int>(aState.range(1)));
    const cv::Size window(static_cast<int>(aState.range(2)), static_cast<int>(aState.range(3)));
    cv::Mat frames[3];
    for (cv::Mat &mat : frames) {
        mat.create(frame, CV_8UC1);
        for (int i = 0; i < frame.area(); ++i) {
            mat.data[i] = static_cast<uint8_t>(i * 7 / 5);
        }
    }
    const bool isFitted = frame != window;
    cv::namedWindow(WindowName, (isFitted ? cv::WINDOW_NORMAL | cv::WINDOW_FREERATIO : cv::WINDOW_AUTOSIZE) |
                                    cv::WINDOW_GUI_NORMAL);
    cv::imshow(WindowName, frames[0]);
    cv::moveWindow(WindowName, 0, 0);
    if (isFitted) {
        cv::resizeWindow(WindowName, window.width, window.height);
    }
    cv::waitKey(200);
    const Screen screen;
    int number = 0;
    for (auto _ : aState) {
        cv::Mat &mat = frames[++number % 3];
        for (int y = 0; y < MarkerSize; ++y) {
            std::memset(mat.ptr(y), Marker(number), MarkerSize);
        }
        cv::imshow(WindowName, mat);
        do {
            cv::pollKey();
        } while (screen.Read(4, 16) != Marker(number));
    }
    cv::destroyAllWindows();
    aState.counters["rate fps"] = benchmark::Counter(static_cast<double>(number), benchmark::Counter::kIsRate);
}

BENCHMARK(Imshow)
    ->Args({1920, 1080, 1920, 1080})
    ->Args({4096, 3000, 1280, 960})
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->MinTime(2.0);

}  // namespace

int main(int aCount, char **aArguments)
{
    return RunBenchmarks(aCount, aArguments);
}
