#pragma once

// Internal: what every user of libaravis in this SDK needs. Names its types without including its headers.

#include <memory>
#include <mutex>

#include "LxBase/LxResult.h"

struct _GError;

namespace LxDetail
{

/// Drops a reference of a GObject; for std::unique_ptr.
struct GObjectUnref
{
    void operator()(void *aObject) const;
};

/// Owns one reference of a GObject.
template <class Object>
using GObjectPtr = std::unique_ptr<Object, GObjectUnref>;

/// Receives the error of a GLib call: Call(..., error.Out()).
class ArvError
{
public:
    ArvError() = default;
    ~ArvError();
    ArvError(const ArvError &) = delete;
    ArvError &operator=(const ArvError &) = delete;

    /// Where the call puts its error; an earlier one is dropped.
    _GError **Out();
    bool IsSet() const { return mError != nullptr; }
    /// OK when no error is set, otherwise its code and its text as ArvErrorToResult() gives them.
    LxResult ToResult() const;

private:
    _GError *mError = nullptr;
};

/// The result that stands for an error of libaravis (or of a register port, see SetArvError). OK for null.
///
/// The description is the error's text without the "[Feature] [Register] " groups in front, which the caller knows, and
/// with a capital letter.
LxResult ArvErrorToResult(const _GError *aError);

/// Makes a GError of a result so that it passes through libaravis and comes out of ArvErrorToResult() with its own
/// code.
void SetArvError(_GError **aError, const LxResult &aResult);

/// Held while a device is opened or an XML is parsed: the parser of libaravis has one state for the whole process.
std::mutex &ArvParserMutex();

}  // namespace LxDetail
