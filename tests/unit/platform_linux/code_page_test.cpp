#include "platform/code_page.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::u16string Convert(const std::string& strBytes, u32 uCapacity = 16) {
    char16_t awUnits[16];
    return {awUnits, platform::CodePageToUtf16(strBytes.data(), static_cast<u32>(strBytes.size()), awUnits,
                                               uCapacity)};
}

TEST(CodePage, EveryByteIsItsLatin1Code) { EXPECT_EQ(Convert("a\x80\xE9\xFF"), u"a\u0080\u00E9\u00FF"); }

TEST(CodePage, NothingAndTooLittleRoomAreHeldTo) {
    EXPECT_EQ(Convert(""), u"");
    EXPECT_EQ(Convert("abcdef", 3), u"abc");
    EXPECT_EQ(Convert("abcdef", 0), u"");
}

} // namespace
