#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

#include "ExitCode.h"

/// What the viewer was asked to do.
struct CommandLine
{
    bool mSimulate = false;
    bool mSelfCheck = false;
    QString mCamera;         ///< An address; empty to open the finder.
    QString mPictures;       ///< The folder of the tour; empty for no tour.
    QString mLogFile;        ///< "-" for the error output; empty for no log.
    QStringList mLogFilter;  ///< Short names of log categories; empty for all.

    // What the arguments themselves lead to.
    bool mEnds = false;  ///< The viewer says mText and ends with mExitCode.
    ExitCode mExitCode = ExitCode::OK;
    QString
        mText;  ///< Ends with a line break. For the output, or with an exit code other than OK for the error output.

    /// @param aArguments with the name of the program first. There must be a QCoreApplication.
    static CommandLine Parse(const QStringList &aArguments);
    /// Whether arguments ask for something that needs no display. Before there is a QCoreApplication.
    static bool NeedsNoDisplay(int aCount, char **aArguments);
};
