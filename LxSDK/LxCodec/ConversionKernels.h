#pragma once

// Internal: the inner loops of conversion, over pieces of lines.

#include <cstddef>
#include <cstdint>

namespace LxDetail
{

/// How samples lie in memory, one after the other. What lies in bytes already needs no unpacking.
enum class SampleLayout : uint8_t
{
    Bytes,        ///< One byte each.
    SignedBytes,  ///< One byte each, in two's complement: 0 becomes middle grey.
    Words10,      ///< 16-bit little-endian words with 10 bits, in the low bits.
    Words12,
    Words14,
    Words16,
    DoubleWords,  ///< 32-bit little-endian words.
    Stream1,      ///< A stream of 1-bit samples that fills each byte from its least significant bit: the "p" formats.
    Stream2,
    Stream4,
    Stream10,
    Stream12,
    Stream14,
    Triples565,   ///< 5, 6 and 5 bits in a 16-bit little-endian word, the first component in the low bits.
    Triples10,    ///< Three samples of 10 bits in a 32-bit little-endian word, the first in the low bits.
    TriplesV1,    ///< RGB10V1Packed: low bits of the components first, then the high bits of the last component first.
    PairsPacked,  ///< GigE Vision 1.x, 10 and 12 bits: high bits of a sample, low bits of both, high bits of the other.
    Count,
};

/// Writes aCount samples that start at aLine to aSamples, one byte each: the most significant 8 bits of longer samples,
/// shorter samples stretched to the full range. Reads the bytes that hold these samples and no others.
using UnpackKernel = void (*)(const uint8_t *aLine, uint8_t *aSamples, size_t aCount);

/// Interleaved samples, one byte each, to aWidth pixels at aOut.
using PackedColourKernel = void (*)(const uint8_t *aSamples, uint8_t *aOut, size_t aWidth);

/// One line per component to pixels.
using PlanesKernel = void (*)(const uint8_t *aRed, const uint8_t *aGreen, const uint8_t *aBlue, uint8_t *aOut,
                              size_t aWidth);

/// What turns luma and chroma into colour, in units of 2^-20: R = aY (Y - black) + Cr part, and so on.
struct YuvMatrix
{
    int32_t mBlack;
    int32_t mY;
    int32_t mRedV;
    int32_t mGreenU;
    int32_t mGreenV;
    int32_t mBlueU;
};

/// Bits behind the point of the factors of a YuvMatrix.
constexpr int kYuvFractionBits = 20;

/// One line per component, chroma at every pixel, to pixels: the nearest colours.
using YuvKernel = void (*)(const uint8_t *aY, const uint8_t *aU, const uint8_t *aV, const YuvMatrix &aMatrix,
                           uint8_t *aOut, size_t aWidth);

/// Interleaved luma and chroma, two pixels to a pair of chroma samples, to pixels. Of an odd width the last pixel has
/// luma and U only; it takes V of the pixels before, or neutral when it is alone.
using YuvPairsKernel = void (*)(const uint8_t *aSamples, const YuvMatrix &aMatrix, uint8_t *aOut, size_t aWidth);

/// What turns luma and chroma into colour in 16 bits: of 257 times luma and 256 times chroma, less its middle, by these
/// factors the upper 16 bits count. mBlack is taken from luma's, green's part from the sum.
struct HalfChromaFactors
{
    static constexpr int kFractionBits = 5;  ///< Bits behind the point of the sums.
    uint16_t mY;
    int16_t mBlack;
    int16_t mRedV;
    int16_t mGreenU;
    int16_t mGreenV;
    int16_t mBlueU;
};

/// One line per component, chroma for two pixels (rounded up), to pixels: off by at most one from the exact colours.
using HalfChromaKernel = void (*)(const uint8_t *aY, const uint8_t *aU, const uint8_t *aV,
                                  const HalfChromaFactors &aFactors, uint8_t *aOut, size_t aWidth);

/// The two colours of a mosaic line: red or blue, which the line has, and green.
struct BayerLine
{
    bool mHasRed;       ///< Red and green, else blue and green.
    bool mStartsGreen;  ///< The first pixel is green.
};

/// Which ends of a piece of a line are ends of the line.
struct LineEnds
{
    bool mFirst;
    bool mLast;
};

/// Interpolates a piece of a mosaic line bilinearly: the mean of the two or four nearest samples of a colour, halves
/// rounded up. At an end of the line the neighbours are mirrored, so that the colour of the mosaic is kept; a line of
/// one pixel stands for its neighbours too. At other ends of the piece one more sample of each line is read.
using DemosaicKernel = void (*)(const uint8_t *aAbove, const uint8_t *aLine, const uint8_t *aBelow,
                                const BayerLine &aColours, LineEnds aEnds, uint8_t *aOut, size_t aWidth);

/// Copies aSize bytes, a multiple of kStreamUnit, to memory that is aligned to it, past the caches where the processor
/// can. Other threads are sure to see them after FlushKernel.
using StreamKernel = void (*)(const uint8_t *aFrom, uint8_t *aTo, size_t aSize);
constexpr size_t kStreamUnit = 64;
using FlushKernel = void (*)();

/// Every kernel, for one kind of processor. All kinds write the same bytes. Pixels are BGRa8 with alpha 255; inputs and
/// outputs need no alignment.
struct ConversionKernels
{
    UnpackKernel mUnpack[static_cast<size_t>(SampleLayout::Count)];  ///< Null for Bytes.
    /// From the line as it lies in memory; null where samples must be unpacked first.
    PackedColourKernel mMono[static_cast<size_t>(SampleLayout::Count)];
    PackedColourKernel mRgb;
    PackedColourKernel mBgr;
    PackedColourKernel mRgba;
    PackedColourKernel mBgra;
    PlanesKernel mPlanes;
    YuvKernel mYuv;
    YuvPairsKernel mUyvy;
    YuvPairsKernel mYuyv;
    HalfChromaKernel mHalfChroma;
    DemosaicKernel mDemosaic;
    StreamKernel mStream;
    FlushKernel mFlush;
};

/// Without vector instructions: what the others are compared with, and the ends of their lines.
const ConversionKernels &GetScalarKernels();

/// The best for this machine.
const ConversionKernels &GetConversionKernels();

/// The same, but pixels go past the caches, so that the memory is not read before it is written over. The output of
/// each call must be aligned to kStreamUnit; mFlush is to be called before others read it.
const ConversionKernels &GetStreamingKernels();

/// Lets the two above choose from these targets of Highway only, as bits; for tests. Not while a conversion runs.
void UseVectorTargets(int64_t aTargets);

/// Fills in the unpacking kernels of GetScalarKernels().
void SetScalarUnpackKernels(ConversionKernels &aKernels);

}  // namespace LxDetail
