#pragma once

#include <string>
#include <vector>

#include "EmulatedCamera.h"

namespace LxEmulator
{

/// What the program was asked to do.
struct CommandLine
{
    EmulatedCameraOptions mCamera;
    uint32_t mWidth = 0;  ///< 0: the camera's default, as the next two
    uint32_t mHeight = 0;
    double mFrameRate = 0;
    bool mHelp = false;
    std::string mError;  ///< not empty: the arguments make no sense

    /// @param aArguments without the name of the program.
    static CommandLine Parse(const std::vector<std::string> &aArguments);
    static std::string GetHelp();
};

}  // namespace LxEmulator
