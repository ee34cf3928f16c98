#include "StockTerminal.h"

#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <vector>

#include "PseudoTerminal.h"

namespace
{

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds LongestStart{10};
constexpr std::chrono::seconds Duration{3};
constexpr uint64_t Running = 1000000;  // more bytes than the system buffers: somebody takes them

/// A program in a process group of its own, which ends with the object.
class Program
{
public:
    explicit Program(std::vector<const char *> aCommand)
    {
        aCommand.push_back(nullptr);
        mProcess = fork();
        if (mProcess == 0) {
            setpgid(0, 0);
            execvp(aCommand[0], const_cast<char *const *>(aCommand.data()));
            _exit(127);
        }
        setpgid(mProcess, mProcess);
    }
    ~Program()
    {
        kill(-mProcess, SIGKILL);
        if (!mEnded) {
            waitpid(mProcess, nullptr, 0);
        }
    }
    Program(const Program &) = delete;
    Program &operator=(const Program &) = delete;

    bool HasEnded()
    {
        mEnded = mEnded || waitpid(mProcess, nullptr, WNOHANG) == mProcess;
        return mEnded;
    }

private:
    pid_t mProcess = -1;
    bool mEnded = false;
};

bool IsInstalled(const std::string &aName)
{
    return std::system(("command -v " + aName + " >/dev/null").c_str()) == 0;
}

/// Sends printable bytes until a condition holds; returns how many.
template <class Condition>
uint64_t Flood(const PseudoTerminal &aTerminal, Condition aCondition)
{
    std::string bytes;
    for (int i = 0; i < 65536; ++i) {
        bytes += static_cast<char>(i % 95 + 32);
    }
    uint64_t sent = 0;
    while (!aCondition(sent)) {
        const ssize_t count = write(aTerminal.GetMaster(), bytes.data(), bytes.size());
        if (count > 0) {
            sent += static_cast<uint64_t>(count);
        }
        else {
            pollfd waited{aTerminal.GetMaster(), POLLOUT, 0};
            poll(&waited, 1, 100);
        }
    }
    return sent;
}

StockTerminal Measure()
{
    if (!IsInstalled("xterm") || !IsInstalled("picocom")) {
        return {0, "xterm and picocom are not installed"};
    }
    if (std::getenv("DISPLAY") == nullptr) {
        return {0, "there is no X server for xterm"};
    }
    const PseudoTerminal terminal;
    Program program({"xterm", "-e", "picocom", "--quiet", terminal.GetName().c_str()});
    const auto start = Clock::now();
    const uint64_t begun = Flood(terminal, [&](uint64_t aSent) {
        return aSent > Running || program.HasEnded() || Clock::now() - start > LongestStart;
    });
    if (begun <= Running) {
        return {0, "xterm or picocom does not start"};
    }
    const auto running = Clock::now();
    const uint64_t sent = Flood(terminal, [&](uint64_t) { return Clock::now() - running > Duration; });
    return {static_cast<double>(sent) / std::chrono::duration<double>(Clock::now() - running).count(), ""};
}

}  // namespace

const StockTerminal &MeasureStockTerminal()
{
    static const StockTerminal stock = Measure();
    return stock;
}
