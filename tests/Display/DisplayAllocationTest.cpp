// A stream of frames must not keep the heap busy.

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <new>

#include "DisplayTest.h"

namespace
{

std::atomic<bool> sCounting{false};
std::atomic<int> sAllocations{0};

}  // namespace

void *operator new(std::size_t aSize)
{
    if (sCounting) {
        ++sAllocations;
    }
    if (void *memory = std::malloc(aSize)) {
        return memory;
    }
    throw std::bad_alloc();
}

void operator delete(void *aMemory) noexcept
{
    std::free(aMemory);
}

void operator delete(void *aMemory, std::size_t) noexcept
{
    std::free(aMemory);
}

class DisplayAllocation : public DisplayTest
{
};

TEST_F(DisplayAllocation, AFrameLikeTheOneBeforeAllocatesNothing)
{
    ShowAt(200, 150);
    LxImage image;
    ASSERT_TRUE(image.Alloc(64, 48, LxPixelType::Mono8).IsOK());
    memset(image.GetDataPointer(), 9, image.GetDataSize());
    const auto display = [&] {
        const LxResult result = mDisplay.Display(static_cast<const ILxImage *>(&image), false);
        return result.IsOK();
    };
    for (int i = 0; i < 3; ++i) {
        ASSERT_TRUE(display());
        Settle();
    }
    for (int i = 0; i < 5; ++i) {
        sAllocations = 0;
        sCounting = true;
        const bool shown = display();
        sCounting = false;
        EXPECT_TRUE(shown);
        EXPECT_EQ(sAllocations, 0) << "frame " << i;
        Settle();
    }
}
