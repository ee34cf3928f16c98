#pragma once

#include <QtCore/QString>

#include "ExitCode.h"
#include "LxBase/LxResult.h"

/// Why a camera could not be connected or streamed, in words, and what the user can do about it.
struct ConnectAdvice
{
    QString mHeadline;
    QString mWhatToDo;
    QString mDetails = QString();  ///< What the SDK says, where it adds nothing to the advice; empty otherwise.
};

ConnectAdvice AdviseOnConnect(const LxResult &aResult, const QString &aCamera);
/// The exit code for a camera that could not be connected.
ExitCode FailureOf(const LxResult &aResult);
ConnectAdvice AdviseOnStream(const LxResult &aResult, const QString &aCamera);
