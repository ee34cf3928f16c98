// The library as hosts have it: loaded and unloaded at run time.

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <new>

#include "LxGUI/LxRegisterInterfaceWnd.h"

/// What lies below the library stays, so that what it keeps for good is no leak.
class SharedLibrary : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        ASSERT_NE(dlopen(LXSDK_LIBRARY, RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE), nullptr) << dlerror();
    }
};

TEST_F(SharedLibrary, RegistersItsResourcesAtLoadAndUnregistersThemAtUnload)
{
    const QString bitmap = QStringLiteral(":LxGUI/res/finder_icons16.bmp");
    ASSERT_FALSE(QFile::exists(bitmap));
    void *library = dlopen(LXGUI_LIBRARY, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(library, nullptr) << dlerror();
    EXPECT_TRUE(QFile::exists(bitmap));
    ASSERT_EQ(dlclose(library), 0);
    EXPECT_EQ(dlopen(LXGUI_LIBRARY, RTLD_NOW | RTLD_NOLOAD), nullptr) << "the library stays loaded";
    EXPECT_FALSE(QFile::exists(bitmap));
}

TEST_F(SharedLibrary, ExportsThePublicClassAndNoInternalOne)
{
    void *library = dlopen(LXGUI_LIBRARY, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(library, nullptr) << dlerror();
    EXPECT_NE(dlsym(library, "_ZN5LxWnd8DoEventsEv"), nullptr);
    EXPECT_EQ(dlsym(library, "_ZN3Wnd8DoEventsEv"), nullptr);
    dlclose(library);
}

namespace
{

/// Shows the smallest window of a loaded copy of the library.
void ShowAWindow(void *aLibrary)
{
    const auto find = [&](const char *aName) {
        void *function = dlsym(aLibrary, aName);
        EXPECT_NE(function, nullptr) << aName;
        return function;
    };
    const auto make = reinterpret_cast<void (*)(void *)>(find("_ZN22LxRegisterInterfaceWndC1Ev"));
    const auto destroy = reinterpret_cast<void (*)(void *)>(find("_ZN22LxRegisterInterfaceWndD1Ev"));
    const auto isVisible = reinterpret_cast<bool (*)(void *)>(find("_ZNK5LxWnd9IsVisibleEv"));
    const auto doEvents = reinterpret_cast<void (*)()>(find("_ZN5LxWnd8DoEventsEv"));
    const auto create = reinterpret_cast<LxResult (*)(void *, HWND, int)>(find("_ZN5LxWnd6CreateEP6HWND__i"));
    alignas(LxRegisterInterfaceWnd) unsigned char window[sizeof(LxRegisterInterfaceWnd)];
    make(window);
    create(window, nullptr, 0);
    doEvents();
    EXPECT_TRUE(isVisible(window));
    destroy(window);
    doEvents();
}

}  // namespace

TEST_F(SharedLibrary, ASecondCopyOfAnotherVersionIsReportedOnceAndBothWork)
{
    const QTemporaryDir folder;
    const QString other = folder.filePath("libLxGUI.so.99.0.0");
    ASSERT_TRUE(QFile::copy(LXGUI_LIBRARY, other));
    testing::internal::CaptureStderr();
    void *first = dlopen(LXGUI_LIBRARY, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(first, nullptr) << dlerror();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    testing::internal::CaptureStderr();
    void *second = dlopen(other.toUtf8().constData(), RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(second, nullptr) << dlerror();
    ASSERT_NE(first, second);
    const std::string said = testing::internal::GetCapturedStderr();
    const std::string text = "LxGUI: this process has loaded two copies of the library, ";
    EXPECT_EQ(said.find(text), 0u) << said;
    EXPECT_EQ(said.find(text, 1), std::string::npos) << said;
    EXPECT_NE(said.find("libLxGUI.so.99.0.0. They share nothing"), std::string::npos) << said;
    for (void *library : {first, second, first}) {
        ShowAWindow(library);
    }
    EXPECT_TRUE(QFile::exists(QStringLiteral(":LxGUI/res/Error.bmp")));
    ASSERT_EQ(dlclose(second), 0);
    EXPECT_TRUE(QFile::exists(QStringLiteral(":LxGUI/res/Error.bmp"))) << "the other copy's are still there";
    ShowAWindow(first);
    dlclose(first);
}
