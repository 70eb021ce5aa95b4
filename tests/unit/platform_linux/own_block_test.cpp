// Blocks that this process writes: nobody cuts them, and a copy of the process lets them go.
#include "platform/own_block.h"
#include <cstring>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <string>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

std::string FileOf(const platform::stOwnBlock& st) { return "/proc/self/fd/" + std::to_string(st.m_iHandle); }

} // namespace

TEST(OwnBlock, IsOfZerosAndSeenByOthers) {
    platform::stOwnBlock st = platform::MakeOwnBlock("orvin-unit", 8192);
    ASSERT_NE(st.m_pView, nullptr);
    EXPECT_EQ(static_cast<const u8*>(st.m_pView)[8191], 0);
    const int iOther = open(FileOf(st).c_str(), O_RDONLY);
    ASSERT_GE(iOther, 0);
    const void* const pOther = mmap(nullptr, 8192, PROT_READ, MAP_SHARED, iOther, 0);
    ASSERT_NE(pOther, MAP_FAILED);
    std::memcpy(st.m_pView, "abc", 4);
    EXPECT_STREQ(static_cast<const char*>(pOther), "abc");
    platform::CloseOwnBlock(st);
    EXPECT_EQ(st.m_pView, nullptr);
    EXPECT_STREQ(static_cast<const char*>(pOther), "abc") << "a reader keeps it";
    munmap(const_cast<void*>(pOther), 8192);
    close(iOther);
    platform::CloseOwnBlock(st);
}

TEST(OwnBlock, NobodyCutsIt) {
    platform::stOwnBlock st = platform::MakeOwnBlock("orvin-unit", 8192);
    ASSERT_NE(st.m_pView, nullptr);
    const int iOther = open(FileOf(st).c_str(), O_RDWR);
    ASSERT_GE(iOther, 0);
    EXPECT_NE(ftruncate(iOther, 0), 0);
    EXPECT_NE(fallocate(iOther, FALLOC_FL_PUNCH_HOLE, 0, 8192), 0);
    EXPECT_NE(truncate(FileOf(st).c_str(), 0), 0);
    EXPECT_LT(open(FileOf(st).c_str(), O_RDWR | O_TRUNC), 0);
    std::memset(st.m_pView, 7, 8192); // does not fault
    close(iOther);
    platform::CloseOwnBlock(st);
}

TEST(OwnBlock, ANewProgramDoesNotInheritIt) {
    platform::stOwnBlock st = platform::MakeOwnBlock("orvin-unit", 4096);
    ASSERT_NE(st.m_pView, nullptr);
    EXPECT_TRUE(fcntl(static_cast<int>(st.m_iHandle), F_GETFD) & FD_CLOEXEC);
    platform::CloseOwnBlock(st);
}

TEST(OwnBlock, ACopyOfTheProcessLetsItGoAndTheParentGoesOn) {
    platform::stOwnBlock st = platform::MakeOwnBlock("orvin-unit", 4096);
    ASSERT_NE(st.m_pView, nullptr);
    const pid_t iChild = fork();
    if (iChild == 0) {
        platform::CloseOwnBlock(st);
        _exit(st.m_pView ? 1 : 0);
    }
    int iStatus = 0;
    ASSERT_EQ(waitpid(iChild, &iStatus, 0), iChild);
    EXPECT_EQ(iStatus, 0);
    std::memcpy(st.m_pView, "xyz", 4);
    platform::CloseOwnBlock(st);
}

TEST(OwnBlock, WithoutMemoryThereIsNone) {
    EXPECT_EQ(platform::MakeOwnBlock("orvin-unit", 0).m_pView, nullptr);
    EXPECT_EQ(platform::MakeOwnBlock(std::string(300, 'x').c_str(), 4096).m_pView, nullptr);
}
