#include "LxBuffer/LxBuffer.h"

#include <utility>

LxBuffer::LxBuffer(LxPayloadType aPayloadType) : mPayloadType(aPayloadType)
{
    if (aPayloadType == LxPayloadType::Image) {
        AddImage();
    }
}

LxBuffer::~LxBuffer() = default;

LxBuffer::LxBuffer(LxBuffer &&aOther) noexcept : mPayloadType(LxPayloadType::None)
{
    *this = std::move(aOther);
}

LxBuffer &LxBuffer::operator=(LxBuffer &&aOther) noexcept
{
    if (this != &aOther) {
        mPayloadType = std::exchange(aOther.mPayloadType, LxPayloadType::None);
        mImage = std::move(aOther.mImage);
        mGenDC = std::move(aOther.mGenDC);
        mH264 = std::move(aOther.mH264);
        mBlockID = std::exchange(aOther.mBlockID, 0);
        mTimestamp = std::exchange(aOther.mTimestamp, 0);
        mReceptionTime = std::exchange(aOther.mReceptionTime, 0);
        mStatus = std::exchange(aOther.mStatus, LxBufferStatus::Complete);
    }
    return *this;
}

LxImage *LxBuffer::GetImage()
{
    return mImage.get();
}

const LxImage *LxBuffer::GetImage() const
{
    return mImage.get();
}

void LxBuffer::SetGenDC(std::shared_ptr<const ILxGenDCContainer> aContainer)
{
    mGenDC = std::move(aContainer);
}

void LxBuffer::SetH264AccessUnit(std::shared_ptr<const ILxH264AccessUnit> aUnit)
{
    mH264 = std::move(aUnit);
}

void LxBuffer::AddImage()
{
    if (!mImage) {
        mImage = std::make_unique<LxImage>();
    }
}

const void *LxBuffer::GetDataPointer() const
{
    return mImage ? std::as_const(*mImage).GetDataPointer() : nullptr;
}

void *LxBuffer::GetDataPointer()
{
    return mImage ? mImage->GetDataPointer() : nullptr;
}

void LxBuffer::Free()
{
    if (mImage) {
        mImage->Free();
    }
    mGenDC.reset();
    mH264.reset();
}

void LxBuffer::Detach()
{
    Free();
}
