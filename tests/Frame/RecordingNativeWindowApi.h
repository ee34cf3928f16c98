#pragma once

#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "LxGUI/Frame/NativeWindowApi.h"

/// Takes the place of the platform's native calls while it lives, records them as texts and answers as scripted.
/// Handles appear as "child" (whatever is not the parent) and "parent".
class RecordingNativeWindowApi : public NativeWindowApi
{
public:
    explicit RecordingNativeWindowApi(HWND aParent) : mParent(aParent) { ReplaceNativeWindows(this); }
    ~RecordingNativeWindowApi() override { ReplaceNativeWindows(nullptr); }
    RecordingNativeWindowApi(const RecordingNativeWindowApi &) = delete;
    RecordingNativeWindowApi &operator=(const RecordingNativeWindowApi &) = delete;

    HWND SetParent(HWND aChild, HWND aParent) override
    {
        Record("SetParent(%s, %s)", Name(aChild), Name(aParent));
        mChildsParent = aParent;
        return nullptr;
    }

    HWND GetParent(HWND aWindow) override
    {
        Record("GetParent(%s)", Name(aWindow));
        return mChildsParent;
    }

    int32_t GetWindowLongW(HWND aWindow, int aIndex) override
    {
        Record("GetWindowLongW(%s, %d)", Name(aWindow), aIndex);
        return mLongs[aIndex];
    }

    int32_t SetWindowLongW(HWND aWindow, int aIndex, int32_t aValue) override
    {
        Record("SetWindowLongW(%s, %d, 0x%08X)", Name(aWindow), aIndex, static_cast<uint32_t>(aValue));
        const int32_t before = mLongs[aIndex];
        mLongs[aIndex] = aValue;
        return before;
    }

    bool SetWindowPos(HWND aWindow, HWND aAfter, int aX, int aY, int aWidth, int aHeight, uint32_t aFlags) override
    {
        Record("SetWindowPos(%s, %s, %d, %d, %d, %d, 0x%X)", Name(aWindow), Name(aAfter), aX, aY, aWidth, aHeight,
               aFlags);
        return true;
    }

    bool GetClientRect(HWND aWindow, NativeRect &aRect) override
    {
        Record("GetClientRect(%s)", Name(aWindow));
        if (mClientRects.empty()) {
            return false;
        }
        aRect = mClientRects.front();
        mClientRects.erase(mClientRects.begin());
        return true;
    }

    bool PostMessageW(HWND aWindow, uint32_t aMessage, uintptr_t aWParam, intptr_t aLParam) override
    {
        Record("PostMessageW(%s, %u, %u, 0x%08X)", Name(aWindow), aMessage, static_cast<unsigned>(aWParam),
               static_cast<unsigned>(aLParam));
        return true;
    }

    bool PostMessageA(HWND aWindow, uint32_t aMessage, uintptr_t aWParam, intptr_t aLParam) override
    {
        Record("PostMessageA(%s, %u, %u, 0x%08X)", Name(aWindow), aMessage, static_cast<unsigned>(aWParam),
               static_cast<unsigned>(aLParam));
        return true;
    }

    std::vector<std::string> mCalls;
    std::map<int, int32_t> mLongs;         // The child's values by index.
    std::vector<NativeRect> mClientRects;  // One for each call that succeeds; then it fails.
    HWND mChildsParent = nullptr;

private:
    template <typename... Values>
    void Record(const char *aFormat, Values... aValues)
    {
        char text[200];
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
        std::snprintf(text, sizeof(text), aFormat, aValues...);
#pragma GCC diagnostic pop
        mCalls.emplace_back(text);
    }

    const char *Name(HWND aWindow) const
    {
        return !aWindow ? "null" : aWindow == mParent ? "parent" : "child";
    }

    const HWND mParent;
};
