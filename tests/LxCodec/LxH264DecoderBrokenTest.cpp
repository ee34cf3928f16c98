// Streams that are cut, damaged or incomplete.

#include <random>

#include "H264DecoderTest.h"

using BrokenH264 = H264DecoderTest;

namespace
{

using Bytes = std::vector<uint8_t>;

Bytes Cut(const Bytes &aBytes, size_t aSize)
{
    return Bytes(aBytes.begin(), aBytes.begin() + static_cast<std::ptrdiff_t>(aSize));
}

/// The units of a NAL type range only.
Bytes Keep(const Bytes &aUnit, const std::function<bool(int)> &aIsKept)
{
    Bytes kept;
    for (size_t i = 0; i + 3 < aUnit.size(); ++i) {
        if (aUnit[i] == 0 && aUnit[i + 1] == 0 && aUnit[i + 2] == 1) {
            size_t end = i + 3;
            while (end < aUnit.size() && !(end + 2 < aUnit.size() && aUnit[end] == 0 && aUnit[end + 1] == 0 &&
                                           (aUnit[end + 2] == 1 || aUnit[end + 2] == 0)))
            {
                ++end;
            }
            if (aIsKept(aUnit[i + 3] & 0x1F)) {
                kept.insert(kept.end(), aUnit.begin() + static_cast<std::ptrdiff_t>(i),
                            aUnit.begin() + static_cast<std::ptrdiff_t>(end));
            }
        }
    }
    return kept;
}

}  // namespace

TEST_F(BrokenH264, AStreamIsShownFromItsNextKeyFrameOn)
{
    H264Units stream = MakeStream(25);
    stream.erase(stream.begin(), stream.begin() + 3);
    EXPECT_EQ(TakeAll(stream),
              (std::vector{-1, -1, -1, -1, -1, -1, -1, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23, 24}));
}

TEST_F(BrokenH264, AfterAMissingPictureTheNextKeyFrameIsWaitedFor)
{
    H264Units stream = MakeStream(15);
    stream.erase(stream.begin() + 4);
    EXPECT_EQ(TakeAll(stream), (std::vector{0, 1, 2, 3, -1, -1, -1, -1, -1, 10, 11, 12, 13, 14}));
}

TEST_F(BrokenH264, AMissingKeyFrameCostsItsWholeGroup)
{
    H264Units stream = MakeStream(25);
    stream.erase(stream.begin() + 10);
    std::vector<int> expected;
    for (int i = 0; i < 25; ++i) {
        if (i != 10) {
            expected.push_back(i < 10 || i >= 20 ? i : -1);
        }
    }
    EXPECT_EQ(TakeAll(stream), expected);
}

TEST_F(BrokenH264, APictureNobodyRefersToCostsNothingButItself)
{
    H264Settings settings;
    settings.mBPictures = 1;
    settings.mKeyInterval = 30;
    H264Units stream = MakeStream(20, settings);
    // the last of a unit's slices says by its header that it is not referred to
    const auto isDisposable = [](const Bytes &aUnit) {
        for (size_t i = 0; i + 3 < aUnit.size(); ++i) {
            if (aUnit[i] == 0 && aUnit[i + 1] == 0 && aUnit[i + 2] == 1 && (aUnit[i + 3] & 0x1F) == 1) {
                return (aUnit[i + 3] & 0x60) == 0;
            }
        }
        return false;
    };
    const auto found = std::find_if(stream.begin() + 5, stream.end(), isDisposable);
    ASSERT_NE(found, stream.end());
    stream.erase(found);
    const std::vector<int> pictures = TakeAll(stream);
    EXPECT_EQ(std::count(pictures.begin(), pictures.end(), -1), 0);
    EXPECT_GE(pictures.size(), 16u);
}

TEST_F(BrokenH264, ADamagedUnitIsNotShownAndNothingUntilTheNextKeyFrame)
{
    struct Case
    {
        const char *mName;
        LxResultCode mCode;
        std::function<Bytes(const Bytes &)> mDamage;
    };
    const Case cases[] = {
        {"cut in half", LxResultCode::Failed, [](const Bytes &aUnit) { return Cut(aUnit, aUnit.size() / 2); }},
        {"cut to the start of its slice", LxResultCode::Failed,
         [](const Bytes &aUnit) {
             const Bytes startCode = {0, 0, 1};
             const auto slice = std::find_end(aUnit.begin(), aUnit.end(), startCode.begin(), startCode.end());
             return Cut(aUnit, static_cast<size_t>(slice - aUnit.begin()) + 6);
         }},
        {"zeros", LxResultCode::InvalidDataFormat, [](const Bytes &aUnit) { return Bytes(aUnit.size(), 0); }},
        {"empty", LxResultCode::InvalidDataFormat, [](const Bytes &) { return Bytes(); }},
        {"garbage", LxResultCode::InvalidDataFormat, [](const Bytes &aUnit) { return Bytes(aUnit.size(), 0xA5); }},
        {"garbage behind a start code", LxResultCode::Failed,
         [](const Bytes &aUnit) {
             Bytes bytes(aUnit.size(), 0xFF);
             bytes[0] = bytes[1] = bytes[2] = 0;
             bytes[3] = 1;
             bytes[4] = 0x41;
             return bytes;
         }},
    };
    for (const Case &one : cases) {
        for (const size_t damaged : {size_t{4}, size_t{10}}) {
            H264Units stream = MakeStream(25);
            stream[damaged] = one.mDamage(stream[damaged]);
            mDecoder.Flush();
            const std::vector<int> pictures = TakeAll(stream);
            std::vector<int> expected;
            const int next = damaged == 4 ? 10 : 20;
            for (int i = 0; i < 25; ++i) {
                expected.push_back(i < static_cast<int>(damaged) || i >= next ? i : -1);
            }
            EXPECT_EQ(pictures, expected) << one.mName << ' ' << damaged;
            mDecoder.Flush();
            for (size_t i = 0; i < damaged; ++i) {
                ASSERT_TRUE(Process(stream[i]).IsOK());
            }
            EXPECT_EQ(Process(stream[damaged]), one.mCode) << one.mName << ' ' << damaged;
            EXPECT_EQ(Process(stream[damaged + 1]),
                      damaged + 1 == 10 || damaged + 1 == 20 ? LxResultCode::OK : LxResultCode::Failed)
                << one.mName;
        }
    }
}

TEST_F(BrokenH264, ParameterSetsMayComeAlone)
{
    H264Units stream = MakeStream(12);
    const auto isParameterSet = [](int aType) { return aType == 7 || aType == 8; };
    const Bytes sets = Keep(stream[0], isParameterSet);
    ASSERT_FALSE(sets.empty());
    stream[0] = Keep(stream[0], [&](int aType) { return !isParameterSet(aType); });
    LxH264Decoder without;
    const H264Unit unit(stream[0]);
    EXPECT_FALSE(without.Process(&unit).IsOK()) << "without them nothing can be decoded";
    std::vector<int> pictures;
    Take(sets, pictures);
    EXPECT_TRUE(pictures.empty()) << "no picture and no failure";
    EXPECT_EQ(TakeAll(stream), (std::vector{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11}));
}

TEST_F(BrokenH264, ParameterSetsOfAUnitThatIsLetPassAreKept)
{
    H264Units stream = MakeStream(12);
    const auto isParameterSet = [](int aType) { return aType == 7 || aType == 8; };
    Bytes second = Keep(stream[0], isParameterSet);
    second.insert(second.end(), stream[1].begin(), stream[1].end());
    const Bytes key = Keep(stream[10], [&](int aType) { return !isParameterSet(aType); });
    EXPECT_EQ(TakeAll({second, stream[2], key, stream[11]}), (std::vector{-1, -1, 10, 11}));
}

TEST_F(BrokenH264, UnitsWithoutAPictureAreNoFailure)
{
    const H264Units stream = MakeStream(3);
    std::vector<int> pictures;
    Take(stream[0], pictures);
    for (const Bytes &unit :
         {Bytes{0, 0, 0, 1, 9, 0xF0}, Bytes{0, 0, 1, 12, 0xFF, 0x80}, Bytes{0, 0, 1, 6, 5, 1, 9, 0x80}}) {
        EXPECT_TRUE(Process(unit).IsOK()) << int{unit[3]};
    }
    Take(stream[1], pictures);
    EXPECT_EQ(pictures, (std::vector{0, 1}));
}

TEST_F(BrokenH264, FlushForgetsPicturesAndWaitsForTheNextKeyFrame)
{
    const H264Units stream = MakeStream(13);
    mDecoder.Flush();
    ASSERT_TRUE(Process(stream[0]).IsOK());
    mDecoder.Flush();
    mDecoder.Flush();
    EXPECT_EQ(Retrieve(), std::nullopt);
    EXPECT_EQ(TakeAll({stream[1], stream[2], stream[10], stream[11], stream[12]}), (std::vector{-1, -1, 10, 11, 12}));
}

TEST_F(BrokenH264, AStreamThatIsRefreshedBitByBitStartsAtARecoveryPoint)
{
    H264Settings settings;
    settings.mOptions = "intra-refresh=1:keyint=8";
    H264Units stream = MakeStream(40, settings);
    stream.erase(stream.begin(), stream.begin() + 3);
    const std::vector<int> pictures = TakeAll(stream);
    ASSERT_FALSE(pictures.empty());
    EXPECT_EQ(pictures[0], -1);
    const auto first = std::find_if(pictures.begin(), pictures.end(), [](int aPicture) { return aPicture >= 0; });
    ASSERT_NE(first, pictures.end());
    EXPECT_EQ(std::count(first, pictures.end(), -1), 0) << "from there on all come";
    EXPECT_EQ(pictures.back(), 39 % 32);
}

TEST_F(BrokenH264, AnySizeThatAStreamClaimsIsSurvived)
{
    // a sequence parameter set of 16 x 16 macroblocks, by whole bytes: larger and larger claims
    const H264Units stream = MakeStream(2);
    for (size_t position = 4; position < 40 && position < stream[0].size(); ++position) {
        for (const uint8_t value : {0x00, 0x01, 0x7F, 0x80, 0xFF}) {
            Bytes first = stream[0];
            first[position] = value;
            LxH264Decoder decoder;
            const H264Unit unit(first);
            const H264Unit next(stream[1]);
            decoder.Process(&unit);
            decoder.Process(&next);
            LxImage image;
            while (decoder.Retrieve(&image).IsOK()) {
                ASSERT_EQ(image.GetDataSize(), uint64_t{image.GetWidth()} * image.GetHeight() * 4);
            }
        }
    }
}

TEST_F(BrokenH264, RandomDamageIsSurvivedAndTheNextStreamIsRight)
{
    const H264Units stream = MakeStream(10);
    std::mt19937 random(20240229);
    for (int round = 0; round < 300; ++round) {
        H264Units damaged = stream;
        for (unsigned change = random() % 12 + 1; change > 0; --change) {
            Bytes &unit = damaged[random() % damaged.size()];
            if (unit.empty()) {
                continue;
            }
            switch (random() % 5) {
                case 0:
                    unit.resize(random() % unit.size());
                    break;
                case 1:
                    unit.erase(unit.begin() + static_cast<std::ptrdiff_t>(random() % unit.size()));
                    break;
                case 2:
                    unit.insert(unit.begin() + static_cast<std::ptrdiff_t>(random() % unit.size()),
                                static_cast<uint8_t>(random()));
                    break;
                case 3: {
                    const Bytes &other = stream[random() % stream.size()];
                    unit.insert(unit.end(), other.begin(), other.end());
                    break;
                }
                default:
                    unit[random() % unit.size()] = static_cast<uint8_t>(random());
            }
        }
        for (const Bytes &unit : damaged) {
            Process(unit);
            while (mDecoder.Retrieve(&mImage).IsOK()) {
                ASSERT_EQ(mImage.GetDataSize(), uint64_t{mImage.GetWidth()} * mImage.GetHeight() * 4);
            }
        }
    }
    mDecoder.Flush();
    EXPECT_EQ(TakeAll(stream), (std::vector{0, 1, 2, 3, 4, 5, 6, 7, 8, 9}));
}
