#pragma once

#include <memory>

#include "LxBase/LxResult.h"
#include "LxBuffer/ILxImage.h"

/// An image in memory of its own or attached to somebody else's. Movable, not copyable; not synchronised.
class LX_API LxImage : public ILxImage
{
public:
    LxImage();
    ~LxImage() override;
    /// Takes the image over; the other one is empty then.
    LxImage(LxImage &&aOther) noexcept;
    /// Frees what was there and takes the image over.
    LxImage &operator=(LxImage &&aOther) noexcept;

    /// Gets memory for an image of this geometry; the content is undefined, the offset 0. Memory of its own that is
    /// large enough is kept. InvalidArgument (and the image as it was) when width, height or bits per pixel are 0, when
    /// the size exceeds 2^40 bytes or when a planar format comes with padding; NoMemory (and the image as it was) when
    /// the system has none.
    LxResult Alloc(uint32_t aWidth, uint32_t aHeight, LxPixelType aPixelType, uint32_t aPaddingX = 0,
                   uint32_t aPaddingY = 0);
    /// Refers to the caller's memory, which is neither copied nor freed and must outlive the image or the next
    /// Detach(), Free(), Attach() or Alloc(). The offset becomes 0. InvalidArgument (and the image as it was) for a
    /// null pointer or a geometry that Alloc() refuses.
    LxResult Attach(void *aData, uint32_t aWidth, uint32_t aHeight, LxPixelType aPixelType, uint32_t aPaddingX = 0,
                    uint32_t aPaddingY = 0);
    /// The same with the number of bytes that may be read; BufferTooSmall (and the image as it was) when the geometry
    /// needs more.
    LxResult AttachSized(void *aData, uint64_t aSize, uint32_t aWidth, uint32_t aHeight, LxPixelType aPixelType,
                         uint32_t aPaddingX = 0, uint32_t aPaddingY = 0);
    /// Forgets attached memory; the image is then empty. Memory of its own is freed.
    void Detach();
    /// Frees memory of its own, or forgets attached memory; the image is then empty.
    void Free();
    /// Where the image lies on the sensor, in pixels.
    void SetOffset(uint32_t aOffsetX, uint32_t aOffsetY);

    uint32_t GetWidth() const override { return mWidth; }
    uint32_t GetHeight() const override { return mHeight; }
    LxPixelType GetPixelType() const override { return mPixelType; }
    const void *GetDataPointer() const override { return mData; }
    /// The same for writing.
    void *GetDataPointer() { return mData; }
    uint64_t GetDataSize() const override { return mDataSize; }
    uint32_t GetPaddingX() const override { return mPaddingX; }
    uint32_t GetPaddingY() const override { return mPaddingY; }
    uint32_t GetOffsetX() const override { return mOffsetX; }
    uint32_t GetOffsetY() const override { return mOffsetY; }

private:
    struct FreeMemory
    {
        void operator()(void *aMemory) const;
    };

    void SetGeometry(void *aData, uint64_t aSize, uint32_t aWidth, uint32_t aHeight, LxPixelType aPixelType,
                     uint32_t aPaddingX, uint32_t aPaddingY);

    std::unique_ptr<void, FreeMemory> mOwned;
    uint64_t mOwnedSize = 0;
    void *mData = nullptr;
    uint64_t mDataSize = 0;
    uint32_t mWidth = 0;
    uint32_t mHeight = 0;
    LxPixelType mPixelType = LxPixelType::None;
    uint32_t mPaddingX = 0;
    uint32_t mPaddingY = 0;
    uint32_t mOffsetX = 0;
    uint32_t mOffsetY = 0;
};
