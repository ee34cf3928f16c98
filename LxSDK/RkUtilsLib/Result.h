#pragma once

namespace RkUtilsLib
{

/// Success or failure of a utility function.
/// @thread{any; one object by one thread at a time}
class Result
{
public:
    /// A success, or a failure for false.
    explicit Result(bool aOK = true) : mOK(aOK) {}
    /// Whether it is a success.
    bool IsOK() const { return mOK; }

private:
    bool mOK;
};

}  // namespace RkUtilsLib
