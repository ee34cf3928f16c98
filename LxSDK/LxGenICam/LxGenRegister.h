#pragma once

#include "LxGenICam/LxGenParameter.h"

/// A register feature (GenApi IRegister): bytes that the application interprets.
class LX_API LxGenRegister : public LxGenParameter
{
public:
    ~LxGenRegister() override;

    /// In bytes.
    virtual LxResult GetLength(int64_t &aLength) const = 0;
    /// Reads GetLength() bytes. BufferTooSmall when aLength is less.
    virtual LxResult Get(uint8_t *aData, int64_t aLength) const = 0;
    /// Writes exactly GetLength() bytes; SizeMismatch when aLength differs.
    virtual LxResult Set(const uint8_t *aData, int64_t aLength) = 0;
};
