#pragma once

#include <string>

#include "EmulatedCamera.h"

namespace LxEmulator
{

/// Controls an emulated camera with lines of text: one command a line, one line in reply, "ok", maybe with results as
/// NAME=VALUE, or "error" and the reason.
class CommandChannel
{
public:
    explicit CommandChannel(EmulatedCamera &aCamera) : mCamera(aCamera) {}

    /// Carries out one line and returns the reply without a line break; an empty one for an empty line or a comment
    /// (from "#" on).
    std::string Execute(const std::string &aLine);
    /// Whether the command "quit" was given.
    bool IsDone() const { return mDone; }

    /// A line for each command: how it is written and what it does.
    static std::string GetHelp();

private:
    EmulatedCamera &mCamera;
    bool mDone = false;
};

}  // namespace LxEmulator
