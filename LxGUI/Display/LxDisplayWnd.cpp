#include "LxGUI/LxDisplayWnd.h"

#include "LxGUI/Display/DisplayWnd.h"
#include "LxGUI/Display/RendererInfo.h"
#include "LxGUI/Frame/InternalWindow.h"
#include "LxGUI/Frame/Text.h"

namespace
{

// For what any thread may call, and for plain values.
DisplayWnd *DisplayOf(Wnd *aWnd)
{
    return static_cast<DisplayWnd *>(aWnd);
}

LxResult NoWindow()
{
    return LxResultCode::InvalidArgument;
}

LxRendererMode ToPublicMode(int aMode)
{
    return aMode >= LxRendererModeSoftware && aMode <= LxRendererModeReserved ? static_cast<LxRendererMode>(aMode)
                                                                              : LxRendererModeUnknown;
}

}  // namespace

LxDisplayWnd::LxDisplayWnd(int)
{
    mWnd = MakeInternal<DisplayWnd>("LxDisplayWnd");
}

LxDisplayWnd::~LxDisplayWnd()
{
    DeleteInternal("~LxDisplayWnd", mWnd);
}

LxResult LxDisplayWnd::Display(const LxBuffer &aBuffer, bool aVSync)
{
    return mWnd ? DisplayOf(mWnd)->Display(aBuffer, aVSync) : NoWindow();
}

LxResult LxDisplayWnd::Display(const ILxImage *aImage, bool aVSync)
{
    return mWnd ? DisplayOf(mWnd)->Display(aImage, aVSync) : NoWindow();
}

LxResult LxDisplayWnd::Display(const ILxGenDCImage *aImage, bool aVSync)
{
    return mWnd ? DisplayOf(mWnd)->Display(aImage, aVSync) : NoWindow();
}

void LxDisplayWnd::Clear()
{
    if (mWnd) {
        DisplayOf(mWnd)->Clear();
    }
}

void LxDisplayWnd::Refresh()
{
    if (mWnd) {
        DisplayOf(mWnd)->Refresh();
    }
}

LxBufferConverter &LxDisplayWnd::GetConverter()
{
    static LxBufferConverter sNone;  // of a window that was made on a wrong thread
    return mWnd ? DisplayOf(mWnd)->GetConverter() : sNone;
}

LxBuffer &LxDisplayWnd::GetInternalBuffer()
{
    static LxBuffer sNone(LxPayloadType::Image);  // of a window that was made on a wrong thread
    return mWnd ? DisplayOf(mWnd)->GetInternalBuffer() : sNone;
}

LxResult LxDisplayWnd::SetBackgroundColor(unsigned char aRed, unsigned char aGreen, unsigned char aBlue)
{
    auto *const wnd = Internal<DisplayWnd>(mWnd, "LxDisplayWnd::SetBackgroundColor()");
    return wnd ? wnd->SetBackgroundColor(QColor(aRed, aGreen, aBlue)) : NoWindow();
}

void LxDisplayWnd::GetBackgroundColor(unsigned char &aRed, unsigned char &aGreen, unsigned char &aBlue)
{
    const QColor color = mWnd ? DisplayOf(mWnd)->GetBackgroundColor() : QColor();
    aRed = static_cast<unsigned char>(color.red());
    aGreen = static_cast<unsigned char>(color.green());
    aBlue = static_cast<unsigned char>(color.blue());
}

void LxDisplayWnd::SetTextOverlay(const LxString &aText)
{
    if (mWnd) {
        DisplayOf(mWnd)->SetTextOverlay(ToQString(aText));
    }
}

LxString LxDisplayWnd::GetTextOverlay()
{
    return mWnd ? ToLxString(DisplayOf(mWnd)->GetTextOverlay()) : LxString();
}

LxResult LxDisplayWnd::SetTextOverlaySize(int aSize)
{
    if (mWnd) {
        DisplayOf(mWnd)->SetTextOverlaySize(aSize);
    }
    return LxResult();
}

int LxDisplayWnd::GetTextOverlaySize()
{
    return mWnd ? DisplayOf(mWnd)->GetTextOverlaySize() : 0;
}

void LxDisplayWnd::SetTextOverlayOffsetX(unsigned int aOffset)
{
    if (mWnd) {
        DisplayOf(mWnd)->SetTextOverlayOffsetX(aOffset);
    }
}

void LxDisplayWnd::SetTextOverlayOffsetY(unsigned int aOffset)
{
    if (mWnd) {
        DisplayOf(mWnd)->SetTextOverlayOffsetY(aOffset);
    }
}

int LxDisplayWnd::GetTextOverlayOffsetX()
{
    return mWnd ? DisplayOf(mWnd)->GetTextOverlayOffsetX() : 0;
}

int LxDisplayWnd::GetTextOverlayOffsetY()
{
    return mWnd ? DisplayOf(mWnd)->GetTextOverlayOffsetY() : 0;
}

void LxDisplayWnd::SetTextOverlayColor(unsigned char, unsigned char, unsigned char) {}

void LxDisplayWnd::GetTextOverlayColor(unsigned char &, unsigned char &, unsigned char &) {}

void LxDisplayWnd::Zoom1To1()
{
    if (auto *const wnd = Internal<DisplayWnd>(mWnd, "LxDisplayWnd::Zoom1To1()")) {
        wnd->OnMainZoom1To1();
    }
}

void LxDisplayWnd::ZoomFit()
{
    if (auto *const wnd = Internal<DisplayWnd>(mWnd, "LxDisplayWnd::ZoomFit()")) {
        wnd->OnMainZoomFit();
    }
}

void LxDisplayWnd::ZoomIn()
{
    if (auto *const wnd = Internal<DisplayWnd>(mWnd, "LxDisplayWnd::ZoomIn()")) {
        wnd->OnMainZoomIn();
    }
}

void LxDisplayWnd::ZoomOut()
{
    if (auto *const wnd = Internal<DisplayWnd>(mWnd, "LxDisplayWnd::ZoomOut()")) {
        wnd->OnMainZoomOut();
    }
}

bool LxDisplayWnd::PictureAt(int aX, int aY, unsigned int &aPictureX, unsigned int &aPictureY)
{
    auto *const wnd = Internal<DisplayWnd>(mWnd, "LxDisplayWnd::PictureAt()");
    const QPoint pixel = wnd ? wnd->PictureAt(QPoint(aX, aY)) : QPoint(-1, -1);
    if (pixel.x() < 0) {
        return false;
    }
    aPictureX = static_cast<unsigned>(pixel.x());
    aPictureY = static_cast<unsigned>(pixel.y());
    return true;
}

LxRendererMode LxDisplayWnd::GetRendererMode()
{
    return mWnd ? ToPublicMode(DisplayOf(mWnd)->GetRendererMode()) : LxRendererModeSoftware;
}

LxResult LxDisplayWnd::SetRendererMode(LxRendererMode aMode)
{
    return mWnd ? DisplayOf(mWnd)->SetRendererMode(aMode) : NoWindow();
}

LxString LxDisplayWnd::GetRenderer()
{
    return ToLxString(QStringLiteral("OpenGL ") + RendererInfo::Get().mStrings.mRenderer);
}

LxString LxDisplayWnd::GetRendererVersion()
{
    return ToLxString(RendererInfo::Get().mStrings.mVersion);
}

LxRendererMode LxDisplayWnd::GetHighestRendererMode()
{
    return ToPublicMode(RendererInfo::Get().mHighestMode);
}
