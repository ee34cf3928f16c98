#include "LxGUI/LxDisplayWnd.h"

#include "LxGUI/Display/DisplayWnd.h"
#include "LxGUI/Display/RendererInfo.h"
#include "LxGUI/Frame/Text.h"

namespace
{

DisplayWnd &Internal(Wnd *aWnd)
{
    return *static_cast<DisplayWnd *>(aWnd);
}

LxRendererMode ToPublicMode(int aMode)
{
    return aMode >= LxRendererModeSoftware && aMode <= LxRendererModeReserved ? static_cast<LxRendererMode>(aMode)
                                                                              : LxRendererModeUnknown;
}

}  // namespace

LxDisplayWnd::LxDisplayWnd(int)
{
    mWnd = new DisplayWnd;
}

LxDisplayWnd::~LxDisplayWnd()
{
    delete mWnd;
    mWnd = nullptr;
}

LxResult LxDisplayWnd::Display(const LxBuffer &aBuffer, bool aVSync)
{
    return Internal(mWnd).Display(aBuffer, aVSync);
}

LxResult LxDisplayWnd::Display(const ILxImage *aImage, bool aVSync)
{
    return Internal(mWnd).Display(aImage, aVSync);
}

LxResult LxDisplayWnd::Display(const ILxGenDCImage *aImage, bool aVSync)
{
    return Internal(mWnd).Display(aImage, aVSync);
}

void LxDisplayWnd::Clear()
{
    Internal(mWnd).Clear();
}

void LxDisplayWnd::Refresh()
{
    Internal(mWnd).Refresh();
}

LxBufferConverter &LxDisplayWnd::GetConverter()
{
    return Internal(mWnd).GetConverter();
}

LxBuffer &LxDisplayWnd::GetInternalBuffer()
{
    return Internal(mWnd).GetInternalBuffer();
}

LxResult LxDisplayWnd::SetBackgroundColor(unsigned char aRed, unsigned char aGreen, unsigned char aBlue)
{
    return Internal(mWnd).SetBackgroundColor(QColor(aRed, aGreen, aBlue));
}

void LxDisplayWnd::GetBackgroundColor(unsigned char &aRed, unsigned char &aGreen, unsigned char &aBlue)
{
    const QColor color = Internal(mWnd).GetBackgroundColor();
    aRed = static_cast<unsigned char>(color.red());
    aGreen = static_cast<unsigned char>(color.green());
    aBlue = static_cast<unsigned char>(color.blue());
}

void LxDisplayWnd::SetTextOverlay(const LxString &aText)
{
    Internal(mWnd).SetTextOverlay(ToQString(aText));
}

LxString LxDisplayWnd::GetTextOverlay()
{
    return ToLxString(Internal(mWnd).GetTextOverlay());
}

LxResult LxDisplayWnd::SetTextOverlaySize(int aSize)
{
    Internal(mWnd).SetTextOverlaySize(aSize);
    return LxResult();
}

int LxDisplayWnd::GetTextOverlaySize()
{
    return Internal(mWnd).GetTextOverlaySize();
}

void LxDisplayWnd::SetTextOverlayOffsetX(unsigned int aOffset)
{
    Internal(mWnd).SetTextOverlayOffsetX(aOffset);
}

void LxDisplayWnd::SetTextOverlayOffsetY(unsigned int aOffset)
{
    Internal(mWnd).SetTextOverlayOffsetY(aOffset);
}

int LxDisplayWnd::GetTextOverlayOffsetX()
{
    return Internal(mWnd).GetTextOverlayOffsetX();
}

int LxDisplayWnd::GetTextOverlayOffsetY()
{
    return Internal(mWnd).GetTextOverlayOffsetY();
}

void LxDisplayWnd::SetTextOverlayColor(unsigned char, unsigned char, unsigned char) {}

void LxDisplayWnd::GetTextOverlayColor(unsigned char &, unsigned char &, unsigned char &) {}

void LxDisplayWnd::Zoom1To1()
{
    Internal(mWnd).OnMainZoom1To1();
}

void LxDisplayWnd::ZoomFit()
{
    Internal(mWnd).OnMainZoomFit();
}

void LxDisplayWnd::ZoomIn()
{
    Internal(mWnd).OnMainZoomIn();
}

void LxDisplayWnd::ZoomOut()
{
    Internal(mWnd).OnMainZoomOut();
}

bool LxDisplayWnd::PictureAt(int aX, int aY, unsigned int &aPictureX, unsigned int &aPictureY)
{
    const QPoint pixel = Internal(mWnd).PictureAt(QPoint(aX, aY));
    if (pixel.x() < 0) {
        return false;
    }
    aPictureX = static_cast<unsigned>(pixel.x());
    aPictureY = static_cast<unsigned>(pixel.y());
    return true;
}

LxRendererMode LxDisplayWnd::GetRendererMode()
{
    return ToPublicMode(Internal(mWnd).GetRendererMode());
}

LxResult LxDisplayWnd::SetRendererMode(LxRendererMode aMode)
{
    return Internal(mWnd).SetRendererMode(aMode);
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
