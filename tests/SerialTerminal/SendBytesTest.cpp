#include "LxGUI/SerialTerminal/SendBytes.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "LxGUI/SerialTerminal/LoopbackRecord.h"

namespace
{

struct HexCase
{
    const char *mText;
    bool mValid;
    std::string mBytes = {};
};

std::string Bytes(std::initializer_list<int> aBytes)
{
    return std::string(aBytes.begin(), aBytes.end());
}

const uint8_t *Data(const std::string &aBytes)
{
    return reinterpret_cast<const uint8_t *>(aBytes.data());
}

/// What a record must answer, computed on the whole streams.
struct LoopbackReference
{
    void Compare(const std::string &aReceived)
    {
        for (const char byte : aReceived) {
            if (mNext == mSent.size()) {
                return;
            }
            const size_t found = mSent.find(byte, mNext);
            mMatched += found == std::string::npos ? 0 : 1;
            mNext = found == std::string::npos ? mSent.size() : found + 1;
        }
    }

    std::string mSent;
    size_t mNext = 0;
    uint64_t mMatched = 0;
};

}  // namespace

TEST(HexBytes, AreReadByTheTable)
{
    const HexCase cases[] = {
        {"", true},
        {"03 64 70 6D AB 43 72 01 02", true, Bytes({3, 0x64, 0x70, 0x6D, 0xAB, 0x43, 0x72, 1, 2})},
        {"0", true, Bytes({0})},
        {"ff Ff fF", true, Bytes({255, 255, 255})},
        {"0FF", true, Bytes({255})},
        {"0000000000000041", true, Bytes({0x41})},
        {"100", false},
        {"00 100", false},
        {"03  64", false},
        {" 03", false},
        {"03 ", true, Bytes({3})},
        {"03  ", false},
        {" ", false},
        {"G0", false},
        {"03,64", false},
        {"0x1F", true, Bytes({0x1F})},
        {"0X1F", true, Bytes({0x1F})},
        {"+A", true, Bytes({0xA})},
        {"-1", false},
        {"\t1F", true, Bytes({0x1F})},
        {"03\t64", false},
        {"\u00A003", false},
        {"\u0663", false},
        {"\uFF11", false},
        {"\U0001F600", false},
        {"FFFFFFFFFFFFFFFFFFFF", false},
        {"100000041", false},
        {"1.0", false},
        {"1e", true, Bytes({0x1E})},
    };
    for (const HexCase &entry : cases) {
        QByteArray bytes("before");
        EXPECT_EQ(AppendHexBytes(QString::fromUtf8(entry.mText), bytes), entry.mValid) << '"' << entry.mText << '"';
        EXPECT_EQ(bytes.toStdString(), "before" + entry.mBytes) << '"' << entry.mText << '"';
    }
}

TEST(HexBytes, MayBeMany)
{
    QString text;
    std::string expected;
    for (int i = 0; i < 100000; ++i) {
        text += QString::number(i % 256, 16) + ' ';
        expected += static_cast<char>(i % 256);
    }
    QByteArray bytes;
    EXPECT_TRUE(AppendHexBytes(text, bytes));
    EXPECT_EQ(bytes.toStdString(), expected);
}

TEST(BytesOfText, AreTheLowCharacters)
{
    EXPECT_EQ(BytesOfText(QString()), QByteArray());
    EXPECT_EQ(BytesOfText(QStringLiteral("A z")), QByteArray("A z"));
    EXPECT_EQ(BytesOfText(QString::fromUtf8("\u00E4\u00FF")), QByteArray("\xE4\xFF"));
    EXPECT_EQ(BytesOfText(QString::fromUtf8("a\u0100b\u20ACc")), QByteArray("a\0b\0c", 5));
    EXPECT_EQ(BytesOfText(QString::fromUtf8("\U0001F600")), QByteArray(2, '\0'));  // two UTF-16 units
}

TEST(LoopbackRecord, CountsWhatComesBack)
{
    LoopbackRecord record;
    const std::string bytes = "loopback";
    record.Expect(Data(bytes), 8);
    record.Compare(Data(bytes), 3);
    record.Compare(Data(bytes) + 3, 5);
    EXPECT_EQ(record.GetCounts().mQueued, 8u);
    EXPECT_EQ(record.GetCounts().mMatched, 8u);
}

TEST(LoopbackRecord, ALostByteIsSkipped)
{
    LoopbackRecord record;
    const std::string sent = "abcdef";
    const std::string received = "abdef";
    record.Expect(Data(sent), 6);
    record.Compare(Data(received), 5);
    EXPECT_EQ(record.GetCounts().mQueued, 6u);
    EXPECT_EQ(record.GetCounts().mMatched, 5u);
}

TEST(LoopbackRecord, AnUnknownByteUsesUpWhatIsExpected)
{
    LoopbackRecord record;
    const std::string sent = "abc";
    const std::string received = "xabc";
    record.Expect(Data(sent), 3);
    record.Compare(Data(received), 4);
    EXPECT_EQ(record.GetCounts().mMatched, 0u);
}

TEST(LoopbackRecord, BytesThatNobodySentDoNotCount)
{
    LoopbackRecord record;
    const std::string bytes = "abc";
    record.Compare(Data(bytes), 3);
    EXPECT_EQ(record.GetCounts().mQueued, 0u);
    EXPECT_EQ(record.GetCounts().mMatched, 0u);
}

TEST(LoopbackRecord, StartsAnewAfterAReset)
{
    LoopbackRecord record;
    const std::string bytes = "abc";
    record.Expect(Data(bytes), 3);
    record.Compare(Data(bytes), 1);
    record.Reset();
    EXPECT_EQ(record.GetCounts().mQueued, 0u);
    EXPECT_EQ(record.GetCounts().mMatched, 0u);
    record.Compare(Data(bytes), 3);
    EXPECT_EQ(record.GetCounts().mMatched, 0u);
    record.Expect(Data(bytes), 3);
    record.Compare(Data(bytes), 3);
    EXPECT_EQ(record.GetCounts().mMatched, 3u);
}

TEST(LoopbackRecord, AgreesWithTheReferenceOnRandomStreams)
{
    for (unsigned seed = 0; seed < 300; ++seed) {
        std::mt19937 random(seed);
        const auto below = [&random](unsigned aLimit) { return static_cast<unsigned>(random() % aLimit); };
        LoopbackRecord record;
        LoopbackReference reference;
        const unsigned letters = 1 + below(6);
        const unsigned noise = 1 + below(20);
        size_t returned = 0;
        for (int step = 0; step < 50; ++step) {
            std::string sent(below(40), '\0');
            for (char &byte : sent) {
                byte = static_cast<char>('a' + below(letters));
            }
            reference.mSent += sent;
            record.Expect(Data(sent), static_cast<uint32_t>(sent.size()));
            std::string received;
            for (size_t count = below(60); count > 0 && returned < reference.mSent.size(); --count, ++returned) {
                switch (below(noise)) {
                    case 0:
                        break;  // lost
                    case 1:
                        received += static_cast<char>('a' + below(letters + 1));
                        break;
                    default:
                        received += reference.mSent[returned];
                }
            }
            reference.Compare(received);
            record.Compare(Data(received), static_cast<uint32_t>(received.size()));
            ASSERT_EQ(record.GetCounts().mMatched, reference.mMatched) << "seed " << seed << ", step " << step;
            ASSERT_EQ(record.GetCounts().mQueued, reference.mSent.size());
        }
    }
}
