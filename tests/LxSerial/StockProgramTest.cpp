// A stock terminal program talks through a bridge to a simulated device, over a pair of pseudo terminals.

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <vector>

#include "LxSerial/LxSerialBridge.h"
#include "PseudoTerminal.h"
#include "SimulatedGrabber.h"
#include "WaitFor.h"

namespace
{

/// A program with a terminal of its own, which it takes for the user's.
class Program
{
public:
    explicit Program(std::vector<std::string> aCommand)
    {
        std::vector<char *> arguments;
        for (std::string &argument : aCommand) {
            arguments.push_back(argument.data());
        }
        arguments.push_back(nullptr);
        mProcess = forkpty(&mTerminal, nullptr, nullptr, nullptr);
        if (mProcess == 0) {
            execvp(arguments[0], arguments.data());
            _exit(127);
        }
    }
    ~Program()
    {
        kill(mProcess, SIGTERM);
        waitpid(mProcess, nullptr, 0);
        close(mTerminal);
    }
    Program(const Program &) = delete;
    Program &operator=(const Program &) = delete;

    void Type(const std::string &aText)
    {
        EXPECT_EQ(write(mTerminal, aText.data(), aText.size()), static_cast<ssize_t>(aText.size()));
    }
    /// Waits until the program has shown the text.
    bool Shows(const std::string &aText)
    {
        return WaitFor([&] {
            pollfd waited{mTerminal, POLLIN, 0};
            char bytes[1024];
            const ssize_t count = poll(&waited, 1, 0) > 0 ? read(mTerminal, bytes, sizeof(bytes)) : 0;
            mShown.append(bytes, static_cast<size_t>(std::max<ssize_t>(count, 0)));
            return mShown.find(aText) != std::string::npos;
        });
    }
    const std::string &GetShown() const { return mShown; }

private:
    int mTerminal = -1;
    pid_t mProcess = -1;
    std::string mShown;
};

/// What the program has shown since the terminal was ready, as a document shows it.
std::string GetConversation(std::string aShown)
{
    std::erase(aShown, '\r');
    const size_t start = aShown.find("Terminal ready\n");
    return start == std::string::npos ? aShown : aShown.substr(start);
}

}  // namespace

TEST(StockProgramTest, PicocomTalksToTheDeviceOverASocatPair)
{
    char folder[] = "/tmp/lxbridgeXXXXXX";
    ASSERT_NE(mkdtemp(folder), nullptr);
    const std::string bridgeEnd = std::string(folder) + "/bridge";
    const std::string programEnd = std::string(folder) + "/program";
    {
        Program pair({"socat", "-d", "-d", "pty,raw,echo=0,link=" + bridgeEnd, "pty,raw,echo=0,link=" + programEnd});
        // it sets a terminal only after it has made the link
        ASSERT_TRUE(pair.Shows("starting data transfer loop")) << "socat is installed by script/setup";

        const SimulatedGrabber grabber;
        const auto console = std::make_shared<LxSimulatedSerialScript>();
        console->Add("ID?\r", "Simulated Serial Camera\r\n");
        console->Add("TEMP?\r", "42.5\r\n");
        SimulatedGrabber::SetPeer(LxDeviceSerial::Serial1, console);
        LxSerialBridge bridge;
        LxSerialPortConfiguration configuration;
        configuration.mBaudRate = 115200;
        const LxResult started = bridge.Start(bridgeEnd, configuration, grabber.GetAdapter(), LxDeviceSerial::Serial1);
        ASSERT_TRUE(started.IsOK()) << started.GetDescription().GetAscii();

        Program picocom({"picocom", "--echo", "--baud", "115200", programEnd});
        ASSERT_TRUE(picocom.Shows("Terminal ready")) << picocom.GetShown();
        picocom.Type("ID?\r");
        EXPECT_TRUE(picocom.Shows("Simulated Serial Camera\r\n")) << picocom.GetShown();
        picocom.Type("TEMP?\r");
        EXPECT_TRUE(picocom.Shows("42.5\r\n")) << picocom.GetShown();
        EXPECT_TRUE(WaitFor([&] { return bridge.GetBytesSentToDevice() == 10; })) << "counted after the writing";
        EXPECT_EQ(bridge.GetBytesReceivedFromDevice(), 31u);
        const std::string conversation = GetConversation(picocom.GetShown());
        std::cout << conversation << "\n";
        std::ifstream document(LXGUI_SOURCE_DIR "/docs/serial-bridges.md");
        const std::string text((std::istreambuf_iterator<char>(document)), std::istreambuf_iterator<char>());
        EXPECT_NE(text.find(conversation), std::string::npos) << "docs/serial-bridges.md shows another conversation";
    }
    std::filesystem::remove_all(folder);
}
