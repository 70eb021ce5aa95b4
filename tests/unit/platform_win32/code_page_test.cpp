#include "platform/code_page.h"
#include "platform/win32/windows_api.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::u16string Convert(const std::string& strBytes, u32 uCapacity = 16) {
    char16_t awUnits[16];
    return {awUnits, platform::CodePageToUtf16(strBytes.data(), static_cast<u32>(strBytes.size()), awUnits,
                                               uCapacity)};
}

TEST(CodePage, AsciiIsTheSameInEveryCodePage) { EXPECT_EQ(Convert("a b~\x01"), u"a b~\x01"); }

TEST(CodePage, TheUpperHalfIsThatOfTheSystem) {
    if (GetACP() != 1252) GTEST_SKIP() << "another code page";
    EXPECT_EQ(Convert("\x80\xE9\xFF"), u"\u20AC\u00E9\u00FF");
}

TEST(CodePage, NothingAndTooLittleRoomGiveNothing) {
    EXPECT_EQ(Convert(""), u"");
    EXPECT_EQ(Convert("abcdef", 3), u"");
    EXPECT_EQ(Convert("abcdef", 0), u"");
}

} // namespace
