// The machine's settings as tools write them: the text of a settings file, and the store itself.
#include "platform/tool_settings.h"

#include <gtest/gtest.h>

using namespace platform::tool;

namespace {

constexpr const char* c_szFile = "; mine\n[A\\B]\none = 1\n; about two\nTwo = \"x\"\n\n[C]\nz = 3\n";

Setting Number(u32 u) { return {"", "Two", u, "", false}; }

} // namespace

TEST(ToolSettings, AValueTakesThePlaceOfTheOneThatIsThere) {
    EXPECT_EQ(WithSetting(c_szFile, "a\\b", Number(7)),
              "; mine\n[A\\B]\none = 1\n; about two\nTwo = 7\n\n[C]\nz = 3\n");
}

TEST(ToolSettings, ANewValueStandsAtTheEndOfItsSection) {
    EXPECT_EQ(WithSetting(c_szFile, "C", Number(7)), std::string(c_szFile) + "Two = 7\n");
}

TEST(ToolSettings, ANewKeyStandsAtTheEndOfTheFile) {
    EXPECT_EQ(WithSetting("", "D", Number(7)), "[D]\nTwo = 7\n");
    EXPECT_EQ(WithSetting("[C]\nz = 3", "D", Number(7)), "[C]\nz = 3\n\n[D]\nTwo = 7\n");
    EXPECT_EQ(WithSetting("\xEF\xBB\xBF", "D", Number(7)), "\xEF\xBB\xBF\n\n[D]\nTwo = 7\n");
}

TEST(ToolSettings, ATextOfDigitsStaysAText) {
    EXPECT_EQ(WithSetting("", "D", {"", "n", {}, "12 ", false}), "[D]\nn = \"12 \"\n");
}

TEST(ToolSettings, LaterLinesOfThatNameGoToo) {
    EXPECT_EQ(WithSetting("[D]\ntwo = 1\nx\n[E]\n[d]\nTWO=2\r\n", "D", Number(7)),
              "[D]\nTwo = 7\nx\n[E]\n[d]\n");
}

TEST(ToolSettings, ARemovedValueLeavesTheRest) {
    EXPECT_EQ(WithSetting(c_szFile, "A\\B", {"", "two", {}, "", true}),
              "; mine\n[A\\B]\none = 1\n; about two\n\n[C]\nz = 3\n");
    EXPECT_EQ(WithSetting(c_szFile, "A\\B", {"", "none", {}, "", true}), c_szFile);
    EXPECT_EQ(WithSetting("[A]\nTwo = 1", "A", {"", "Two", {}, "", true}), "[A]\n");
}

TEST(ToolSettings, AKeyGoesWithTheKeysBelowItAndNoOther) {
    EXPECT_EQ(WithoutSettingKey("[A]\nx=1\n[A\\B]\ny=2\n; kept\n[AB]\nz=3\n", "a"), "; kept\n[AB]\nz=3\n");
}

TEST(ToolSettings, NamesAndTextsThatWouldReadAsSomethingElseAreRefused) {
    EXPECT_TRUE(CheckSetting({"K", "Name", {}, "a \"b\" = [c]", false}));
    for (const Setting& st :
         {Setting{"K", "N", {}, "a\nb", false}, Setting{"K\n[X]", "N", 1, "", false},
          Setting{"K", "", 1, "", false}, Setting{"K", "a=b", 1, "", false}, Setting{"K", ";a", 1, "", false},
          Setting{"K", "[a", 1, "", false}, Setting{"K", " a", 1, "", false}})
        EXPECT_FALSE(CheckSetting(st)) << st.strName;
}
