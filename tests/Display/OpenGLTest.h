#pragma once

#include <atomic>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "DisplayTest.h"
#include "LxGUI/Display/GLDisplay.h"
#include "LxGUI/Display/OpenGLFunctions.h"
#include "WaitFor.h"

/// Stands between the display and OpenGL: counts calls, and makes entry points missing or failing. One at a time.
struct OpenGLSpy
{
    OpenGLSpy();
    ~OpenGLSpy();

    std::set<std::string> mMissing;
    bool mFailMaps = false;
    bool mDirtyMaps = false;         ///< Mapped memory comes with garbage, as it may.
    QByteArray mPlatformExtensions;  ///< What the platform says it has; its own list when empty.

    int mBuffersMade = 0;
    int mTexturesMade = 0;
    int mMaps = 0;
    int mQuads = 0;
    std::vector<GLsizeiptr> mStorage;  ///< The sizes of all memory that buffers were given for streaming, in bytes.
    std::vector<QSize> mUploads;       ///< The sizes of all texture images.
    std::vector<std::string> mSwapControl;  ///< Calls, for example "SGI 1".
};

/// A display that draws by OpenGL, in a host widget of its own, on an X server.
class OpenGLTest : public DisplayTest
{
protected:
    void SetUp() override;
    GLDisplay *GL() const { return mHost.findChild<GLDisplay *>(); }
    /// What the X server shows of a widget.
    QImage Screen(QWidget *aWidget);
    QImage Screen() { return Screen(&mHost); }

    OpenGLSpy mSpy;
};

/// Runs something on another thread while the GUI thread handles events.
template <typename Function>
void OnAnotherThread(Function aFunction)
{
    std::atomic<bool> done{false};
    std::thread thread([&] {
        aFunction();
        done = true;
    });
    EXPECT_TRUE(WaitForGui([&] { return done.load(); }));
    thread.join();
}

/// What a picture looks like when a renderer fits it into a window: in the fitted rectangle each pixel is the nearest
/// pixel of the picture, or one of its neighbours up to a distance; outside there is the background. Returns the pixels
/// of which that is not true.
std::vector<QPoint> FindWrongPixels(const QImage &aShot, const LxImage &aPicture, QRgb aBackground, int aDistance = 0);
/// Fails when there are any.
void ExpectFitted(const QImage &aShot, const LxImage &aPicture, QRgb aBackground, int aDistance = 0);
