#include "config/items/interner.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace {

TEST(Interner, TheSameTextHasTheSameId) {
    const u64 u64Id = g_fnInternName("interner same");
    EXPECT_EQ(g_fnInternName("interner same"), u64Id);
    EXPECT_EQ(g_fnInternName(std::string("interner same").c_str()), u64Id);
}

TEST(Interner, IdsAreDenseAndFirstComeFirstServed) {
    const u64 u64First = g_fnInternName("interner dense 0");
    EXPECT_GE(u64First, 1u);
    for (u64 i = 1; i < 100; ++i)
        EXPECT_EQ(g_fnInternName(("interner dense " + std::to_string(i)).c_str()), u64First + i);
    EXPECT_EQ(g_fnInternName("interner dense 0"), u64First) << "a known text takes no new id";
    EXPECT_EQ(g_fnInternName("interner dense 100"), u64First + 100);
}

// The bytes of 'a' to 'd' have the remainders 1, 2, 3 and 0; those of 0xFC to 0xFF are -4 to -1.
TEST(Interner, AllBucketsKeepTheirTexts) {
    std::set<u64> ids;
    for (const char* sz : {"a", "b", "c", "d", "\xFC", "\xFD", "\xFE", "\xFF"}) {
        ids.insert(g_fnInternName(sz));
        EXPECT_TRUE(ids.contains(g_fnInternName(sz)));
    }
    EXPECT_EQ(ids.size(), 8u);
}

TEST(Interner, TextsWithTheSameSumOfBytesStayApart) {
    EXPECT_NE(g_fnInternName("interner ab"), g_fnInternName("interner ba"));
    EXPECT_NE(g_fnInternName("x\xFF"), g_fnInternName("w"));
}

TEST(Interner, NullCountsAsTheEmptyText) { EXPECT_EQ(g_fnInternName(nullptr), g_fnInternName("")); }

} // namespace
