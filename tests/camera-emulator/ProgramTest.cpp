// The program itself: its output, its commands, how it ends.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <string>
#include <vector>

#include "WaitFor.h"

extern char **environ;

namespace
{

/// The emulator in a process of its own, at the end of two pipes.
class Program
{
public:
    explicit Program(const std::vector<std::string> &aArguments)
    {
        int input[2];
        int output[2];
        EXPECT_EQ(0, pipe2(input, O_CLOEXEC));
        EXPECT_EQ(0, pipe2(output, O_CLOEXEC));
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, input[0], STDIN_FILENO);
        posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
        posix_spawn_file_actions_adddup2(&actions, output[1], STDERR_FILENO);
        const char *folder = std::getenv("LXGUI_BIN");
        std::string path = std::string(folder ? folder : "bin") + "/lxgui-camera-emulator";
        std::vector<std::string> words = aArguments;
        std::vector<char *> arguments = {path.data()};
        for (std::string &word : words) {
            arguments.push_back(word.data());
        }
        arguments.push_back(nullptr);
        EXPECT_EQ(0, posix_spawn(&mProcess, path.c_str(), &actions, nullptr, arguments.data(), environ)) << path;
        posix_spawn_file_actions_destroy(&actions);
        close(input[0]);
        close(output[1]);
        mInput = input[1];
        mOutput = output[0];
    }
    ~Program()
    {
        CloseInput();
        if (mProcess > 0) {
            kill(mProcess, SIGKILL);
            waitpid(mProcess, nullptr, 0);
        }
        close(mOutput);
    }

    void Write(const std::string &aText)
    {
        EXPECT_EQ(static_cast<ssize_t>(aText.size()), write(mInput, aText.data(), aText.size()));
    }
    void CloseInput()
    {
        if (mInput >= 0) {
            close(mInput);
            mInput = -1;
        }
    }
    void Signal(int aSignal) { kill(mProcess, aSignal); }

    /// The next line of output; what there is at the end of the output or when none comes in time.
    std::string ReadLine()
    {
        while (mText.find('\n') == std::string::npos && ReadMore()) {
        }
        const size_t end = mText.find('\n');
        const std::string line = mText.substr(0, end);
        mText.erase(0, end == std::string::npos ? end : end + 1);
        return line;
    }
    std::string ReadAll()
    {
        while (ReadMore()) {
        }
        return mText;
    }
    /// The exit status, -1 when it does not end by itself.
    int Wait()
    {
        int status = 0;
        if (!WaitFor([&] { return waitpid(mProcess, &status, WNOHANG) == mProcess; })) {
            return -1;
        }
        mProcess = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

private:
    bool ReadMore()
    {
        pollfd descriptor{mOutput, POLLIN, 0};
        char bytes[4096];
        const ssize_t size = poll(&descriptor, 1, 20000) == 1 ? read(mOutput, bytes, sizeof bytes) : 0;
        if (size > 0) {
            mText.append(bytes, static_cast<size_t>(size));
        }
        return size > 0;
    }

    pid_t mProcess = -1;
    int mInput = -1;
    int mOutput = -1;
    std::string mText;
};

TEST(Program, SaysWhenItIsReadyAndTakesCommands)
{
    Program program(
        {"--address", "127.0.0.7", "--serial", "P7", "--width", "320", "--height", "240", "--frame-rate", "5"});
    EXPECT_EQ("ready 127.0.0.7 3956", program.ReadLine());
    program.Write("read 0x938\n\nread 0xA110\n");
    EXPECT_EQ("ok value=0x00000BB8", program.ReadLine());
    EXPECT_EQ("ok value=0x00000140", program.ReadLine());
    program.Write("non");
    program.Write("sense\n");
    EXPECT_EQ("error unknown command: nonsense", program.ReadLine());
    program.Write("quit\nstate\n");
    EXPECT_EQ("ok", program.ReadLine());
    EXPECT_EQ(0, program.Wait());
}

TEST(Program, EndsCleanlyOnSignals)
{
    for (const int signal : {SIGTERM, SIGINT}) {
        Program program({});
        EXPECT_EQ("ready 127.0.0.1 3956", program.ReadLine());
        program.Signal(signal);
        EXPECT_EQ(0, program.Wait());
        EXPECT_EQ("", program.ReadAll());
    }
}

TEST(Program, EndsWithWhoStartedIt)
{
    Program program({});
    EXPECT_EQ("ready 127.0.0.1 3956", program.ReadLine());
    program.CloseInput();
    EXPECT_EQ(0, program.Wait());
}

TEST(Program, ExplainsItself)
{
    Program program({"--help"});
    const std::string text = program.ReadAll();
    EXPECT_NE(std::string::npos, text.find("lxgui-camera-emulator [OPTION]"));
    EXPECT_NE(std::string::npos, text.find("--interface NAME"));
    EXPECT_NE(std::string::npos, text.find("drop-every N"));
    EXPECT_EQ(0, program.Wait());
}

TEST(Program, RefusesWrongArguments)
{
    Program program({"--frame-rate", "fast"});
    EXPECT_EQ("lxgui-camera-emulator: not a valid HZ for --frame-rate: fast (--help explains)", program.ReadLine());
    EXPECT_EQ(2, program.Wait());
}

TEST(Program, SaysWhatTheCameraCannotDo)
{
    Program program({"--width", "5"});
    EXPECT_NE(std::string::npos, program.ReadLine().find("Width"));
    EXPECT_EQ(1, program.Wait());
}

TEST(Program, SaysThatItsAddressIsTaken)
{
    Program first({});
    EXPECT_EQ("ready 127.0.0.1 3956", first.ReadLine());
    Program second({});
    EXPECT_EQ("lxgui-camera-emulator: Cannot listen on 127.0.0.1:3956: Address already in use", second.ReadLine());
    EXPECT_EQ(1, second.Wait());
}

}  // namespace
