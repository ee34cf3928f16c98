// The library as hosts have it: loaded and unloaded at run time.

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <QtCore/QFile>

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
