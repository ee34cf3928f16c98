#pragma once

/// How the viewer ends; --help and docs/viewer.md say so too.
enum class ExitCode : int
{
    OK = 0,
    Failed = 1,         ///< Something that has no code of its own.
    BadArguments = 2,   ///< The command line is not valid; nothing was done.
    NotFound = 3,       ///< The camera was not found.
    ConnectFailed = 4,  ///< The camera was found and could not be connected.
    NoPictures = 5,     ///< The camera was connected and sent no pictures.
    CannotWrite = 6,    ///< A file or a folder could not be written.
    NoDisplay = 7,      ///< There is no display to show windows on.
};
