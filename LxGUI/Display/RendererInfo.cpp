#include "LxGUI/Display/RendererInfo.h"

RendererInfo &RendererInfo::Get()
{
    // deliberately leaked: displays may be used until the very end of the process
    static auto *info = new RendererInfo;
    return *info;
}
