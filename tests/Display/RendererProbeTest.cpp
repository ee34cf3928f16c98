#include <gmock/gmock.h>

#include <set>
#include <string>
#include <vector>

#include "LxGUI/Display/RendererProbe.h"

using testing::ElementsAre;

namespace
{

const QString Extensions = QStringLiteral("GL_ARB_multitexture GL_ARB_pixel_buffer_object GL_EXT_bgra");

/// A driver that has every entry point but some, and remembers what was asked for.
struct Driver
{
    std::set<std::string> mMissing;
    std::vector<std::string> mAsked;

    int Probe(const QString &aVersion, const QString &aRenderer = QStringLiteral("Vendor 9000"),
              const QString &aExtensions = Extensions)
    {
        mAsked.clear();
        return FindHighestRendererMode({aExtensions, aVersion, aRenderer}, [this](const char *aName) {
            mAsked.emplace_back(aName);
            return mMissing.count(aName) == 0;
        });
    }
};

const std::set<std::string> SwapIntervals = {"wglSwapIntervalEXT", "glXSwapIntervalSGI", "glXSwapIntervalMESA",
                                             "glXSwapIntervalEXT"};

}  // namespace

TEST(RendererProbe, AsksForTheSevenEntryPointsInOrder)
{
    Driver driver;
    EXPECT_EQ(driver.Probe("4.5"), 1);
    EXPECT_THAT(driver.mAsked,
                ElementsAre("glGenBuffersARB", "glBindBufferARB", "glBufferDataARB", "glDeleteBuffersARB",
                            "glMapBufferARB", "glUnmapBufferARB", "wglSwapIntervalEXT"));
}

TEST(RendererProbe, NeedsVersionOneFiveOrTwo)
{
    const std::pair<const char *, int> versions[] = {
        {"1.5", 1},
        {"1.5.0 Vendor", 1},
        {"1.5 Mesa 22.3.6", 1},
        {"1.10", 1},
        {"2.0", 1},
        {"2.1.2 Vendor", 1},
        {"10.1", 1},
        {"4.5 (Compatibility Profile) Mesa 22.3.6", 1},
        {"2", 1},
        {"1.4", 0},
        {"1.4 (4.6 Mesa)", 0},
        {"1.0", 0},
        {"1", 0},
        {"1.", 0},
        {"0.9", 0},
        {"", 0},
        {"N/A", 0},
        {"OpenGL ES 3.2", 0},
        {"-2.1", 0},
    };
    for (const auto &[version, mode] : versions) {
        EXPECT_EQ(Driver().Probe(version), mode) << version;
    }
}

TEST(RendererProbe, NeedsPixelBufferObjectsWrittenExactly)
{
    EXPECT_EQ(Driver().Probe("4.5", "Vendor", "GL_ARB_multitexture"), 0);
    EXPECT_EQ(Driver().Probe("4.5", "Vendor", "gl_arb_pixel_buffer_object"), 0);
    EXPECT_EQ(Driver().Probe("4.5", "Mesa Software", ""), 0) << "no name makes up for it";
}

TEST(RendererProbe, EveryBufferEntryPointIsNeeded)
{
    for (const char *name : {"glGenBuffersARB", "glBindBufferARB", "glBufferDataARB", "glDeleteBuffersARB",
                             "glMapBufferARB", "glUnmapBufferARB"})
    {
        Driver driver{{name}, {}};
        EXPECT_EQ(driver.Probe("4.5"), 0) << name;
        EXPECT_EQ(driver.Probe("4.5", "Mesa DRI"), 1) << name;
        EXPECT_EQ(driver.Probe("4.5", "Software Rasterizer"), 1) << name;
        EXPECT_EQ(driver.Probe("4.5", "mesa software"), 0) << "case counts";
        EXPECT_EQ(driver.Probe("1.4", "Mesa DRI"), 0) << "the version counts all the same";
    }
}

TEST(RendererProbe, TheSwapIntervalMayComeFromThePlatform)
{
    for (const std::string &name : SwapIntervals) {
        Driver driver{SwapIntervals, {}};
        EXPECT_EQ(driver.Probe("4.5"), 0);
        EXPECT_EQ(driver.Probe("4.5", "Mesa"), 1) << "trusted without";
        driver.mMissing.erase(name);
        EXPECT_EQ(driver.Probe("4.5"), 1) << name;
    }
}
