#pragma once

#include <gtest/gtest.h>

#include <string>

#include "FakeFeatures.h"
#include "LxGUI/GenBrowser/GenBrowserTreeItem.h"

/// A tree item of a fake.
struct Item : GenBrowserTreeItem
{
    explicit Item(LxGenParameter &aParameter, bool aUseDisplayNames = false,
                  LxGenVisibility aLevel = LxGenVisibilityBeginner)
        : GenBrowserTreeItem(nullptr, &aParameter, nullptr, aLevel, aUseDisplayNames)
    {
    }
    QString RefreshedText()
    {
        Refresh();
        return ValueText();
    }
    QString RefreshedError()
    {
        Refresh();
        return ErrorMsg();
    }
};

/// A failure whose description starts with its place in the source.
inline LxResult Located(const char *aText)
{
    return LxResult(LxResultCode::Timeout, std::string("LxGenParameter.cpp:120 ") + aText);
}
