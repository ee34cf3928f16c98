#include "Backends/Simulation/PatternGenerator.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numbers>

namespace LxDetail
{

namespace
{

constexpr uint32_t ScenePeriod = 256;     // pixels after which the scene repeats itself, in both directions
constexpr uint32_t SceneStep = 4;         // pixels that the scene moves from picture to picture
constexpr uint32_t VerticalLevels = 256;  // grey levels of the vertical ramp

uint16_t ToWord(double aValue)
{
    return static_cast<uint16_t>(std::clamp(aValue, 0.0, 1.0) * 65535.0 + 0.5);
}

Color16 Grey(double aValue)
{
    const uint16_t value = ToWord(aValue);
    return {value, value, value};
}

/// Smooth hills that repeat every period, with a grid to show motion and sharpness.
Color16 MakeSceneColor(uint32_t aX, uint32_t aY)
{
    const double x = 2.0 * std::numbers::pi * aX / ScenePeriod;
    const double y = 2.0 * std::numbers::pi * aY / ScenePeriod;
    const bool grid = aX % 64 < 2 || aY % 64 < 2;
    const auto hill = [grid](double aValue) { return ToWord((0.30 + 0.18 * aValue) * (grid ? 0.6 : 1.0)); };
    return {hill(std::sin(x) + 0.4 * std::cos(y)), hill(std::sin(y + 2.0) + 0.4 * std::sin(x + y)),
            hill(std::cos(x - y) + 0.4 * std::sin(2.0 * y))};
}

/// One period of the scene, line by line.
const std::vector<Color16> &GetScene()
{
    static const std::vector<Color16> scene = [] {
        std::vector<Color16> colors;
        colors.reserve(static_cast<size_t>(ScenePeriod) * ScenePeriod);
        for (uint32_t y = 0; y < ScenePeriod; ++y) {
            for (uint32_t x = 0; x < ScenePeriod; ++x) {
                colors.push_back(MakeSceneColor(x, y));
            }
        }
        return colors;
    }();
    return scene;
}

uint32_t GetBallRadius(const PatternSettings &aSettings)
{
    return std::min(aSettings.mWidth, aSettings.mHeight) / 12;
}

/// A point that runs to and fro between 0 and aRange.
uint32_t Bounce(uint64_t aPosition, uint32_t aRange)
{
    if (aRange == 0) {
        return 0;
    }
    const auto position = static_cast<uint32_t>(aPosition % (2ull * aRange));
    return position < aRange ? position : 2 * aRange - position;
}

}  // namespace

void PatternGenerator::SetSettings(const PatternSettings &aSettings)
{
    if (mEncoder == nullptr || !(aSettings == mSettings)) {
        mSettings = aSettings;
        mStale = true;
    }
}

uint32_t PatternGenerator::ToBytes(uint32_t aPixels) const
{
    return aPixels / mEncoder->GetGroup() * mEncoder->GetGroupBytes();
}

Color16 PatternGenerator::GetPatternColor(uint32_t aX, uint32_t aY) const
{
    const uint32_t lastX = std::max(mSettings.mWidth, 2u) - 1;
    switch (mSettings.mPattern) {
        case TestPattern::Black:
            return Grey(0.0);
        case TestPattern::White:
            return Grey(1.0);
        case TestPattern::GreyHorizontalRamp:
            return Grey(static_cast<double>(aX) / lastX);
        case TestPattern::GreyHorizontalRampMoving:
            return Grey(static_cast<double>(aX % mSettings.mWidth) / lastX);
        case TestPattern::GreyVerticalRamp: {
            const uint32_t level = aY / 2;
            return Grey(static_cast<double>(level) / (VerticalLevels - 1));
        }
        case TestPattern::ColorBar: {
            // White, yellow, cyan, green, magenta, red, blue, black.
            const uint32_t bar = 7 - std::min(aX * 8 / mSettings.mWidth, 7u);
            const auto channel = [bar](uint32_t aBit) { return ToWord((bar & aBit) != 0 ? 1.0 : 0.0); };
            return {channel(2), channel(4), channel(1)};
        }
        case TestPattern::Off:
            return Transfer(GetScene()[static_cast<size_t>(aY % ScenePeriod) * ScenePeriod + aX % ScenePeriod]);
    }
    return Grey(0.0);
}

void PatternGenerator::BuildTransfer()
{
    for (size_t channel = 0; channel < mTransfer.size(); ++channel) {
        mTransfer[channel].resize(4096);
        for (size_t i = 0; i < mTransfer[channel].size(); ++i) {
            double value = static_cast<double>(i) / 4095.0 * mSettings.mGain[channel] + mSettings.mBlackLevel;
            value = std::pow(std::clamp(value, 0.0, 1.0), mSettings.mGamma);
            if (mSettings.mLookUpTable.size() == 256) {
                value = mSettings.mLookUpTable[static_cast<size_t>(value * 255.0 + 0.5)] / 255.0;
            }
            mTransfer[channel][i] = ToWord(value);
        }
    }
}

Color16 PatternGenerator::Transfer(const Color16 &aColor) const
{
    return {mTransfer[0][aColor.mRed >> 4], mTransfer[1][aColor.mGreen >> 4], mTransfer[2][aColor.mBlue >> 4]};
}

void PatternGenerator::BuildLines()
{
    mEncoder = std::make_unique<PixelEncoder>(mSettings.mPixelType);
    mStale = false;
    if (!mEncoder->IsSupported() || mSettings.mWidth == 0 || mSettings.mHeight == 0) {
        mBank.clear();
        return;
    }
    BuildTransfer();
    uint32_t width = mSettings.mWidth;
    mBankLines = 2;  // one for even and one for odd lines
    switch (mSettings.mPattern) {
        case TestPattern::Off:
            width += ScenePeriod;
            mBankLines = ScenePeriod;
            break;
        case TestPattern::GreyHorizontalRampMoving:
            width *= 2;
            break;
        case TestPattern::GreyVerticalRamp:
            mBankLines = 2 * VerticalLevels;
            break;
        default:
            break;
    }
    mLineBytes = ToBytes(mSettings.mWidth);
    mBankBytes = ToBytes(width);
    mBank.resize(static_cast<size_t>(mBankBytes) * mBankLines);

    // The scene repeats itself, so that one period of a line is all that must be encoded.
    const bool scene = mSettings.mPattern == TestPattern::Off;
    const uint32_t encoded = scene ? ScenePeriod : width;
    const size_t encodedBytes = ToBytes(encoded);
    std::vector<Color16> line(encoded);
    for (uint32_t y = 0; y < mBankLines; ++y) {
        for (uint32_t x = 0; x < encoded; ++x) {
            const uint32_t column = mSettings.mReverseX ? width - 1 - x : x;
            line[x] = scene ? GetPatternColor((mSettings.mOffsetX + column) * mSettings.mBinningX,
                                              (mSettings.mOffsetY + y) * mSettings.mBinningY)
                            : GetPatternColor(column, y);
        }
        // A picture is mirrored by taking the lines in reverse, so that an even one lands on an odd place.
        const bool odd = (y % 2 != 0) != mSettings.mReverseY;
        uint8_t *bank = mBank.data() + static_cast<size_t>(mBankBytes) * y;
        mEncoder->Encode(line.data(), encoded, odd, bank);
        for (size_t at = encodedBytes; at < mBankBytes; at += encodedBytes) {
            std::memcpy(bank + at, bank, std::min(encodedBytes, mBankBytes - at));
        }
    }
}

void PatternGenerator::Draw(uint64_t aNumber, uint8_t *aData, uint64_t aSize)
{
    if (mStale) {
        BuildLines();
    }
    if (mBank.empty() || aSize < static_cast<uint64_t>(mLineBytes) * mSettings.mHeight) {
        std::memset(aData, 0, aSize);
        return;
    }
    uint32_t shift = 0;
    uint32_t shiftY = 0;
    if (mSettings.mPattern == TestPattern::Off) {
        shift = static_cast<uint32_t>(aNumber * SceneStep % ScenePeriod);
        shiftY = static_cast<uint32_t>(aNumber * 2 % ScenePeriod);
        if (mSettings.mReverseX) {
            shift = ScenePeriod - shift;
        }
    }
    else if (mSettings.mPattern == TestPattern::GreyHorizontalRampMoving) {
        shift = static_cast<uint32_t>(aNumber % (mSettings.mWidth / SceneStep)) * SceneStep;
    }
    const size_t start = ToBytes(shift);
    for (uint32_t y = 0; y < mSettings.mHeight; ++y) {
        const uint32_t row = mSettings.mReverseY ? mSettings.mHeight - 1 - y : y;
        uint32_t line = row + shiftY;
        if (mSettings.mPattern == TestPattern::GreyVerticalRamp) {
            const uint32_t last = std::max(mSettings.mHeight, 2u) - 1;
            line = static_cast<uint32_t>(static_cast<uint64_t>(row) * (VerticalLevels - 1) / last) * 2 + row % 2;
        }
        std::memcpy(aData + static_cast<size_t>(y) * mLineBytes,
                    mBank.data() + static_cast<size_t>(line % mBankLines) * mBankBytes + start, mLineBytes);
    }
    if (mSettings.mPattern == TestPattern::Off) {
        DrawBall(aNumber, aData);
    }
    const uint64_t used = static_cast<uint64_t>(mLineBytes) * mSettings.mHeight;
    std::memset(aData + used, 0, aSize - used);
}

void PatternGenerator::DrawBall(uint64_t aNumber, uint8_t *aData)
{
    const uint32_t radius = GetBallRadius(mSettings);
    if (radius < 4) {
        return;
    }
    const uint32_t centreX = radius + Bounce(aNumber * 7, mSettings.mWidth - 2 * radius - 1);
    const uint32_t centreY = radius + Bounce(aNumber * 5, mSettings.mHeight - 2 * radius - 1);
    const double squared = static_cast<double>(radius) * radius;
    std::vector<Color16> line;
    for (uint32_t y = centreY - radius; y <= centreY + radius; ++y) {
        const double dy = static_cast<double>(y) - centreY;
        const auto half = static_cast<uint32_t>(std::sqrt(std::max(0.0, squared - dy * dy)));
        // Whole groups of pixels only.
        const uint32_t first = (centreX - half + 3) / 4 * 4;
        const uint32_t last = std::min((centreX + half) / 4 * 4, mSettings.mWidth);
        if (last <= first) {
            continue;
        }
        line.resize(last - first);
        for (uint32_t x = first; x < last; ++x) {
            // Lit from the upper left.
            const double dx = static_cast<double>(x) - centreX;
            const double light = 0.75 - 0.45 * (dx + dy) / (1.5 * radius);
            line[x - first] = Transfer({ToWord(0.8 * light), ToWord(0.55 * light), ToWord(0.2 * light)});
        }
        mEncoder->Encode(line.data(), last - first, y % 2 != 0,
                         aData + static_cast<size_t>(y) * mLineBytes + ToBytes(first));
    }
}

}  // namespace LxDetail
