// How long a program takes from its start to its first window on the screen: the viewer, and an empty program of Qt
// widgets beside it, by turns. Needs an X server.

#include <benchmark/benchmark.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

namespace
{

constexpr int Rounds = 15;
constexpr int Timeout = 20000;  // milliseconds

using Clock = std::chrono::steady_clock;

double Milliseconds(Clock::duration aDuration)
{
    return std::chrono::duration<double, std::milli>(aDuration).count();
}

/// Sees windows appear.
class Screen
{
public:
    Screen() : mConnection(xcb_connect(nullptr, nullptr))
    {
        if (!xcb_connection_has_error(mConnection)) {
            const uint32_t mask = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
            xcb_change_window_attributes(mConnection, xcb_setup_roots_iterator(xcb_get_setup(mConnection)).data->root,
                                         XCB_CW_EVENT_MASK, &mask);
        }
        Forget();
    }
    ~Screen() { xcb_disconnect(mConnection); }
    Screen(const Screen &) = delete;
    Screen &operator=(const Screen &) = delete;

    bool IsThere() const { return !xcb_connection_has_error(mConnection); }

    /// Drops what happened until now.
    void Forget()
    {
        std::free(xcb_get_input_focus_reply(mConnection, xcb_get_input_focus(mConnection), nullptr));
        while (Next()) {
        }
    }

    bool WaitForWindow()
    {
        const auto end = Clock::now() + std::chrono::milliseconds(Timeout);
        while (IsThere() && Clock::now() < end) {
            while (const auto event = Next()) {
                if ((event->response_type & 0x7F) == XCB_MAP_NOTIFY) {
                    return true;
                }
            }
            pollfd input = {xcb_get_file_descriptor(mConnection), POLLIN, 0};
            poll(&input, 1, 100);
        }
        return false;
    }

private:
    std::unique_ptr<xcb_generic_event_t, decltype(&std::free)> Next()
    {
        return {xcb_poll_for_event(mConnection), &std::free};
    }

    xcb_connection_t *const mConnection;
};

/// Milliseconds from the start of a program to its first window; below 0 when there is none.
double MeasureStart(Screen &aScreen, const std::string &aProgram)
{
    aScreen.Forget();
    char *arguments[] = {const_cast<char *>(aProgram.c_str()), nullptr};
    pid_t process = -1;
    const auto start = Clock::now();
    if (posix_spawn(&process, aProgram.c_str(), nullptr, nullptr, arguments, environ) != 0) {
        return -1;
    }
    const bool shown = aScreen.WaitForWindow();
    const double time = Milliseconds(Clock::now() - start);
    kill(process, SIGKILL);
    waitpid(process, nullptr, 0);
    return shown ? time : -1;
}

double Median(std::vector<double> aValues)
{
    std::sort(aValues.begin(), aValues.end());
    return aValues[aValues.size() / 2];
}

void ViewerStart(benchmark::State &aState)
{
    const char *folder = std::getenv("LXGUI_BIN");
    const std::string bin = folder ? folder : ".";
    Screen screen;
    for ([[maybe_unused]] auto _ : aState) {
        std::vector<double> viewer;
        std::vector<double> empty;
        for (int round = 0; round <= Rounds; ++round) {
            const double times[] = {MeasureStart(screen, bin + "/lxgui-viewer"),
                                    MeasureStart(screen, bin + "/empty-program")};
            if (times[0] < 0 || times[1] < 0) {
                aState.SkipWithError("a program showed no window; LXGUI_BIN, DISPLAY?");
                return;
            }
            if (round > 0) {  // what the first round reads from the disk the others have in memory
                viewer.push_back(times[0]);
                empty.push_back(times[1]);
            }
        }
        aState.SetIterationTime(Median(viewer) / 1e3);
        aState.counters["empty ms"] = Median(empty);
        aState.counters["of_empty"] = Median(viewer) / Median(empty);
    }
}
BENCHMARK(ViewerStart)->UseManualTime()->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
