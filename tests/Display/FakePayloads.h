#pragma once

#include <cstring>
#include <memory>
#include <vector>

#include "LxBuffer/LxBuffer.h"
#include "LxGUI/Display/DisplayWnd.h"

class FakeGenDCImage : public ILxGenDCImage
{
public:
    explicit FakeGenDCImage(const LxImage *aImage) : mImage(aImage) {}
    uint32_t GetWidth() const override { return mImage ? mImage->GetWidth() : 0; }
    uint32_t GetHeight() const override { return mImage ? mImage->GetHeight() : 0; }
    LxPixelType GetPixelType() const override { return mImage ? mImage->GetPixelType() : LxPixelType::None; }
    const void *GetDataPointer() const override { return mNoData ? nullptr : mImage->GetDataPointer(); }
    uint64_t GetDataSize() const override { return mNoData ? 0 : mImage->GetDataSize(); }
    uint32_t GetPaddingX() const override { return 0; }
    uint32_t GetPaddingY() const override { return 0; }

    bool mNoData = false;

private:
    const LxImage *mImage;
};

class FakePart : public ILxGenDCPart
{
public:
    uint16_t GetHeaderType() const override { return 0x4200; }
    const ILxGenDCImage *GetImage() const override { return mImage; }

    const ILxGenDCImage *mImage = nullptr;
};

class FakeComponent : public ILxGenDCComponent
{
public:
    uint64_t GetTypeID() const override { return 1; }
    uint32_t GetPartCount() const override { return static_cast<uint32_t>(mParts.size()); }
    const ILxGenDCPart *GetPart(uint32_t aIndex) const override { return mParts[aIndex]; }

    std::vector<const ILxGenDCPart *> mParts;
};

class FakeContainer : public ILxGenDCContainer
{
public:
    uint32_t GetComponentCount() const override { return static_cast<uint32_t>(mComponents.size()); }
    const ILxGenDCComponent *GetComponent(uint32_t aIndex) const override { return mComponents[aIndex]; }

    std::vector<const ILxGenDCComponent *> mComponents;
};

class FakeAccessUnit : public ILxH264AccessUnit
{
public:
    const void *GetDataPointer() const override { return "x"; }
    uint64_t GetDataSize() const override { return 1; }
};

/// A display whose decoder delivers a number of frames of growing size.
class DecodingDisplay : public DisplayWnd
{
public:
    LxResult mProcessResult;
    int mFrames = 0;

protected:
    LxResult ProcessAccessUnit(const ILxH264AccessUnit *) override { return mProcessResult; }
    LxResult RetrieveFrame(LxImage *aImage) override
    {
        if (mFrames == 0) {
            return LxResult(LxResultCode::NotFound);
        }
        --mFrames;
        const LxResult result = aImage->Alloc(40, 30, LxPixelType::BGRa8);
        std::memset(aImage->GetDataPointer(), 0x80, 40 * 30 * 4);
        return result;
    }
};
