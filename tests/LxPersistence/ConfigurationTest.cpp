#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "LxPersistence/ConfigurationText.h"
#include "LxPersistence/LxConfigurationReader.h"
#include "LxPersistence/LxConfigurationWriter.h"

namespace
{

class TemporaryFolder
{
public:
    TemporaryFolder()
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "lxgui-XXXXXX").string();
        mPath = mkdtemp(pattern.data());
    }
    ~TemporaryFolder() { std::filesystem::remove_all(mPath); }
    std::string File(const std::string &aName) const { return mPath + "/" + aName; }
    size_t Count() const { return static_cast<size_t>(std::distance(std::filesystem::directory_iterator(mPath), {})); }

private:
    std::string mPath;
};

LxPropertyList MakeList(std::initializer_list<std::pair<const char *, std::string>> aEntries)
{
    LxPropertyList list;
    for (const auto &[name, value] : aEntries) {
        list.Add(LxProperty(name, LxString(value)));
    }
    return list;
}

}  // namespace

TEST(LxConfiguration, ComesBackFromMemoryAsItWasStored)
{
    LxPropertyList first = MakeList({{"Visibility", "Guru"}, {"Names", "DisplayNames"}, {"Names", "again"}});
    LxPropertyList second = MakeList({{"empty", ""}});
    LxConfigurationWriter writer;
    ASSERT_TRUE(writer.Store(&first, "browser").IsOK());
    ASSERT_TRUE(writer.Store(&second, "other").IsOK());

    LxConfigurationReader reader;
    ASSERT_TRUE(reader.LoadFromString(writer.SaveToString()).IsOK());
    LxPropertyList list;
    ASSERT_TRUE(reader.Restore("browser", &list).IsOK());
    ASSERT_EQ(list.GetCount(), 3u);
    EXPECT_EQ(list.GetAt(0)->GetValue(), LxString("Guru"));
    EXPECT_EQ(list.GetAt(2)->GetName(), LxString("Names"));
    EXPECT_EQ(list.GetAt(2)->GetValue(), LxString("again"));
    ASSERT_TRUE(reader.Restore("other", &list).IsOK());
    ASSERT_EQ(list.GetCount(), 1u);
    EXPECT_EQ(list.GetAt(0)->GetValue(), LxString(""));
    EXPECT_EQ(reader.GetNames().GetSize(), 2u);
    EXPECT_EQ(reader.GetNames().GetItem(0), LxString("browser"));
}

TEST(LxConfiguration, EveryTextSurvives)
{
    const std::string texts[] = {
        "<&>\"' ]]>",           "line\nbreak\ttab",  "carriage\rreturn",         " blanks around ",
        "\xC3\xA4\xE2\x82\xAC", "\xFF\xFE no UTF-8", std::string("\x01\x02", 2), "%1 %n",
        "\xF0\x9F\x93\xB7",     "\xED\xA0\x80"};
    LxPropertyList list;
    for (const std::string &text : texts) {
        list.Add(LxProperty(LxString(text), LxString(text)));
    }
    LxConfigurationWriter writer;
    ASSERT_TRUE(writer.Store(&list, "texts").IsOK());
    LxConfigurationReader reader;
    const LxResult loaded = reader.LoadFromString(writer.SaveToString());
    ASSERT_TRUE(loaded.IsOK()) << loaded.GetDescription().GetAscii();
    LxPropertyList restored;
    ASSERT_TRUE(reader.Restore("texts", &restored).IsOK());
    ASSERT_EQ(restored.GetCount(), std::size(texts));
    for (size_t i = 0; i < std::size(texts); ++i) {
        EXPECT_EQ(restored.GetAt(i)->GetName().GetString(), texts[i]) << i;
        EXPECT_EQ(restored.GetAt(i)->GetValue().GetString(), texts[i]) << i;
    }
}

TEST(LxConfiguration, StoringANameAgainReplacesItInPlace)
{
    LxPropertyList one = MakeList({{"n", "1"}});
    LxPropertyList two = MakeList({{"n", "2"}});
    LxConfigurationWriter writer;
    writer.Store(&one, "a");
    writer.Store(&one, "b");
    writer.Store(&two, "a");
    LxConfigurationReader reader;
    ASSERT_TRUE(reader.LoadFromString(writer.SaveToString()).IsOK());
    ASSERT_EQ(reader.GetNames().GetSize(), 2u);
    EXPECT_EQ(reader.GetNames().GetItem(0), LxString("a"));
    LxPropertyList list;
    reader.Restore("a", &list);
    EXPECT_EQ(list.GetAt(0)->GetValue(), LxString("2"));
}

TEST(LxConfiguration, NullListsAndEmptyNamesAreRejected)
{
    LxPropertyList list;
    LxConfigurationWriter writer;
    EXPECT_TRUE(writer.Store(nullptr, "a") == LxResultCode::InvalidArgument);
    EXPECT_TRUE(writer.Store(&list, "") == LxResultCode::InvalidArgument);
    EXPECT_TRUE(writer.Store(&list, "\x01") == LxResultCode::InvalidArgument);
    EXPECT_TRUE(LxConfigurationReader().Restore("a", nullptr) == LxResultCode::InvalidArgument);
}

TEST(LxConfiguration, AnAbsentNameLeavesTheListUntouched)
{
    LxPropertyList list = MakeList({{"kept", "1"}});
    EXPECT_TRUE(LxConfigurationReader().Restore("absent", &list) == LxResultCode::NotFound);
    EXPECT_EQ(list.GetCount(), 1u);
}

TEST(LxConfiguration, UnreadableTextsFailWithAReasonAndKeepWhatWasLoaded)
{
    LxPropertyList list = MakeList({{"n", "1"}});
    LxConfigurationWriter writer;
    writer.Store(&list, "good");
    LxConfigurationReader reader;
    ASSERT_TRUE(reader.LoadFromString(writer.SaveToString()).IsOK());
    const char *cases[] = {
        "",
        "no xml at all",
        "<LxConfiguration version=\"1\">",
        "<Other version=\"1\"/>",
        "<LxConfiguration/>",
        "<LxConfiguration version=\"2\"/>",
        "<LxConfiguration version=\"1\"><PropertyList/></LxConfiguration>",
        "<LxConfiguration version=\"1\"><PropertyList name=\"a\"><Property/></PropertyList></LxConfiguration>",
        "<LxConfiguration version=\"1\"><PropertyList name=\"a\"><Property name=\"x\" value=\"?\" "
        "encoding=\"base64\"/></PropertyList></LxConfiguration>",
        "<LxConfiguration version=\"1\"><PropertyList name=\"a\"><Property name=\"x\" value=\"y\" "
        "encoding=\"rot13\"/></PropertyList></LxConfiguration>",
    };
    for (const char *text : cases) {
        const LxResult result = reader.LoadFromString(text);
        EXPECT_TRUE(result == LxResultCode::InvalidDataFormat) << text;
        EXPECT_FALSE(result.GetDescription().IsEmpty()) << text;
        LxPropertyList restored;
        EXPECT_TRUE(reader.Restore("good", &restored).IsOK()) << text;
    }
}

TEST(LxConfiguration, FilesAreWrittenWholeAndReadBack)
{
    const TemporaryFolder folder;
    LxPropertyList list = MakeList({{"n", "1"}});
    LxConfigurationWriter writer;
    writer.Store(&list, "a");
    ASSERT_TRUE(writer.Save(folder.File("config.xml")).IsOK());
    ASSERT_TRUE(writer.Save(folder.File("config.xml")).IsOK());
    EXPECT_EQ(folder.Count(), 1u) << "a temporary file was left behind";
    LxConfigurationReader reader;
    ASSERT_TRUE(reader.Load(folder.File("config.xml")).IsOK());
    EXPECT_TRUE(reader.Restore("a", &list).IsOK());
}

TEST(LxConfiguration, AFailedSaveLeavesTheOldFile)
{
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder.File("config.xml"));
    LxConfigurationWriter writer;
    const LxResult result = writer.Save(folder.File("config.xml"));
    EXPECT_TRUE(result == LxResultCode::FileError);
    EXPECT_FALSE(result.GetDescription().IsEmpty());
    EXPECT_TRUE(std::filesystem::is_directory(folder.File("config.xml")));
    EXPECT_EQ(folder.Count(), 1u);
    EXPECT_TRUE(writer.Save(folder.File("absent/config.xml")) == LxResultCode::FileError);
}

TEST(LxConfiguration, FilesThatCannotBeReadFail)
{
    const TemporaryFolder folder;
    LxConfigurationReader reader;
    EXPECT_TRUE(reader.Load(folder.File("absent.xml")) == LxResultCode::FileError);
    std::filesystem::create_directory(folder.File("folder.xml"));
    EXPECT_TRUE(reader.Load(folder.File("folder.xml")) == LxResultCode::FileError);
    std::ofstream(folder.File("text.xml")) << "not xml";
    EXPECT_TRUE(reader.Load(folder.File("text.xml")) == LxResultCode::InvalidDataFormat);
}

TEST(ConfigurationText, Base64RoundTripsEveryLengthAndRejectsGarbage)
{
    std::string bytes;
    for (int length = 0; length < 70; ++length) {
        EXPECT_EQ(LxDetail::DecodeBase64(LxDetail::EncodeBase64(bytes)), bytes);
        bytes += static_cast<char>(length * 37);
    }
    EXPECT_EQ(LxDetail::EncodeBase64("Man"), "TWFu");
    EXPECT_EQ(LxDetail::EncodeBase64("Ma"), "TWE=");
    EXPECT_EQ(LxDetail::EncodeBase64("M"), "TQ==");
    for (const char *text : {"TWF", "T===", "TW=u", "TW F", "====", "TQ==TQ=="}) {
        EXPECT_FALSE(LxDetail::DecodeBase64(text).has_value()) << text;
    }
}
