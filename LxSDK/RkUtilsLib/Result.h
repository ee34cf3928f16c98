#pragma once

namespace RkUtilsLib
{

/// Success or failure of a utility function.
class Result
{
public:
    explicit Result(bool aOK = true) : mOK(aOK) {}
    bool IsOK() const { return mOK; }

private:
    bool mOK;
};

}  // namespace RkUtilsLib
