#pragma once

#include "LxGUI/LxWnd.h"

class ILxGenDCImage;
class ILxImage;
class LxBuffer;
class LxBufferConverter;

/// How a display draws.
enum LxRendererMode : int
{
    LxRendererModeSoftware = 0,  ///< Drawn by the processor.
    LxRendererModeOpenGL = 1,    ///< Drawn by OpenGL.
    LxRendererModeReserved = 2,  ///< Accepted as a value, never available.
    LxRendererModeUnknown = 999,
};

/// Shows images, with zoom, scrolling, a background colour and a text over the picture. Drawn by OpenGL, the whole
/// picture is always fitted into the window: zoom and scrolling belong to the software renderer.
///
/// Display(), Clear(), Refresh(), and what concerns the renderer and the text overlay, may be called from any thread;
/// all others on the GUI thread. Stop calling them before the object is destroyed; a Display() that still waits for the
/// screen then is let go.
/// @thread{GUI}
class LXGUI_API LxDisplayWnd : public LxWnd
{
public:
    /// The argument is kept for the interface and has no effect.
    /// @thread{GUI}
    explicit LxDisplayWnd(int aReserved = 0);
    ~LxDisplayWnd() override;

    /// Shows what a buffer carries: the first image of a GenDC container, else its image, else its H.264 access unit.
    /// The data are taken before the call returns. In OpenGL mode the call waits until the GUI thread has taken the
    /// frame, which paces an acquisition thread by the screen; a frame not taken within 500 ms, for example because the
    /// window is hidden, is dropped, and the result is OK all the same. In OpenGL mode a frame of more than 4096 pixels
    /// in a direction is shown at half its size, and a frame that cannot be converted is shown as nothing, with OK.
    /// @param aVSync asks for vertical synchronisation; for OpenGL only.
    /// @return NoImage (0x0501) when there is nothing to show or a dimension or the pixel type is 0, Failed (0x4000)
    ///         when H.264 data gave no picture, else what the conversion reports.
    /// @thread{any}
    LxResult Display(const LxBuffer &aBuffer, bool aVSync = false);
    /// Shows one image. InvalidArgument (0x4001) for a null pointer, else as above.
    /// @thread{any}
    LxResult Display(const ILxImage *aImage, bool aVSync = false);
    /// Shows the image of a part of a GenDC container. Results as above.
    /// @thread{any}
    LxResult Display(const ILxGenDCImage *aImage, bool aVSync = false);
    /// Empties the display and forgets the text overlay.
    /// @thread{any}
    void Clear();
    /// Asks for a repaint; returns at once.
    /// @thread{any}
    void Refresh();

    /// The converter that makes pictures of incoming frames, for configuration. Do not use it while Display() runs.
    /// @thread{GUI}
    LxBufferConverter &GetConverter();
    /// The converted picture of the software renderer. Do not use it while Display() runs.
    /// @thread{GUI}
    LxBuffer &GetInternalBuffer();

    /// The colour behind and around the picture. Always OK.
    /// @thread{GUI}
    LxResult SetBackgroundColor(unsigned char aRed, unsigned char aGreen, unsigned char aBlue);
    /// The colour that was set; dark grey (128, 128, 128) from the start.
    /// @thread{GUI}
    void GetBackgroundColor(unsigned char &aRed, unsigned char &aGreen, unsigned char &aBlue);

    /// A text over the picture's top left corner, several lines allowed; shown from the next Display() on.
    /// @thread{any}
    void SetTextOverlay(const LxString &aText);
    /// The text last set, also when it is not shown yet.
    /// @thread{any}
    LxString GetTextOverlay();
    /// The size of the overlay's font in points; 11 from the start. Always OK; a size below 1 is ignored by the font.
    /// @thread{any}
    LxResult SetTextOverlaySize(int aSize);
    /// As it was set, in points.
    /// @thread{any}
    int GetTextOverlaySize();
    /// Where the overlay starts, in pixels from the picture's left edge; 10 from the start.
    /// @thread{any}
    void SetTextOverlayOffsetX(unsigned int aOffset);
    /// The same from its top edge; 10 from the start.
    /// @thread{any}
    void SetTextOverlayOffsetY(unsigned int aOffset);
    /// As it was set, in pixels.
    /// @thread{any}
    int GetTextOverlayOffsetX();
    /// As it was set, in pixels.
    /// @thread{any}
    int GetTextOverlayOffsetY();
    /// Does nothing: the overlay is green.
    /// @thread{any}
    void SetTextOverlayColor(unsigned char aRed, unsigned char aGreen, unsigned char aBlue);
    /// Does nothing, and leaves its arguments as they are.
    /// @thread{any}
    void GetTextOverlayColor(unsigned char &aRed, unsigned char &aGreen, unsigned char &aBlue);

    /// One pixel of the picture on one of the screen. This and the next three are the actions of the context menu, for
    /// a host's own menus; drawn by OpenGL they show when the software renderer draws again.
    /// @thread{GUI}
    void Zoom1To1();
    /// Fits the whole picture into the window, and keeps it so while the window is resized.
    /// @thread{GUI}
    void ZoomFit();
    /// One step closer.
    /// @thread{GUI}
    void ZoomIn();
    /// One step away.
    /// @thread{GUI}
    void ZoomOut();

    /// The pixel of the shown picture at a point of the display's widget, by both renderers; false where no picture is.
    /// Of a frame that is shown at half its size it is the pixel of the whole frame.
    /// @thread{GUI}
    bool PictureAt(int aX, int aY, unsigned int &aPictureX, unsigned int &aPictureY);

    /// The renderer that draws now.
    /// @thread{any}
    LxRendererMode GetRendererMode();
    /// Changes the renderer and clears the display. Waits for the GUI thread when it is called on another one, so the
    /// GUI thread must not wait for the caller meanwhile.
    /// @return InvalidArgument (0x4001) for an unknown value, and once the QApplication of a window that was shown has
    ///         ended; Unavailable (26) for a mode above the highest.
    /// @thread{any}
    LxResult SetRendererMode(LxRendererMode aMode);
    /// "OpenGL " and the name of the OpenGL renderer; "OpenGL Default" when none was found. Like the next two it asks
    /// OpenGL once for the process, for which it waits for the GUI thread; before there is a QApplication it knows
    /// nothing yet.
    /// @thread{any}
    static LxString GetRenderer();
    /// The OpenGL version; "N/A" when there is none.
    /// @thread{any}
    static LxString GetRendererVersion();
    /// The highest mode that can be used on this machine.
    /// @thread{any}
    static LxRendererMode GetHighestRendererMode();
};
