#pragma once

#include <QtCore/QString>
#include <cstdint>
#include <string>

/// How the bytes of a port are shown.
enum class TranscriptFormat
{
    Ascii,        ///< A character for each byte.
    Hexadecimal,  ///< Lines of 16 numbers.
    Hybrid,       ///< Lines of 16 numbers and the characters that they stand for.
};

/// How a transcript changes: its first and its last characters go, then text comes at its end.
struct TranscriptUpdate
{
    qsizetype mRemoveFront = 0;
    qsizetype mRemoveBack = 0;
    QString mText;
};

/// Turns bytes into the text of a transcript, which is handed out in portions. Not thread-safe.
///
/// The transcript and a portion have at most Capacity characters each. What does not fit into a portion is dropped;
/// what does not fit into the transcript takes its oldest lines away. A line of the hybrid format that is not complete
/// is handed out nevertheless, and the next portion then replaces it.
class TranscriptFormatter
{
public:
    static constexpr qsizetype Capacity = 32767;
    /// The bytes of a line in the hexadecimal and the hybrid format.
    static constexpr int LineBytes = 16;
    /// The characters of such lines, CR and LF included.
    static constexpr qsizetype HexadecimalLine = 50;
    static constexpr qsizetype HybridLine = 69;
    /// A line of the hybrid format that is not complete has no CR and LF.
    static constexpr qsizetype UnfinishedHybridLine = HybridLine - 2;

    TranscriptFormatter();

    /// Also clears.
    void SetFormat(TranscriptFormat aFormat);
    /// Forgets what has not been handed out; the next text begins a transcript.
    void Clear();
    void Add(const uint8_t *aBytes, uint32_t aCount);
    /// The characters that wait to be handed out.
    qsizetype PendingCount() const;
    /// Hands out what waits.
    /// @param aTranscript what the updates up to now made, and other texts that were put to its end after StartLine().
    TranscriptUpdate Take(QStringView aTranscript);
    /// Another text follows what was handed out: the next byte begins a line.
    void StartLine();

private:
    bool HasRoom() const;
    qsizetype LineLength() const;
    void AddAscii(const uint8_t *aBytes, uint32_t aCount);
    void AddHexadecimal(uint8_t aByte);
    void AddHybrid(uint8_t aByte);
    void AddHybridLine(std::string &aText) const;
    qsizetype CountToRemove(QStringView aTranscript, qsizetype aAdded) const;

    TranscriptFormat mFormat = TranscriptFormat::Ascii;
    std::string mPending;  // Latin-1; without the unfinished hybrid line
    uint8_t mLine[LineBytes] = {};
    int mLineCount = 0;                // bytes of the unfinished line
    bool mLineChanged = false;         // whether the unfinished hybrid line has bytes that were not handed out
    bool mEndsWithUnfinished = false;  // whether what was handed out ends with an unfinished hybrid line
};
