#pragma once

// Internal: a camera that is asked by lines of text.

#include <memory>
#include <mutex>
#include <string>

#include "LxCameraBridge/CountedPort.h"

namespace LxDetail
{

/// Sends a line and hears the next one. Thread-safe: one question at a time.
class TextLine
{
public:
    /// @param aTerminator ends each line in both directions; not empty.
    /// @param aTimeout how long the camera may be silent, in milliseconds.
    TextLine(std::shared_ptr<CountedPort> aPort, std::string aTerminator, uint32_t aTimeout)
        : mPort(std::move(aPort)), mTerminator(std::move(aTerminator)), mTimeout(aTimeout)
    {
    }

    /// Timeout when no complete line comes; ProtocolError when it has no end.
    LxResult Ask(const std::string &aQuestion, std::string &aAnswer);
    /// Sends a line to which there is no answer.
    LxResult Tell(const std::string &aLine);

private:
    LxResult Send(const std::string &aLine);

    const std::shared_ptr<CountedPort> mPort;
    const std::string mTerminator;
    const uint32_t mTimeout;
    std::mutex mMutex;  // held during a question
};

}  // namespace LxDetail
