#include "CameraProcess.h"

#include <fcntl.h>
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
    mProcess = fork();
    if (mProcess == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        const int null = open("/dev/null", O_WRONLY);
        dup2(null, STDOUT_FILENO);
        dup2(null, STDERR_FILENO);
        execvp(arguments[0], arguments.data());
        _exit(127);
    }
    if (mProcess < 0) {
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
}

void CameraProcess::Freeze()
{
    kill(mProcess, SIGSTOP);
}

void CameraProcess::Thaw()
{
    kill(mProcess, SIGCONT);
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
