// Blocks that others write, over named sections.
#include "platform/watched_block.h"
#include "platform/win32/windows_api.h"
#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>
#include <string>

namespace {

using namespace platform;

const wchar_t* Wide(const char16_t* wz) { return reinterpret_cast<const wchar_t*>(wz); }

std::u16string Name(const char16_t* wzPart) {
    std::u16string wstr = u"orvin-unit-block-";
    for (const char c : std::to_string(GetCurrentProcessId())) wstr += static_cast<char16_t>(c);
    return wstr + wzPart;
}

bool Exists(const std::u16string& wstrName) {
    const HANDLE h = OpenFileMappingW(FILE_MAP_READ, FALSE, Wide(wstrName.c_str()));
    if (h) CloseHandle(h);
    return h != nullptr;
}

TEST(WatchedBlock, IsMadeOfZerosAndGoesWithItsLastUser) {
    const std::u16string wstrName = Name(u"new");
    void* const hFirst = OpenWatchedBlock(wstrName.c_str(), 256);
    ASSERT_NE(hFirst, nullptr);
    void* const hSecond = OpenWatchedBlock(wstrName.c_str(), 256);
    ASSERT_NE(hSecond, nullptr);
    u8 au8[256];
    std::fill(std::begin(au8), std::end(au8), u8{7});
    EXPECT_TRUE(ReadWatchedBlock(hFirst, au8, sizeof au8));
    EXPECT_EQ(std::count(std::begin(au8), std::end(au8), 0), 256);
    CloseWatchedBlock(hFirst);
    EXPECT_TRUE(Exists(wstrName));
    CloseWatchedBlock(hSecond);
    EXPECT_FALSE(Exists(wstrName));
}

TEST(WatchedBlock, ShowsWhatTheWriterWroteBeforeAndAfterTheOpening) {
    const std::u16string wstrName = Name(u"written");
    const HANDLE hMapping =
        CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, 256, Wide(wstrName.c_str()));
    auto* const pView = static_cast<char*>(MapViewOfFile(hMapping, FILE_MAP_WRITE, 0, 0, 256));
    ASSERT_NE(pView, nullptr);
    std::memcpy(pView, "abc", 3);
    void* const hBlock = OpenWatchedBlock(wstrName.c_str(), 256);
    ASSERT_NE(hBlock, nullptr);
    char ac[4] = {};
    EXPECT_TRUE(ReadWatchedBlock(hBlock, ac, 3));
    EXPECT_STREQ(ac, "abc");
    std::memcpy(pView, "xyz", 3);
    EXPECT_TRUE(ReadWatchedBlock(hBlock, ac, 3));
    EXPECT_STREQ(ac, "xyz");
    EXPECT_FALSE(ReadWatchedBlock(hBlock, ac, 257));
    CloseWatchedBlock(hBlock);
    UnmapViewOfFile(pView);
    CloseHandle(hMapping);
}

TEST(WatchedBlock, ShorterOneOfSomebodyElseIsNoBlock) {
    const std::u16string wstrName = Name(u"short");
    const HANDLE hMapping =
        CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, 4096, Wide(wstrName.c_str()));
    ASSERT_NE(hMapping, nullptr);
    EXPECT_EQ(OpenWatchedBlock(wstrName.c_str(), 0xFD2000), nullptr);
    CloseHandle(hMapping);
    EXPECT_FALSE(Exists(wstrName)) << "a handle to it was kept";
}

// Its pages are there, but an access to them faults until their maker commits them.
TEST(WatchedBlock, OneThatIsOnlyReservedIsNoBlock) {
    const std::u16string wstrName = Name(u"reserved");
    const HANDLE hMapping = CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE | SEC_RESERVE, 0,
                                               0xFD2000, Wide(wstrName.c_str()));
    ASSERT_NE(hMapping, nullptr);
    EXPECT_EQ(OpenWatchedBlock(wstrName.c_str(), 0xFD2000), nullptr);
    CloseHandle(hMapping);
}

TEST(WatchedBlock, ANameOfAnotherKindOfObjectIsNoBlock) {
    const std::u16string wstrName = Name(u"mutex");
    const HANDLE hMutex = CreateMutexW(nullptr, FALSE, Wide(wstrName.c_str()));
    ASSERT_NE(hMutex, nullptr);
    EXPECT_EQ(OpenWatchedBlock(wstrName.c_str(), 256), nullptr);
    CloseHandle(hMutex);
}

TEST(WatchedBlock, NoNameOrNoBytesIsNoBlock) {
    EXPECT_EQ(OpenWatchedBlock(nullptr, 256), nullptr);
    EXPECT_EQ(OpenWatchedBlock(u"", 256), nullptr);
    EXPECT_EQ(OpenWatchedBlock(Name(u"none").c_str(), 0), nullptr);
    u8 u = 0;
    EXPECT_FALSE(ReadWatchedBlock(nullptr, &u, 1));
    CloseWatchedBlock(nullptr);
}

} // namespace
