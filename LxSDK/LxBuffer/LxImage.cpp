#include "LxBuffer/LxImage.h"

#include <sys/mman.h>

#include <cstdlib>
#include <string>
#include <utility>

namespace
{

constexpr uint64_t LargestImage = uint64_t{1} << 40;
constexpr uint64_t Alignment = 64;  // a cache line, and enough for every vector instruction
// Images from here on get pages of this size where the system has them: a pass over an image then does not wait for
// the addresses of thousands of small ones.
constexpr uint64_t HugePage = uint64_t{1} << 21;

// Memory for std::free(), or null.
void *Allocate(uint64_t aSize)
{
    const bool isHuge = aSize >= HugePage;
    void *memory = nullptr;
    if (aSize > SIZE_MAX || posix_memalign(&memory, isHuge ? HugePage : Alignment, aSize) != 0) {
        return nullptr;
    }
    if (isHuge) {
        madvise(memory, aSize / HugePage * HugePage, MADV_HUGEPAGE);  // refused, the memory is as good as any other
    }
    return memory;
}

// The bytes that a geometry needs; the result says what is wrong with a geometry that has no size.
LxResult GetCheckedSize(uint64_t &aSize, uint32_t aWidth, uint32_t aHeight, LxPixelType aPixelType, uint32_t aPaddingX,
                        uint32_t aPaddingY)
{
    if (aWidth == 0 || aHeight == 0) {
        return LxResult(LxResultCode::InvalidArgument, "An image needs a width and a height greater than 0.");
    }
    if (LxPixelTypeGetBitsPerPixel(aPixelType) == 0) {
        return LxResult(LxResultCode::InvalidArgument, "An image needs a pixel format with a size.");
    }
    const uint64_t size = LxPixelTypeGetImageSize(aPixelType, aWidth, aHeight, aPaddingX, aPaddingY);
    if (size == 0 || size > LargestImage) {
        return LxResult(LxResultCode::InvalidArgument,
                        size == 0 && LxPixelTypeGetImageSize(aPixelType, aWidth, aHeight) != 0
                            ? "The image is too large, or a planar pixel format comes with padding."
                            : "The image is too large.");
    }
    aSize = size;
    return LxResult();
}

}  // namespace

void LxImage::FreeMemory::operator()(void *aMemory) const
{
    std::free(aMemory);
}

LxImage::LxImage() = default;
LxImage::~LxImage() = default;

LxImage::LxImage(LxImage &&aOther) noexcept
{
    *this = std::move(aOther);
}

LxImage &LxImage::operator=(LxImage &&aOther) noexcept
{
    if (this != &aOther) {
        mOwned = std::move(aOther.mOwned);
        mOwnedSize = std::exchange(aOther.mOwnedSize, 0);
        mData = std::exchange(aOther.mData, nullptr);
        mDataSize = std::exchange(aOther.mDataSize, 0);
        mWidth = std::exchange(aOther.mWidth, 0);
        mHeight = std::exchange(aOther.mHeight, 0);
        mPixelType = std::exchange(aOther.mPixelType, LxPixelType::None);
        mPaddingX = std::exchange(aOther.mPaddingX, 0);
        mPaddingY = std::exchange(aOther.mPaddingY, 0);
        mOffsetX = std::exchange(aOther.mOffsetX, 0);
        mOffsetY = std::exchange(aOther.mOffsetY, 0);
    }
    return *this;
}

LxResult LxImage::Alloc(uint32_t aWidth, uint32_t aHeight, LxPixelType aPixelType, uint32_t aPaddingX,
                        uint32_t aPaddingY)
{
    uint64_t size = 0;
    const LxResult result = GetCheckedSize(size, aWidth, aHeight, aPixelType, aPaddingX, aPaddingY);
    if (!result.IsOK()) {
        return result;
    }
    if (!mOwned || mOwnedSize < size) {
        const uint64_t rounded = (size + Alignment - 1) / Alignment * Alignment;
        void *const memory = Allocate(rounded);
        if (!memory) {
            return LxResult(LxResultCode::NoMemory,
                            "There is no memory for an image of " + std::to_string(size) + " bytes.");
        }
        mOwned.reset(memory);
        mOwnedSize = size;
    }
    SetGeometry(mOwned.get(), size, aWidth, aHeight, aPixelType, aPaddingX, aPaddingY);
    return LxResult();
}

LxResult LxImage::Attach(void *aData, uint32_t aWidth, uint32_t aHeight, LxPixelType aPixelType, uint32_t aPaddingX,
                         uint32_t aPaddingY)
{
    return AttachSized(aData, LxPixelTypeGetImageSize(aPixelType, aWidth, aHeight, aPaddingX, aPaddingY), aWidth,
                       aHeight, aPixelType, aPaddingX, aPaddingY);
}

LxResult LxImage::AttachSized(void *aData, uint64_t aSize, uint32_t aWidth, uint32_t aHeight, LxPixelType aPixelType,
                              uint32_t aPaddingX, uint32_t aPaddingY)
{
    if (!aData) {
        return LxResult(LxResultCode::InvalidArgument, "There is no memory to attach: the pointer is null.");
    }
    uint64_t needed = 0;
    const LxResult result = GetCheckedSize(needed, aWidth, aHeight, aPixelType, aPaddingX, aPaddingY);
    if (!result.IsOK()) {
        return result;
    }
    if (aSize < needed) {
        return LxResult(LxResultCode::BufferTooSmall, "The image needs " + std::to_string(needed) +
                                                          " bytes, the memory has " + std::to_string(aSize) + ".");
    }
    mOwned.reset();
    mOwnedSize = 0;
    SetGeometry(aData, aSize, aWidth, aHeight, aPixelType, aPaddingX, aPaddingY);
    return LxResult();
}

void LxImage::Detach()
{
    Free();
}

void LxImage::Free()
{
    *this = LxImage();
}

void LxImage::SetOffset(uint32_t aOffsetX, uint32_t aOffsetY)
{
    mOffsetX = aOffsetX;
    mOffsetY = aOffsetY;
}

void LxImage::SetGeometry(void *aData, uint64_t aSize, uint32_t aWidth, uint32_t aHeight, LxPixelType aPixelType,
                          uint32_t aPaddingX, uint32_t aPaddingY)
{
    mData = aData;
    mDataSize = aSize;
    mWidth = aWidth;
    mHeight = aHeight;
    mPixelType = aPixelType;
    mPaddingX = aPaddingX;
    mPaddingY = aPaddingY;
    mOffsetX = 0;
    mOffsetY = 0;
}
