#pragma once

// Internal: the pictures of simulated cameras.

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

#include "Backends/Simulation/PixelEncoder.h"

namespace LxDetail
{

/// The entries of TestPattern.
enum class TestPattern : uint32_t
{
    Off = 0,  ///< A moving scene.
    Black = 1,
    White = 2,
    GreyHorizontalRamp = 3,
    GreyVerticalRamp = 4,
    GreyHorizontalRampMoving = 5,
    ColorBar = 6,
};

/// Everything that a picture depends on but its number.
struct PatternSettings
{
    uint32_t mWidth = 0;   ///< A multiple of 4.
    uint32_t mHeight = 0;  ///< A multiple of 2.
    uint32_t mOffsetX = 0;
    uint32_t mOffsetY = 0;
    uint32_t mBinningX = 1;
    uint32_t mBinningY = 1;
    bool mReverseX = false;
    bool mReverseY = false;
    LxPixelType mPixelType = LxPixelType::Mono8;
    TestPattern mPattern = TestPattern::Off;
    std::array<double, 3> mGain = {1.0, 1.0, 1.0};  ///< Factors for red, green and blue of the scene.
    double mBlackLevel = 0.0;                       ///< 0 to 1, added to the scene.
    double mGamma = 1.0;
    std::vector<uint8_t> mLookUpTable;  ///< 256 entries, or none.

    bool operator==(const PatternSettings &) const = default;
};

/// Draws pictures quickly: the lines that a pattern consists of are encoded once, in the camera's pixel format and long
/// enough to be shifted; a picture is then put together by copying. Not synchronised.
class PatternGenerator
{
public:
    /// Takes effect with the next picture.
    void SetSettings(const PatternSettings &aSettings);
    /// Draws picture aNumber into aSize bytes; bytes beyond the picture are set to 0, a picture that does not fit is
    /// cut.
    void Draw(uint64_t aNumber, uint8_t *aData, uint64_t aSize);

private:
    void BuildLines();
    Color16 GetPatternColor(uint32_t aX, uint32_t aY) const;
    void BuildTransfer();
    Color16 Transfer(const Color16 &aColor) const;
    void DrawBall(uint64_t aNumber, uint8_t *aData);
    uint32_t ToBytes(uint32_t aPixels) const;

    PatternSettings mSettings;
    std::unique_ptr<PixelEncoder> mEncoder;
    bool mStale = true;
    std::array<std::vector<uint16_t>, 3> mTransfer;
    uint32_t mLineBytes = 0;  // of a line of a picture
    uint32_t mBankBytes = 0;  // of a line of the bank
    uint32_t mBankLines = 0;
    std::vector<uint8_t> mBank;
};

}  // namespace LxDetail
