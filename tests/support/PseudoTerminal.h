#pragma once

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <termios.h>
#include <unistd.h>

#include <string>

/// A line between two programs: the bridge opens the COM port GetName(), the test is at the other end.
class PseudoTerminal
{
public:
    PseudoTerminal()
    {
        char name[128] = {};
        int slave = -1;
        if (openpty(&mMaster, &slave, name, nullptr, nullptr) == 0) {
            termios settings = {};
            tcgetattr(slave, &settings);
            cfmakeraw(&settings);
            tcsetattr(slave, TCSANOW, &settings);
            fcntl(mMaster, F_SETFL, O_NONBLOCK);
            mName = name;
            mSlave = slave;
        }
    }
    ~PseudoTerminal()
    {
        Unplug();
        close(mSlave);
    }
    PseudoTerminal(const PseudoTerminal &) = delete;
    PseudoTerminal &operator=(const PseudoTerminal &) = delete;

    const std::string &GetName() const { return mName; }
    int GetMaster() const { return mMaster; }
    /// A descriptor of the COM port itself, to look at its settings.
    int GetSlave() const { return mSlave; }
    void Unplug()
    {
        if (mMaster >= 0) {
            close(mMaster);
        }
        mMaster = -1;
    }
    void Write(const std::string &aText)
    {
        for (size_t done = 0; done < aText.size();) {
            const ssize_t count = write(mMaster, aText.data() + done, aText.size() - done);
            if (count > 0) {
                done += static_cast<size_t>(count);
            }
            else {
                pollfd waited{mMaster, POLLOUT, 0};
                poll(&waited, 1, 5000);
            }
        }
    }
    /// Reads until there are so many bytes or nothing comes for a while.
    std::string Read(size_t aCount, int aTimeout = 20000)
    {
        std::string text;
        while (text.size() < aCount) {
            pollfd waited{mMaster, POLLIN, 0};
            char bytes[4096];
            const ssize_t count = poll(&waited, 1, aTimeout) > 0 ? read(mMaster, bytes, sizeof(bytes)) : -1;
            if (count <= 0) {
                break;
            }
            text.append(bytes, static_cast<size_t>(count));
        }
        return text;
    }

private:
    int mMaster = -1;
    int mSlave = -1;
    std::string mName;
};
