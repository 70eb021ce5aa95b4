// Blocks that others write: who makes them, whom they outlive, and what a cut does. The other programs are
// the file as they see it.
#include "child.h"
#include "platform/linux/block_file.h"
#include "platform/linux/watched_end.h"
#include "platform/watched_block.h"
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <vector>

namespace {

using namespace platform;

class WatchedBlock : public testing::Test {
  protected:
    void SetUp() override {
        m_strName = "orvin-unit-block-" + std::to_string(getpid());
        m_wstrName.assign(m_strName.begin(), m_strName.end());
        ASSERT_TRUE(host::BlockPath(m_strName.c_str(), m_szPath));
    }
    void TearDown() override { unlink(m_szPath); }

    bool Exists() const { return access(m_szPath, F_OK) == 0; }
    void MakeByHand(u64 uBytes, char cFill) const {
        std::ofstream(m_szPath) << std::string(uBytes, cFill);
        chmod(m_szPath, 0600);
    }
    void* Open(u32 uBytes = 256) const { return OpenWatchedBlock(m_wstrName.c_str(), uBytes); }

    std::string m_strName;
    std::u16string m_wstrName;
    char m_szPath[host::g_uShmPathBytes] = {};
};

TEST_F(WatchedBlock, IsMadeOfZerosForThisUserOnlyAndGoesWithItsLastUser) {
    void* const hFirst = Open();
    ASSERT_NE(hFirst, nullptr);
    void* const hSecond = Open();
    ASSERT_NE(hSecond, nullptr);
    u8 au8[256];
    std::fill(std::begin(au8), std::end(au8), u8{7});
    EXPECT_TRUE(ReadWatchedBlock(hFirst, au8, sizeof au8));
    EXPECT_EQ(std::count(std::begin(au8), std::end(au8), 0), 256);
    struct stat st {};
    ASSERT_EQ(stat(m_szPath, &st), 0);
    EXPECT_EQ(st.st_size, 256);
    EXPECT_EQ(st.st_mode & 0777, 0600u);
    CloseWatchedBlock(hFirst);
    EXPECT_TRUE(Exists());
    CloseWatchedBlock(hSecond);
    EXPECT_FALSE(Exists());
}

TEST_F(WatchedBlock, ShowsWhatTheWriterWroteBeforeAndAfterTheOpening) {
    const int iWriter = host::OpenBlockFile(m_szPath, 256, host::BLOCK_WRITTEN);
    ASSERT_GE(iWriter, 0);
    ASSERT_EQ(pwrite(iWriter, "abc", 3, 0), 3);
    void* const hBlock = Open();
    ASSERT_NE(hBlock, nullptr);
    char ac[4] = {};
    EXPECT_TRUE(ReadWatchedBlock(hBlock, ac, 3));
    EXPECT_STREQ(ac, "abc");
    ASSERT_EQ(pwrite(iWriter, "xyz", 3, 0), 3);
    EXPECT_TRUE(ReadWatchedBlock(hBlock, ac, 3));
    EXPECT_STREQ(ac, "xyz");
    CloseWatchedBlock(hBlock);
    EXPECT_TRUE(Exists()) << "the writer still has it";
    host::CloseBlockFile(iWriter, m_szPath);
    EXPECT_FALSE(Exists());
}

TEST_F(WatchedBlock, WhatAKilledProgramLeftCountsAsNothing) {
    MakeByHand(256, 'x');
    void* const hBlock = Open();
    ASSERT_NE(hBlock, nullptr);
    char c = 1;
    EXPECT_TRUE(ReadWatchedBlock(hBlock, &c, 1));
    EXPECT_EQ(c, 0);
    CloseWatchedBlock(hBlock);
}

TEST_F(WatchedBlock, AWriterOfAnotherKindKeepsItsContentsByALockOnItsByte) {
    MakeByHand(256, 'x');
    const int iFile = open(m_szPath, O_RDWR | O_CLOEXEC);
    ASSERT_GE(iFile, 0);
    // In a process of its own, since such locks are a process's.
    EXPECT_EQ(RunInChild([&] {
                  struct flock st = host::BlockLock(F_WRLCK, host::BLOCK_WRITTEN, 1);
                  if (fcntl(iFile, F_SETLK, &st) != 0) return 1;
                  return RunInChild([&] {
                      void* const hBlock = Open();
                      char c = 0;
                      return hBlock && ReadWatchedBlock(hBlock, &c, 1) && c == 'x' ? 0 : 1;
                  });
              }),
              0);
    close(iFile);
}

TEST_F(WatchedBlock, OnlyOneProgramWritesABlock) {
    const int iFirst = host::OpenBlockFile(m_szPath, 256, host::BLOCK_WRITTEN);
    ASSERT_GE(iFirst, 0);
    EXPECT_EQ(host::OpenBlockFile(m_szPath, 256, host::BLOCK_WRITTEN), -1);
    EXPECT_TRUE(Exists()) << "the one refused took the name away";
    host::CloseBlockFile(iFirst, m_szPath);
}

TEST_F(WatchedBlock, ShorterOneOfSomebodyElseIsNoBlock) {
    MakeByHand(255, 0);
    EXPECT_EQ(Open(256), nullptr);
    EXPECT_TRUE(Exists());
    void* const hBlock = Open(255);
    EXPECT_NE(hBlock, nullptr);
    CloseWatchedBlock(hBlock);
}

TEST_F(WatchedBlock, LinkOrFolderIsNoBlock) {
    ASSERT_EQ(symlink("/etc/hostname", m_szPath), 0);
    EXPECT_EQ(Open(1), nullptr);
    unlink(m_szPath);
    ASSERT_EQ(mkdir(m_szPath, 0700), 0);
    EXPECT_EQ(Open(1), nullptr);
    rmdir(m_szPath);
}

TEST_F(WatchedBlock, NoNameOrNoBytesIsNoBlock) {
    EXPECT_EQ(OpenWatchedBlock(nullptr, 256), nullptr);
    EXPECT_EQ(OpenWatchedBlock(u"", 256), nullptr);
    EXPECT_EQ(OpenWatchedBlock(u"..", 256), nullptr);
    EXPECT_EQ(OpenWatchedBlock(std::u16string(300, u'n').c_str(), 256), nullptr);
    EXPECT_EQ(Open(0), nullptr);
    u8 u = 0;
    EXPECT_FALSE(ReadWatchedBlock(nullptr, &u, 1));
    CloseWatchedBlock(nullptr);
}

TEST_F(WatchedBlock, IsNeverReadBeyondWhatItWasOpenedWith) {
    MakeByHand(4096, 'x');
    void* const hBlock = Open(256);
    ASSERT_NE(hBlock, nullptr);
    u8 au8[257];
    EXPECT_FALSE(ReadWatchedBlock(hBlock, au8, 257));
    CloseWatchedBlock(hBlock);
}

// A view would end the process here: the pages behind the new end fault.
TEST_F(WatchedBlock, OneThatIsCutWhileItIsOpenComesUpShortAndCanGrowAgain) {
    constexpr u32 c_uBytes = 0xFD2000;
    EXPECT_EQ(RunInChild([&] {
                  void* const hBlock = Open(c_uBytes);
                  std::vector<u8> aTo(c_uBytes);
                  if (!hBlock || !ReadWatchedBlock(hBlock, aTo.data(), c_uBytes)) return 1;
                  if (truncate(m_szPath, 4096) != 0 || ReadWatchedBlock(hBlock, aTo.data(), c_uBytes))
                      return 2;
                  if (!ReadWatchedBlock(hBlock, aTo.data(), 4096)) return 3;
                  if (truncate(m_szPath, 0) != 0 || ReadWatchedBlock(hBlock, aTo.data(), 1)) return 4;
                  if (truncate(m_szPath, c_uBytes) != 0 || !ReadWatchedBlock(hBlock, aTo.data(), c_uBytes))
                      return 5;
                  CloseWatchedBlock(hBlock);
                  return 0;
              }),
              0);
}

TEST_F(WatchedBlock, OneWhoseNameIsTakenAwayStaysReadableAndANewOneIsLeftAlone) {
    void* const hOld = Open();
    ASSERT_NE(hOld, nullptr);
    unlink(m_szPath);
    void* const hNew = Open();
    ASSERT_NE(hNew, nullptr);
    u8 u = 1;
    EXPECT_TRUE(ReadWatchedBlock(hOld, &u, 1));
    CloseWatchedBlock(hOld);
    EXPECT_TRUE(Exists()) << "the name is another file's by now";
    CloseWatchedBlock(hNew);
    EXPECT_FALSE(Exists());
}

TEST_F(WatchedBlock, ACopyOfTheProcessLeavesTheNameToTheFirst) {
    void* const hBlock = Open();
    ASSERT_NE(hBlock, nullptr);
    EXPECT_EQ(RunInChild([&] {
                  CloseWatchedBlock(hBlock);
                  return 0;
              }),
              0);
    EXPECT_TRUE(Exists());
    CloseWatchedBlock(hBlock);
    EXPECT_FALSE(Exists());
}

TEST_F(WatchedBlock, GoesWithAProcessThatEndsWithoutClosingIt) {
    EXPECT_EQ(RunInChild([&] {
                  void* const hBlock = Open();
                  host::LeaveWatchedBlocks();
                  u8 u = 1;
                  const bool bRead = ReadWatchedBlock(hBlock, &u, 1); // another thread may not have noticed
                  CloseWatchedBlock(hBlock);
                  return bRead && !Exists() ? 0 : 1;
              }),
              0);
    void* const hBlock = Open();
    EXPECT_EQ(RunInChild([&] {
                  Open();
                  host::LeaveWatchedBlocks();
                  return Exists() ? 0 : 1;
              }),
              0);
    EXPECT_TRUE(Exists()) << "this process has it";
    CloseWatchedBlock(hBlock);
    EXPECT_FALSE(Exists());
}

TEST_F(WatchedBlock, ProgramsThatComeAndGoTogetherNeverFail) {
    constexpr int c_iPrograms = 8, c_iTimes = 200;
    for (int i = 0; i < c_iPrograms; ++i) {
        if (fork() != 0) continue;
        int iFailed = 0;
        for (int n = 0; n < c_iTimes; ++n) {
            void* const hBlock = Open();
            iFailed += hBlock == nullptr;
            CloseWatchedBlock(hBlock);
        }
        _exit(iFailed > 250 ? 250 : iFailed);
    }
    for (int i = 0; i < c_iPrograms; ++i) {
        int iStatus = 0;
        wait(&iStatus);
        EXPECT_EQ(WEXITSTATUS(iStatus), 0);
    }
    EXPECT_FALSE(Exists());
}

TEST_F(WatchedBlock, ASegmentOfOnesOwnHasBlocksOfItsOwn) {
    EXPECT_EQ(RunInChild([&] {
                  char szPath[host::g_uShmPathBytes];
                  setenv("ORVIN_OSD_SEGMENT", "unit/test", 1);
                  return host::BlockPath("Global\\Frames", szPath) &&
                                 std::string(szPath) == "/dev/shm/Global_Frames-unit_test"
                             ? 0
                             : 1;
              }),
              0);
}

} // namespace
