#include <poll.h>
#include <sys/signalfd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "Backends/Simulation/SimulatedRegisters.h"
#include "BigEndian.h"
#include "CommandChannel.h"
#include "CommandLine.h"
#include "EmulatedCamera.h"

using namespace LxEmulator;

namespace
{

void Print(const std::string &aLine)
{
    std::fputs((aLine + "\n").c_str(), stdout);
    std::fflush(stdout);  // whoever waits for the line reads a pipe
}

int Fail(const std::string &aText, int aStatus)
{
    std::fprintf(stderr, "lxgui-camera-emulator: %s\n", aText.c_str());
    return aStatus;
}

/// The images that the command line asks for.
LxResult Configure(const CommandLine &aLine, EmulatedCamera &aEmulated)
{
    namespace Register = LxDetail::SimulatedRegister;
    LxDetail::SimulatedCamera &camera = aEmulated.GetCamera();
    const uint32_t width = aLine.mWidth ? aLine.mWidth : camera.GetWidth();
    const uint32_t height = aLine.mHeight ? aLine.mHeight : camera.GetHeight();
    LxResult result = aEmulated.SetGeometry(width, height);
    if (result.IsOK() && aLine.mFrameRate > 0) {
        uint64_t bits = 0;
        static_assert(sizeof bits == sizeof aLine.mFrameRate);
        std::memcpy(&bits, &aLine.mFrameRate, sizeof bits);
        uint8_t bytes[8];
        Put64(bytes, bits);
        result = camera.GetPort()->Write(Register::AcquisitionFrameRate, bytes, sizeof bytes);
    }
    return result;
}

bool EndsWithInput()
{
    struct stat status = {};
    return fstat(STDIN_FILENO, &status) == 0 && (S_ISFIFO(status.st_mode) || S_ISSOCK(status.st_mode));
}

/// Takes commands until it is told to end.
void Serve(EmulatedCamera &aCamera, int aSignals)
{
    CommandChannel channel(aCamera);
    std::string input;
    std::array<pollfd, 2> descriptors = {{{aSignals, POLLIN, 0}, {STDIN_FILENO, POLLIN, 0}}};
    while (!channel.IsDone()) {
        if (poll(descriptors.data(), descriptors.size(), -1) < 0 || descriptors[0].revents) {
            return;
        }
        char bytes[4096];
        const ssize_t size = read(STDIN_FILENO, bytes, sizeof bytes);
        if (size <= 0) {
            if (EndsWithInput()) {  // whoever started this is gone
                return;
            }
            descriptors[1].fd = -1;
            continue;
        }
        input.append(bytes, static_cast<size_t>(size));
        for (size_t end; !channel.IsDone() && (end = input.find('\n')) != std::string::npos; input.erase(0, end + 1)) {
            if (const std::string reply = channel.Execute(input.substr(0, end)); !reply.empty()) {
                Print(reply);
            }
        }
    }
}

}  // namespace

int main(int argc, char **argv)
{
    const CommandLine line = CommandLine::Parse(std::vector<std::string>(argv + 1, argv + argc));
    if (!line.mError.empty()) {
        return Fail(line.mError + " (--help explains)", 2);
    }
    if (line.mHelp) {
        std::fputs(CommandLine::GetHelp().c_str(), stdout);
        return 0;
    }
    // Blocked before any thread starts, so that they arrive here only.
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    std::signal(SIGPIPE, SIG_IGN);
    const int descriptor = signalfd(-1, &signals, SFD_CLOEXEC);

    EmulatedCamera camera(line.mCamera);
    LxResult result = Configure(line, camera);
    if (result.IsOK()) {
        result = camera.Start();
    }
    if (!result.IsOK()) {
        return Fail(result.GetDescription().GetAscii(), 1);
    }
    const std::string address = Endpoint{camera.GetEndpoint().mAddress, 0}.ToString();
    Print("ready " + address.substr(0, address.find(':')) + " " + std::to_string(camera.GetEndpoint().mPort));
    Serve(camera, descriptor);
    camera.Stop();
    close(descriptor);
    return 0;
}
