#pragma once

// Internal: as much of the syntax of H.264 (ITU-T H.264) as it takes to tell where pictures are missing.

#include <cstdint>
#include <map>
#include <span>
#include <vector>

namespace LxDetail::H264
{

/// A NAL unit (Annex B), without its start code.
struct NalUnit
{
    uint8_t mType = 0;                ///< nal_unit_type, table 7-1
    uint8_t mRefIdc = 0;              ///< nal_ref_idc: 0 when no other picture refers to it
    std::span<const uint8_t> mBytes;  ///< with the header byte

    bool IsSlice() const { return mType >= 1 && mType <= 5; }
    bool IsIDR() const { return mType == 5; }
    bool IsParameterSet() const { return mType == 7 || mType == 8 || mType == 13 || mType == 15; }
    /// Whether it is SEI with a recovery point (D.1.8).
    bool HasRecoveryPoint() const;
};

/// Finds the NAL units of a byte stream; what is before the first start code is not looked at.
void Split(std::span<const uint8_t> aStream, std::vector<NalUnit> &aUnits);

/// Follows the frame numbers of a stream (frame_num, 7.4.3): where they jump, a picture that others refer to is
/// missing, of which a decoder says nothing.
class FrameOrder
{
public:
    /// Takes the next access unit. False when a picture is missing before it. Unknown parameter sets and streams that
    /// allow gaps pass.
    bool Take(std::span<const NalUnit> aUnits);
    /// The next picture may have any number. Parameter sets stay known.
    void Restart() { mIsStarted = false; }

private:
    struct Sequence
    {
        unsigned mFrameNumberBits = 4;
        bool mHasColourPlanes = false;
        bool mAllowsGaps = false;
        bool mHasFrames = true;  ///< And no fields.
    };

    /// Which lines of a frame a picture has.
    enum class Lines : uint8_t
    {
        All,
        Top,
        Bottom,
    };

    void TakeSequence(const NalUnit &aUnit);
    void TakePicture(const NalUnit &aUnit);

    std::map<uint32_t, Sequence> mSequences;  // by seq_parameter_set_id
    std::map<uint32_t, uint32_t> mPictures;   // pic_parameter_set_id to seq_parameter_set_id
    bool mIsStarted = false;
    uint32_t mLastReference = 0;       // frame_num of the last picture that others refer to
    Lines mMissingField = Lines::All;  // that may follow it with the same number; All: none
};

}  // namespace LxDetail::H264
