#include "LxCodec/ConversionKernels.h"

namespace LxDetail
{

namespace
{

// Signed samples: the least value becomes black, 0 becomes middle grey.
void UnpackSigned8(const uint8_t *aLine, uint8_t *aSamples, size_t aCount)
{
    for (size_t i = 0; i < aCount; ++i) {
        aSamples[i] = static_cast<uint8_t>(aLine[i] ^ 0x80);
    }
}

// Samples of kBits in 16-bit little-endian words, in the low bits.
template <int kBits>
void UnpackWords(const uint8_t *aLine, uint8_t *aSamples, size_t aCount)
{
    for (size_t i = 0; i < aCount; ++i) {
        const unsigned word = aLine[2 * i] | aLine[2 * i + 1] << 8;
        aSamples[i] = static_cast<uint8_t>(word >> (kBits - 8));
    }
}

void UnpackDoubleWords(const uint8_t *aLine, uint8_t *aSamples, size_t aCount)
{
    for (size_t i = 0; i < aCount; ++i) {
        aSamples[i] = aLine[4 * i + 3];
    }
}

// The sample at an index of a bit stream that fills each byte from its least significant bit.
template <int kBits>
inline uint8_t BitStreamSample(const uint8_t *aStream, size_t aIndex)
{
    if constexpr (kBits < 8) {
        constexpr unsigned kMost = (1u << kBits) - 1;
        const size_t bit = aIndex * kBits;
        return static_cast<uint8_t>(((aStream[bit / 8] >> (bit % 8)) & kMost) * (255 / kMost));
    }
    else {
        const size_t bit = aIndex * kBits + (kBits - 8);
        const uint8_t *const byte = aStream + bit / 8;
        const unsigned shift = bit % 8;
        return static_cast<uint8_t>(shift == 0 ? byte[0] : byte[0] >> shift | byte[1] << (8 - shift));
    }
}

// The "p" formats.
template <int kBits>
void UnpackBitStream(const uint8_t *aLine, uint8_t *aSamples, size_t aCount)
{
    // After 8 samples the stream is on a byte again, so that the shifts of a group are constants.
    constexpr size_t kGroup = 8;
    const size_t groups = aCount / kGroup;
    for (size_t group = 0; group < groups; ++group) {
        const uint8_t *const in = aLine + group * kBits;
        uint8_t *const out = aSamples + group * kGroup;
#pragma GCC unroll 8
        for (size_t i = 0; i < kGroup; ++i) {
            out[i] = BitStreamSample<kBits>(in, i);
        }
    }
    for (size_t i = groups * kGroup; i < aCount; ++i) {
        aSamples[i] = BitStreamSample<kBits>(aLine, i);
    }
}

// The GigE Vision 1.x formats of 10 and 12 bits: two samples in three bytes; the first and the third byte are the most
// significant bits of the samples, the second holds the rest of both.
void UnpackGigEPacked(const uint8_t *aLine, uint8_t *aSamples, size_t aCount)
{
    const size_t pairs = aCount / 2;
    for (size_t i = 0; i < pairs; ++i) {
        aSamples[2 * i] = aLine[3 * i];
        aSamples[2 * i + 1] = aLine[3 * i + 2];
    }
    if (aCount % 2 != 0) {
        aSamples[aCount - 1] = aLine[3 * pairs];
    }
}

// RGB10V1Packed: the low bits of the three components in the first byte, then the high bits of the last, the second and
// the first component.
void UnpackRgb10V1(const uint8_t *aLine, uint8_t *aSamples, size_t aCount)
{
    for (size_t i = 0; i < aCount / 3; ++i) {
        aSamples[3 * i] = aLine[4 * i + 3];
        aSamples[3 * i + 1] = aLine[4 * i + 2];
        aSamples[3 * i + 2] = aLine[4 * i + 1];
    }
}

// Three samples of 10 bits in a 32-bit little-endian word, the first in the low bits.
void UnpackThreeInWord(const uint8_t *aLine, uint8_t *aSamples, size_t aCount)
{
    for (size_t i = 0; i < aCount / 3; ++i) {
        const uint8_t *const in = aLine + 4 * i;
        aSamples[3 * i] = static_cast<uint8_t>(in[0] >> 2 | in[1] << 6);
        aSamples[3 * i + 1] = static_cast<uint8_t>(in[1] >> 4 | in[2] << 4);
        aSamples[3 * i + 2] = static_cast<uint8_t>(in[2] >> 6 | in[3] << 2);
    }
}

// 5, 6 and 5 bits in a 16-bit little-endian word, the first component in the low bits. The high bits are repeated below
// so that full scale becomes 255.
void Unpack565(const uint8_t *aLine, uint8_t *aSamples, size_t aCount)
{
    for (size_t i = 0; i < aCount / 3; ++i) {
        const unsigned word = aLine[2 * i] | aLine[2 * i + 1] << 8;
        const unsigned first = word & 0x1F;
        const unsigned second = word >> 5 & 0x3F;
        const unsigned third = word >> 11;
        aSamples[3 * i] = static_cast<uint8_t>(first << 3 | first >> 2);
        aSamples[3 * i + 1] = static_cast<uint8_t>(second << 2 | second >> 4);
        aSamples[3 * i + 2] = static_cast<uint8_t>(third << 3 | third >> 2);
    }
}

}  // namespace

void SetScalarUnpackKernels(ConversionKernels &aKernels)
{
    const auto set = [&aKernels](SampleLayout aLayout, UnpackKernel aKernel) {
        aKernels.mUnpack[static_cast<size_t>(aLayout)] = aKernel;
    };
    set(SampleLayout::SignedBytes, UnpackSigned8);
    set(SampleLayout::Words10, UnpackWords<10>);
    set(SampleLayout::Words12, UnpackWords<12>);
    set(SampleLayout::Words14, UnpackWords<14>);
    set(SampleLayout::Words16, UnpackWords<16>);
    set(SampleLayout::DoubleWords, UnpackDoubleWords);
    set(SampleLayout::Stream1, UnpackBitStream<1>);
    set(SampleLayout::Stream2, UnpackBitStream<2>);
    set(SampleLayout::Stream4, UnpackBitStream<4>);
    set(SampleLayout::Stream10, UnpackBitStream<10>);
    set(SampleLayout::Stream12, UnpackBitStream<12>);
    set(SampleLayout::Stream14, UnpackBitStream<14>);
    set(SampleLayout::Triples565, Unpack565);
    set(SampleLayout::Triples10, UnpackThreeInWord);
    set(SampleLayout::TriplesV1, UnpackRgb10V1);
    set(SampleLayout::PairsPacked, UnpackGigEPacked);
}

}  // namespace LxDetail
