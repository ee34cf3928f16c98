#include "LxGUI/SerialTerminal/TranscriptFormatter.h"

#include <algorithm>

namespace
{

constexpr int HexColumn = 3 * TranscriptFormatter::LineBytes;
constexpr int Separator = 3;

void AppendHexByte(std::string &aText, uint8_t aByte)
{
    constexpr char digits[] = "0123456789abcdef";
    const char characters[] = {digits[aByte >> 4], digits[aByte & 0xF], ' '};
    aText.append(characters, sizeof(characters));
}

}  // namespace

TranscriptFormatter::TranscriptFormatter()
{
    mPending.reserve(Capacity);
}

void TranscriptFormatter::SetFormat(TranscriptFormat aFormat)
{
    mFormat = aFormat;
    Clear();
}

void TranscriptFormatter::Clear()
{
    mPending.clear();
    StartLine();
}

void TranscriptFormatter::StartLine()
{
    mLineCount = 0;
    mLineChanged = false;
    mEndsWithUnfinished = false;
}

void TranscriptFormatter::Add(const uint8_t *aBytes, uint32_t aCount)
{
    if (mFormat == TranscriptFormat::Ascii) {
        AddAscii(aBytes, aCount);
        return;
    }
    for (uint32_t i = 0; i < aCount && HasRoom(); ++i) {
        mFormat == TranscriptFormat::Hexadecimal ? AddHexadecimal(aBytes[i]) : AddHybrid(aBytes[i]);
    }
}

bool TranscriptFormatter::HasRoom() const
{
    // A line is begun only where all of it has room, so that nothing is missing within a line.
    return mLineCount > 0 || static_cast<qsizetype>(mPending.size()) + LineLength() <= Capacity;
}

qsizetype TranscriptFormatter::LineLength() const
{
    return mFormat == TranscriptFormat::Hybrid ? HybridLine : HexadecimalLine;
}

void TranscriptFormatter::AddAscii(const uint8_t *aBytes, uint32_t aCount)
{
    const size_t start = mPending.size();
    const size_t count = std::min<size_t>(aCount, static_cast<size_t>(Capacity) - start);
    mPending.append(reinterpret_cast<const char *>(aBytes), count);
    std::replace(mPending.begin() + static_cast<std::ptrdiff_t>(start), mPending.end(), '\0', ' ');
}

void TranscriptFormatter::AddHexadecimal(uint8_t aByte)
{
    AppendHexByte(mPending, aByte);
    if (++mLineCount == LineBytes) {
        mPending += "\r\n";
        mLineCount = 0;
    }
}

void TranscriptFormatter::AddHybrid(uint8_t aByte)
{
    mLine[mLineCount++] = aByte;
    mLineChanged = true;
    if (mLineCount == LineBytes) {
        AddHybridLine(mPending);
        mPending += "\r\n";
        mLineCount = 0;
        mLineChanged = false;
    }
}

void TranscriptFormatter::AddHybridLine(std::string &aText) const
{
    const size_t start = aText.size();
    for (int i = 0; i < mLineCount; ++i) {
        AppendHexByte(aText, mLine[i]);
    }
    aText.resize(start + HexColumn + Separator, ' ');
    for (int i = 0; i < mLineCount; ++i) {
        aText += mLine[i] >= 0x21 && mLine[i] <= 0x7E ? static_cast<char>(mLine[i]) : '.';
    }
    aText.resize(start + static_cast<size_t>(UnfinishedHybridLine), ' ');
}

qsizetype TranscriptFormatter::PendingCount() const
{
    return static_cast<qsizetype>(mPending.size()) + (mLineChanged ? 3 * mLineCount : 0);
}

TranscriptUpdate TranscriptFormatter::Take(QStringView aTranscript)
{
    TranscriptUpdate update;
    if (PendingCount() == 0) {
        return update;
    }
    const bool replaces = mEndsWithUnfinished;
    mEndsWithUnfinished = mLineChanged;
    if (mLineChanged) {
        AddHybridLine(mPending);
    }
    update.mText = QString::fromLatin1(mPending.data(), static_cast<qsizetype>(mPending.size()));
    update.mRemoveFront = CountToRemove(aTranscript, update.mText.size());
    if (replaces) {
        update.mRemoveBack = std::min(UnfinishedHybridLine, aTranscript.size() - update.mRemoveFront);
    }
    mPending.clear();
    mLineChanged = false;
    return update;
}

qsizetype TranscriptFormatter::CountToRemove(QStringView aTranscript, qsizetype aAdded) const
{
    const qsizetype excess = aTranscript.size() + aAdded - Capacity;
    if (excess <= 0) {
        return 0;
    }
    const qsizetype count = std::max(aAdded, excess);
    if (mFormat == TranscriptFormat::Ascii) {
        return std::min(count, aTranscript.size());
    }
    const qsizetype unit = LineLength();
    const qsizetype removed = std::min((count + unit - 1) / unit * unit, aTranscript.size());
    // Texts other than full lines move the lines off the units: what remains begins with a whole line nevertheless.
    const qsizetype end = aTranscript.indexOf(QLatin1Char('\n'), removed - 1);
    return end < 0 ? removed : end + 1;
}
