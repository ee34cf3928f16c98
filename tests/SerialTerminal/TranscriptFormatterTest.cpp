#include "LxGUI/SerialTerminal/TranscriptFormatter.h"

#include <gtest/gtest.h>

#include <QtCore/QStringList>
#include <random>
#include <string>

namespace
{

constexpr TranscriptFormat Formats[] = {TranscriptFormat::Ascii, TranscriptFormat::Hexadecimal,
                                        TranscriptFormat::Hybrid};

/// How a transcript of these bytes looks when nothing was cut off, in the most direct way.
std::string Reference(TranscriptFormat aFormat, const std::string &aBytes)
{
    std::string text;
    std::string column;
    for (size_t i = 0; i < aBytes.size(); ++i) {
        const auto byte = static_cast<unsigned char>(aBytes[i]);
        if (aFormat == TranscriptFormat::Ascii) {
            text += byte == 0 ? ' ' : aBytes[i];
            continue;
        }
        char digits[8];
        std::snprintf(digits, sizeof(digits), "%02x ", byte);
        text += digits;
        column += byte > 0x20 && byte < 0x7F ? aBytes[i] : '.';
        const bool full = column.size() == 16;
        if (aFormat == TranscriptFormat::Hybrid && (full || i + 1 == aBytes.size())) {
            text += std::string(3 * (16 - column.size()), ' ') + "   " + column + std::string(16 - column.size(), ' ');
        }
        if (full) {
            text += "\r\n";
            column.clear();
        }
    }
    return text;
}

/// A transcript made of the updates of a formatter.
struct Transcript
{
    explicit Transcript(TranscriptFormat aFormat) { mFormatter.SetFormat(aFormat); }

    void Add(const std::string &aBytes)
    {
        mFormatter.Add(reinterpret_cast<const uint8_t *>(aBytes.data()), static_cast<uint32_t>(aBytes.size()));
    }
    TranscriptUpdate Show()
    {
        const TranscriptUpdate update = mFormatter.Take(mText);
        EXPECT_GE(update.mRemoveFront, 0);
        EXPECT_GE(update.mRemoveBack, 0);
        EXPECT_LE(update.mRemoveFront + update.mRemoveBack, mText.size());
        EXPECT_LE(update.mText.size(), TranscriptFormatter::Capacity);
        EXPECT_EQ(mFormatter.PendingCount(), 0);
        mText.remove(0, update.mRemoveFront);
        mText.chop(update.mRemoveBack);
        mText += update.mText;
        return update;
    }
    void Insert(const char *aText)
    {
        Show();
        mFormatter.StartLine();
        mText += QLatin1String(aText);
    }
    std::string Text() const { return mText.toLatin1().toStdString(); }

    TranscriptFormatter mFormatter;
    QString mText;
};

std::string RandomBytes(std::mt19937 &aRandom, size_t aCount)
{
    std::string bytes(aCount, '\0');
    for (char &byte : bytes) {
        byte = static_cast<char>(aRandom());
    }
    return bytes;
}

std::string AllBytes()
{
    std::string bytes;
    for (int i = 0; i < 256; ++i) {
        bytes += static_cast<char>(i);
    }
    return bytes;
}

bool EndsWith(const std::string &aText, const std::string &aEnd)
{
    return aText.size() >= aEnd.size() && aText.compare(aText.size() - aEnd.size(), aEnd.size(), aEnd) == 0;
}

}  // namespace

TEST(TranscriptFormatter, ShowsEveryByteOfEveryFormat)
{
    for (const TranscriptFormat format : Formats) {
        Transcript transcript(format);
        transcript.Add(AllBytes());
        transcript.Show();
        EXPECT_EQ(transcript.Text(), Reference(format, AllBytes()));
    }
}

TEST(TranscriptFormatter, AsciiKeepsControlCharactersAndShowsZeroAsABlank)
{
    Transcript transcript(TranscriptFormat::Ascii);
    transcript.Add(std::string("a\0b\r\n\t\x01\xA0\xFF", 9));
    transcript.Show();
    EXPECT_EQ(transcript.Text(), "a b\r\n\t\x01\xA0\xFF");
}

TEST(TranscriptFormatter, HexadecimalLinesHaveSixteenBytesAcrossShows)
{
    Transcript transcript(TranscriptFormat::Hexadecimal);
    for (const char *part : {"0123456", "789abcde", "f", "XY"}) {
        transcript.Add(part);
        transcript.Show();
    }
    EXPECT_EQ(transcript.Text(), "30 31 32 33 34 35 36 37 38 39 61 62 63 64 65 66 \r\n58 59 ");
}

TEST(TranscriptFormatter, HybridShowsOtherBytesAsPointsAndPadsTheLine)
{
    Transcript transcript(TranscriptFormat::Hybrid);
    transcript.Add("\x41\x20\x0A");
    transcript.Show();
    EXPECT_EQ(transcript.Text(), "41 20 0a " + std::string(39, ' ') + "   A.." + std::string(13, ' '));
    EXPECT_EQ(transcript.Text().size(), 67u);
}

TEST(TranscriptFormatter, AFullHybridLineHas69Characters)
{
    Transcript transcript(TranscriptFormat::Hybrid);
    transcript.Add("ABCDEFGHIJKLMNOP");
    transcript.Show();
    EXPECT_EQ(transcript.Text(), "41 42 43 44 45 46 47 48 49 4a 4b 4c 4d 4e 4f 50    ABCDEFGHIJKLMNOP\r\n");
    EXPECT_EQ(transcript.Text().size(), 69u);
}

TEST(TranscriptFormatter, AnUnfinishedHybridLineIsReplacedByTheWholeLine)
{
    Transcript transcript(TranscriptFormat::Hybrid);
    transcript.Add("ABCD");
    TranscriptUpdate update = transcript.Show();
    EXPECT_EQ(update.mRemoveBack, 0);
    EXPECT_EQ(transcript.Text(), Reference(TranscriptFormat::Hybrid, "ABCD"));
    transcript.Add("EFGHIJKLMNOPQRST");
    update = transcript.Show();
    EXPECT_EQ(update.mRemoveBack, 67);
    EXPECT_EQ(transcript.Text(), Reference(TranscriptFormat::Hybrid, "ABCDEFGHIJKLMNOPQRST"));
    transcript.Add("UVWXYZ123456");
    update = transcript.Show();
    EXPECT_EQ(update.mRemoveBack, 67);
    transcript.Add("next");
    update = transcript.Show();
    EXPECT_EQ(update.mRemoveBack, 0) << "the transcript ended with a full line";
    EXPECT_EQ(transcript.Text(), Reference(TranscriptFormat::Hybrid, "ABCDEFGHIJKLMNOPQRSTUVWXYZ123456next"));
}

TEST(TranscriptFormatter, FullLinesThatWaitAreNotLost)
{
    Transcript transcript(TranscriptFormat::Hybrid);
    transcript.Add("01234567890123456789");
    transcript.Show();
    EXPECT_EQ(transcript.Text(), Reference(TranscriptFormat::Hybrid, "01234567890123456789"));
}

TEST(TranscriptFormatter, CountsWhatWaits)
{
    Transcript ascii(TranscriptFormat::Ascii);
    EXPECT_EQ(ascii.mFormatter.PendingCount(), 0);
    ascii.Add("abc");
    EXPECT_EQ(ascii.mFormatter.PendingCount(), 3);
    Transcript hexadecimal(TranscriptFormat::Hexadecimal);
    hexadecimal.Add("0123456789abcdefX");
    EXPECT_EQ(hexadecimal.mFormatter.PendingCount(), 53);
    Transcript hybrid(TranscriptFormat::Hybrid);
    hybrid.Add("ABCDEF");
    EXPECT_EQ(hybrid.mFormatter.PendingCount(), 18);
    hybrid.Show();
    EXPECT_EQ(hybrid.mFormatter.PendingCount(), 0);
    EXPECT_TRUE(hybrid.Show().mText.isEmpty()) << "nothing is shown twice";
    hybrid.Add("G");
    EXPECT_EQ(hybrid.mFormatter.PendingCount(), 21);
    hybrid.Add("HIJKLMNOP");
    EXPECT_EQ(hybrid.mFormatter.PendingCount(), 69);
}

TEST(TranscriptFormatter, AgreesWithTheReferenceOnRandomStreamsInRandomChunks)
{
    for (const TranscriptFormat format : Formats) {
        for (unsigned seed = 0; seed < 200; ++seed) {
            std::mt19937 random(seed);
            Transcript transcript(format);
            std::string bytes;
            for (int step = 0; step < 40; ++step) {
                const std::string chunk = RandomBytes(random, random() % 40);
                transcript.Add(chunk);
                bytes += chunk;
                if (random() % 3 == 0) {
                    transcript.Show();
                    ASSERT_EQ(transcript.Text(), Reference(format, bytes)) << "seed " << seed << ", step " << step;
                }
            }
        }
    }
}

TEST(TranscriptFormatter, TrimsWholeUnitsFromTheStartOfRandomStreams)
{
    for (const TranscriptFormat format : Formats) {
        const size_t unit = format == TranscriptFormat::Ascii ? 1 : format == TranscriptFormat::Hybrid ? 69 : 50;
        for (unsigned seed = 0; seed < 4; ++seed) {
            std::mt19937 random(seed);
            const size_t largest = seed == 0 ? 300 : 64u << seed;
            Transcript transcript(format);
            std::string bytes;
            size_t trims = 0;
            while (trims < 20) {
                const std::string chunk = RandomBytes(random, 1 + random() % largest);
                transcript.Add(chunk);
                bytes += chunk;
                if (random() % 2 == 0) {
                    continue;
                }
                const qsizetype before = transcript.mText.size();
                const TranscriptUpdate update = transcript.Show();
                const std::string all = Reference(format, bytes);
                const auto added = update.mText.size();
                if (before + added <= 32767) {
                    ASSERT_EQ(update.mRemoveFront, 0);
                }
                else {
                    const auto count = static_cast<size_t>(update.mRemoveFront);
                    ASSERT_EQ(count % unit, 0u);
                    ASSERT_GE(count, static_cast<size_t>(added)) << "not below what is added";
                    ASSERT_LT(count, static_cast<size_t>(added) + unit) << "the smallest multiple";
                    ++trims;
                }
                ASSERT_LE(transcript.mText.size(), 32767);
                ASSERT_TRUE(EndsWith(all, transcript.Text())) << "seed " << seed;
                ASSERT_EQ((all.size() - transcript.Text().size()) % unit, 0u);
            }
        }
    }
}

TEST(TranscriptFormatter, TheTranscriptIsFilledToItsLastCharacter)
{
    Transcript transcript(TranscriptFormat::Ascii);
    transcript.Add(std::string(32766, 'a'));
    transcript.Show();
    transcript.Add("b");
    EXPECT_EQ(transcript.Show().mRemoveFront, 0);
    EXPECT_EQ(transcript.mText.size(), 32767);
    transcript.Add("c");
    EXPECT_EQ(transcript.Show().mRemoveFront, 1);
    EXPECT_EQ(transcript.mText.size(), 32767);
    EXPECT_TRUE(EndsWith(transcript.Text(), "abc"));
}

TEST(TranscriptFormatter, APortionLargerThanTheTranscriptReplacesIt)
{
    for (const TranscriptFormat format : Formats) {
        Transcript transcript(format);
        transcript.Add("a few bytes");
        transcript.Show();
        transcript.Add(std::string(40000, 'x'));
        transcript.Show();
        EXPECT_LE(transcript.mText.size(), 32767);
        transcript.Add("y");
        transcript.Show();
        EXPECT_LE(transcript.mText.size(), 32767);
        EXPECT_NE(transcript.Text().find(format == TranscriptFormat::Ascii ? "y" : "79 "), std::string::npos);
    }
}

TEST(TranscriptFormatter, DropsWhatDoesNotFitIntoAPortion)
{
    const std::string bytes = AllBytes() + AllBytes();
    for (const TranscriptFormat format : Formats) {
        Transcript transcript(format);
        std::string all;
        for (int i = 0; i < 200; ++i) {
            transcript.Add(bytes);
            all += bytes;
        }
        EXPECT_LE(transcript.mFormatter.PendingCount(), 32767);
        EXPECT_GT(transcript.mFormatter.PendingCount(), 32767 - 70);
        transcript.Show();
        const std::string reference = Reference(format, all);
        EXPECT_EQ(transcript.Text(), reference.substr(0, transcript.Text().size())) << "what is kept has no gaps";
    }
}

TEST(TranscriptFormatter, LinesAreWholeAfterAnOverflow)
{
    Transcript hybrid(TranscriptFormat::Hybrid);
    hybrid.Add("ABC");
    hybrid.Show();
    hybrid.Add(std::string(40001, 'x'));
    hybrid.Show();
    ASSERT_TRUE(EndsWith(hybrid.Text(), "xxxxxxxxxxxxxxxx\r\n"));
    hybrid.Add("next");
    hybrid.Show();
    EXPECT_TRUE(EndsWith(hybrid.Text(), "\r\n" + Reference(TranscriptFormat::Hybrid, "next")));

    Transcript hexadecimal(TranscriptFormat::Hexadecimal);
    hexadecimal.Add(std::string(40001, 'x'));
    hexadecimal.Show();
    hexadecimal.Add(std::string(32, 'y'));
    hexadecimal.Show();
    for (const QString &line : hexadecimal.mText.split(QStringLiteral("\r\n"))) {
        EXPECT_LE(line.size(), 48);
    }
}

TEST(TranscriptFormatter, TextsBetweenBytesAreNeverReplaced)
{
    Transcript transcript(TranscriptFormat::Hybrid);
    transcript.Add("ABC");
    transcript.Insert("\n0.5s\n");
    transcript.Add("DEF");
    transcript.Show();
    transcript.Add("GHI");
    transcript.Show();
    EXPECT_EQ(transcript.Text(),
              Reference(TranscriptFormat::Hybrid, "ABC") + "\n0.5s\n" + Reference(TranscriptFormat::Hybrid, "DEFGHI"));
}

TEST(TranscriptFormatter, HexadecimalBeginsALineAfterAText)
{
    Transcript transcript(TranscriptFormat::Hexadecimal);
    transcript.Add("ABC");
    transcript.Insert("\n0.5s\n");
    transcript.Add("0123456789abcdefX");
    transcript.Show();
    EXPECT_EQ(transcript.Text(), "41 42 43 \n0.5s\n" + Reference(TranscriptFormat::Hexadecimal, "0123456789abcdefX"));
}

TEST(TranscriptFormatter, TextsOfOtherLengthsAreTrimmedToWholeLines)
{
    for (const TranscriptFormat format : {TranscriptFormat::Hexadecimal, TranscriptFormat::Hybrid}) {
        Transcript transcript(format);
        for (int i = 0; i < 300; ++i) {
            transcript.Add(std::string(static_cast<size_t>(1 + i % 50), 'x'));
            transcript.Insert("\nreport of a file\n");
        }
        EXPECT_LE(transcript.mText.size(), 32767 + 18);
        const std::string first = transcript.Text().substr(0, transcript.Text().find('\n'));
        EXPECT_TRUE(first.empty() || first[0] == '7' || first[0] == 'r') << first;
        transcript.Add("y");
        transcript.Show();
        EXPECT_LE(transcript.mText.size(), 32767) << "also when texts made it longer";
    }
}

TEST(TranscriptFormatter, ClearingForgetsWhatWaitsAndTheLine)
{
    for (const TranscriptFormat format : Formats) {
        for (const bool shown : {false, true}) {
            Transcript transcript(format);
            transcript.Add("ABC");
            if (shown) {
                transcript.Show();
            }
            transcript.mFormatter.Clear();
            transcript.mText.clear();
            EXPECT_EQ(transcript.mFormatter.PendingCount(), 0);
            transcript.Add("DE");
            EXPECT_EQ(transcript.Show().mRemoveBack, 0);
            EXPECT_EQ(transcript.Text(), Reference(format, "DE"));
        }
    }
}

TEST(TranscriptFormatter, AnUnfinishedLineThatWasTrimmedAwayIsNotReplaced)
{
    Transcript transcript(TranscriptFormat::Hybrid);
    transcript.Add("ABC");
    transcript.Show();
    ASSERT_EQ(transcript.mText.size(), 67);
    transcript.Add(std::string(13 + 16 * 474, 'x'));  // 475 full lines would be 32775 characters
    const TranscriptUpdate update = transcript.Show();
    EXPECT_EQ(update.mRemoveFront, 67) << "the whole transcript";
    EXPECT_EQ(update.mRemoveBack, 0);
    EXPECT_EQ(transcript.Text(), update.mText.toStdString());
    EXPECT_LE(transcript.mText.size(), 32767);
}
