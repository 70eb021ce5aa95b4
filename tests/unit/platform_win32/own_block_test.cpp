// Blocks that this process writes, as named sections.
#include "platform/own_block.h"
#include "platform/win32/windows_api.h"
#include <cstring>
#include <gtest/gtest.h>
#include <string>

namespace {

std::string Name() { return "[ORVIN-unit][PID:" + std::to_string(GetCurrentProcessId()) + "]"; }

} // namespace

TEST(OwnBlock, IsOfZerosAndSeenByOthers) {
    platform::stOwnBlock st = platform::MakeOwnBlock(Name().c_str(), 8192);
    ASSERT_NE(st.m_pView, nullptr);
    EXPECT_EQ(static_cast<const u8*>(st.m_pView)[8191], 0);
    std::memcpy(st.m_pView, "abc", 4);
    const HANDLE hOther = OpenFileMappingA(FILE_MAP_READ, FALSE, Name().c_str());
    ASSERT_NE(hOther, nullptr);
    const void* const pOther = MapViewOfFile(hOther, FILE_MAP_READ, 0, 0, 8192);
    ASSERT_NE(pOther, nullptr);
    EXPECT_STREQ(static_cast<const char*>(pOther), "abc");
    platform::CloseOwnBlock(st);
    EXPECT_EQ(st.m_pView, nullptr);
    EXPECT_STREQ(static_cast<const char*>(pOther), "abc") << "a reader keeps it";
    UnmapViewOfFile(pOther);
    CloseHandle(hOther);
    EXPECT_EQ(OpenFileMappingA(FILE_MAP_READ, FALSE, Name().c_str()), nullptr);
}

TEST(OwnBlock, OneThatSomebodyElseMadeIsNotTaken) {
    const HANDLE hStranger = CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE | SEC_RESERVE,
                                                0, 65536, Name().c_str());
    ASSERT_NE(hStranger, nullptr);
    EXPECT_EQ(platform::MakeOwnBlock(Name().c_str(), 8192).m_pView, nullptr);
    CloseHandle(hStranger);
    platform::stOwnBlock st = platform::MakeOwnBlock(Name().c_str(), 8192);
    EXPECT_NE(st.m_pView, nullptr);
    platform::CloseOwnBlock(st);
    platform::CloseOwnBlock(st);
}
