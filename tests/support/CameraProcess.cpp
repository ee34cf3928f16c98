#include "CameraProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <utility>

#include "GigEVision/LivenessProbe.h"
#include "WaitFor.h"
#include "YrUtilsLib/IpAddress.h"

CameraProcess::CameraProcess(std::vector<std::string> aCommand, std::string aAddress)
    : mCommand(std::move(aCommand)), mAddress(std::move(aAddress))
{
}

CameraProcess::~CameraProcess()
{
    Kill();
}

bool CameraProcess::Start()
{
    Kill();
    std::vector<char *> arguments;
    for (const std::string &argument : mCommand) {
        arguments.push_back(const_cast<char *>(argument.c_str()));
    }
    arguments.push_back(nullptr);
    int input[2];
    int output[2];
    if (pipe2(input, O_CLOEXEC) != 0) {
        return false;
    }
    if (pipe2(output, O_CLOEXEC) != 0) {
        close(input[0]);
        close(input[1]);
        return false;
    }
    mProcess = fork();
    if (mProcess == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        dup2(input[0], STDIN_FILENO);
        dup2(output[1], STDOUT_FILENO);
        dup2(open("/dev/null", O_WRONLY), STDERR_FILENO);
        execvp(arguments[0], arguments.data());
        _exit(127);
    }
    close(input[0]);
    close(output[1]);
    mInput = input[1];
    mOutput = output[0];
    if (mProcess < 0) {
        Kill();
        return false;
    }
    if (mAddress.empty()) {
        return true;
    }
    YrUtilsLib::Network::IpAddress address;
    address.Set(mAddress.c_str());
    LxDetail::LivenessProbe probe(address.Get());
    return WaitFor([&probe] { return probe.IsAlive(std::chrono::milliseconds(20)); });
}

void CameraProcess::Kill()
{
    if (mProcess > 0) {
        kill(mProcess, SIGKILL);
        waitpid(mProcess, nullptr, 0);
        mProcess = -1;
    }
    for (int *end : {&mInput, &mOutput}) {
        if (*end >= 0) {
            close(std::exchange(*end, -1));
        }
    }
}

void CameraProcess::Freeze()
{
    kill(mProcess, SIGSTOP);
}

void CameraProcess::Thaw()
{
    kill(mProcess, SIGCONT);
}

bool CameraProcess::Command(const std::string &aLine)
{
    const std::string line = aLine + '\n';
    if (write(mInput, line.data(), line.size()) != static_cast<ssize_t>(line.size())) {
        return false;
    }
    constexpr int longest = 20000;
    std::string answer;
    for (pollfd output{mOutput, POLLIN, 0}; poll(&output, 1, longest) > 0;) {
        char next = 0;
        if (read(mOutput, &next, 1) != 1) {
            return false;
        }
        if (next != '\n') {
            answer += next;
        }
        else if (answer.starts_with("ready")) {
            answer.clear();  // what it says at its start
        }
        else {
            return answer.starts_with("ok");
        }
    }
    return false;
}

std::vector<std::string> FakeCameraCommand()
{
    return {"arv-fake-gv-camera-0.8", "-i", "127.0.0.1"};
}

std::vector<std::string> EmulatorCommand(const std::string &aAddress)
{
    const char *folder = std::getenv("LXGUI_BIN");
    return {std::string(folder ? folder : "build/dev/bin") + "/lxgui-camera-emulator", "--address", aAddress};
}
