#include "LxBuffer/LxGenDCContainer.h"

#include <new>
#include <utility>
#include <vector>

#include "LxBuffer/GenDCDescriptor.h"

namespace
{

class PartImage : public ILxGenDCImage
{
public:
    PartImage(const LxDetail::GenDC::Part &aPart, const uint8_t *aContainer) : mPart(aPart), mContainer(aContainer) {}

    uint32_t GetWidth() const override { return mPart.mSizeX; }
    uint32_t GetHeight() const override { return mPart.mSizeY; }
    LxPixelType GetPixelType() const override { return mPart.mFormat; }
    const void *GetDataPointer() const override { return mContainer + mPart.mDataOffset; }
    uint64_t GetDataSize() const override { return mPart.mDataSize; }
    uint32_t GetPaddingX() const override { return mPart.mPaddingX; }
    uint32_t GetPaddingY() const override { return mPart.mPaddingY; }

private:
    const LxDetail::GenDC::Part &mPart;
    const uint8_t *const mContainer;
};

class ContainerPart : public ILxGenDCPart
{
public:
    ContainerPart(const LxDetail::GenDC::Part &aPart, bool aIsValid, const uint8_t *aContainer)
        : mPart(aPart), mImage(aPart, aContainer), mHasImage(aIsValid && aPart.IsImage())
    {
    }

    uint16_t GetHeaderType() const override { return mPart.mHeaderType; }
    const ILxGenDCImage *GetImage() const override { return mHasImage ? &mImage : nullptr; }

private:
    const LxDetail::GenDC::Part &mPart;
    const PartImage mImage;
    const bool mHasImage;
};

class ContainerComponent : public ILxGenDCComponent
{
public:
    ContainerComponent(const LxDetail::GenDC::Component &aComponent, const uint8_t *aContainer) : mComponent(aComponent)
    {
        mParts.reserve(aComponent.mParts.size());
        for (const LxDetail::GenDC::Part &part : aComponent.mParts) {
            mParts.emplace_back(part, !aComponent.mIsInvalid, aContainer);
        }
    }

    uint64_t GetTypeID() const override { return mComponent.mTypeID; }
    uint32_t GetPartCount() const override { return static_cast<uint32_t>(mParts.size()); }
    const ILxGenDCPart *GetPart(uint32_t aIndex) const override
    {
        return aIndex < mParts.size() ? &mParts[aIndex] : nullptr;
    }

private:
    const LxDetail::GenDC::Component &mComponent;
    std::vector<ContainerPart> mParts;
};

}  // namespace

class LX_NO_EXPORT LxGenDCContainer::Data
{
public:
    std::shared_ptr<const void> mMemory;
    LxDetail::GenDC::Descriptor mDescriptor;
    std::vector<ContainerComponent> mComponents;  // views of the descriptor, which must not be moved
};

LxGenDCContainer::LxGenDCContainer(std::unique_ptr<Data> aData) : mData(std::move(aData)) {}

LxGenDCContainer::~LxGenDCContainer() = default;

LxResult LxGenDCContainer::Parse(std::shared_ptr<const void> aData, uint64_t aSize,
                                 std::shared_ptr<const LxGenDCContainer> &aContainer)
{
    if (!aData) {
        return LxResult(LxResultCode::InvalidArgument, "There is no memory to read a GenDC container from.");
    }
    try {
        const auto *const bytes = static_cast<const uint8_t *>(aData.get());
        auto data = std::make_unique<Data>();
        const LxResult result = LxDetail::GenDC::Parse({bytes, static_cast<size_t>(aSize)}, data->mDescriptor);
        if (!result.IsOK()) {
            return result;
        }
        data->mMemory = std::move(aData);
        data->mComponents.reserve(data->mDescriptor.mComponents.size());
        for (const LxDetail::GenDC::Component &component : data->mDescriptor.mComponents) {
            data->mComponents.emplace_back(component, bytes);
        }
        aContainer.reset(new LxGenDCContainer(std::move(data)));
        return LxResult();
    }
    catch (const std::bad_alloc &) {
        return LxResult(LxResultCode::NoMemory, "There is no memory for the parts of a GenDC container.");
    }
}

uint64_t LxGenDCContainer::GetID() const
{
    return mData->mDescriptor.mID;
}

uint64_t LxGenDCContainer::GetSize() const
{
    return mData->mDescriptor.mDataOffset + mData->mDescriptor.mDataSize;
}

uint32_t LxGenDCContainer::GetComponentCount() const
{
    return static_cast<uint32_t>(mData->mComponents.size());
}

const ILxGenDCComponent *LxGenDCContainer::GetComponent(uint32_t aIndex) const
{
    return aIndex < mData->mComponents.size() ? &mData->mComponents[aIndex] : nullptr;
}
