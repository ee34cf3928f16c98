#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <vector>

namespace LxEmulator
{

enum class AccessKind
{
    Read,
    Write,
    Both,
};

/// Accesses that touch the range are answered with a status and not carried out.
struct StatusRule
{
    uint16_t mStatus = 0;
    uint64_t mAddress = 0;
    uint64_t mLength = 0;
    AccessKind mAccess = AccessKind::Both;
    uint32_t mCount = 0;  ///< how many times; 0: always
};

/// Accesses that touch the range are announced as pending and answered later.
struct PendingRule
{
    uint64_t mAddress = 0;
    uint64_t mLength = 0;
    std::chrono::milliseconds mTime{0};
};

/// How an acknowledge is damaged.
enum class Corruption
{
    None,
    ShortHeader,   ///< cut inside the header
    WrongId,       ///< names another command
    WrongCode,     ///< is the acknowledge of another command
    LongLength,    ///< the header claims more bytes than there are
    ShortLength,   ///< the header claims no bytes
    Garbage,       ///< bytes without meaning
    Unterminated,  ///< texts without an end (discovery)
};

/// What goes wrong on the control channel.
struct ControlFaults
{
    bool mFrozen = false;                 ///< every command is ignored, as if the link were cut
    uint32_t mIgnoreCommands = 0;         ///< so many commands are lost on their way here
    uint32_t mLoseAnswers = 0;            ///< so many commands are carried out but not answered
    std::chrono::milliseconds mDelay{0};  ///< every answer is late by this much
    std::vector<StatusRule> mStatuses;    ///< the first that matches wins
    std::vector<PendingRule> mPending;    ///< the first that matches wins
    Corruption mCorruption = Corruption::None;
    uint32_t mCorruptAnswers = 0;  ///< so many answers are damaged
};

}  // namespace LxEmulator
