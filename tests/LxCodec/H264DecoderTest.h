#pragma once

#include <gtest/gtest.h>

#include <optional>

#include "H264Stream.h"
#include "LxCodec/LxH264Decoder.h"

/// Decodes streams whose pictures say by their grey which ones they are.
class H264DecoderTest : public testing::Test
{
protected:
    static constexpr int kStep = 6;  // of grey from one picture to the next

    void SetUp() override { LX_NEEDS_H264_ENCODER(); }

    static H264Units MakeStream(int aCount, H264Settings aSettings = H264Settings())
    {
        aSettings.mRange = AVCOL_RANGE_JPEG;
        H264Units units = EncodeH264(aSettings, aCount, [](int aPicture, int aPlane, int aX, int aY) {
            // a fine pattern, so that a picture that is not redrawn as a whole is not taken for another
            return aPlane == 0 ? 20 + kStep * (aPicture % 32) + ((aX / 8 + aY / 8) % 2) : 128;
        });
        EXPECT_EQ(units.size(), static_cast<size_t>(aCount));
        return units;
    }

    LxResult Process(const std::vector<uint8_t> &aUnit)
    {
        const H264Unit unit(aUnit);
        return mDecoder.Process(&unit);
    }

    /// The number (of 32) of the next picture, which must be whole: every pixel of it is read.
    std::optional<int> Retrieve()
    {
        if (!mDecoder.Retrieve(&mImage).IsOK()) {
            return std::nullopt;
        }
        const auto *pixel = static_cast<const uint8_t *>(mImage.GetDataPointer());
        const int picture = (pixel[0] - 20 + kStep / 2) / kStep;
        for (uint64_t i = 0; i < mImage.GetDataSize(); i += 4) {
            const bool same = (pixel[i] - 20 + kStep / 2) / kStep == picture && pixel[i + 1] == pixel[i] &&
                              pixel[i + 2] == pixel[i] && pixel[i + 3] == 255;
            if (!same) {
                ADD_FAILURE() << "picture " << picture << " is not whole at byte " << i;
                break;
            }
        }
        return picture;
    }

    /// Every picture that a unit makes, -1 for a unit that fails.
    void Take(const std::vector<uint8_t> &aUnit, std::vector<int> &aPictures)
    {
        const LxResult result = Process(aUnit);
        if (!result.IsOK()) {
            EXPECT_FALSE(result.GetDescription().IsEmpty());
            aPictures.push_back(-1);
        }
        while (const auto picture = Retrieve()) {
            aPictures.push_back(*picture);
        }
    }

    std::vector<int> TakeAll(const H264Units &aUnits)
    {
        std::vector<int> pictures;
        for (const auto &unit : aUnits) {
            Take(unit, pictures);
        }
        return pictures;
    }

    LxH264Decoder mDecoder;
    LxImage mImage;
};
