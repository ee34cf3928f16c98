#include "LxCameraBridge/ZipFile.h"

#include <gtest/gtest.h>

#include "LxCameraBridge/GenCPManifest.h"

using namespace LxDetail;

TEST(ZipFile, MemberComesBack)
{
    for (const std::string &content :
         {std::string(), std::string("x"), std::string(100000, 'a'), std::string("\0\xFF", 2)}) {
        const std::string zip = MakeZip("camera.xml", content);
        EXPECT_TRUE(IsZip(zip));
        std::string extracted = "untouched";
        ASSERT_TRUE(ExtractZip(zip, 1 << 20, extracted).IsOK());
        EXPECT_EQ(extracted, content);
    }
}

TEST(ZipFile, EveryTruncationAndDamageIsRefusedOrHarmless)
{
    const std::string content = "<RegisterDescription>" + std::string(300, ' ') + "</RegisterDescription>";
    const std::string zip = MakeZip("camera.xml", content);
    std::string extracted;
    for (size_t size = 0; size < zip.size(); ++size) {
        EXPECT_EQ(ExtractZip(zip.substr(0, size), 1 << 20, extracted), LxResultCode::InvalidDataFormat) << size;
    }
    for (size_t i = 0; i < zip.size(); ++i) {
        std::string damaged = zip;
        damaged[i] = static_cast<char>(damaged[i] ^ 0xFF);
        if (ExtractZip(damaged, 1 << 20, extracted).IsOK()) {
            EXPECT_EQ(extracted, content) << i;
        }
    }
    EXPECT_EQ(ExtractZip(zip, content.size() - 1, extracted), LxResultCode::InvalidDataFormat);
}

TEST(SHA1, IsThatOfTheStandardsExample)
{
    const auto digest = ComputeSHA1("abc");
    EXPECT_EQ(digest[0], 0xA9);
    EXPECT_EQ(digest[1], 0x99);
    EXPECT_EQ(digest[19], 0x9D);
}
