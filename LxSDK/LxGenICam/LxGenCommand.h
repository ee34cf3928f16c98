#pragma once

#include "LxGenICam/LxGenParameter.h"

/// A command feature (GenApi ICommand).
class LX_API LxGenCommand : public LxGenParameter
{
public:
    ~LxGenCommand() override;

    /// Whether the last execution is complete. Asks the device; a write-only command is always done.
    virtual LxResult IsDone(bool &aDone) const = 0;
    /// Starts the command; returns before it is complete. Errors: NotWritable and those of the device.
    virtual LxResult Execute() = 0;
};
