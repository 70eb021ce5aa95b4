// The companion over the real segment: it goes by the library's own mapping of it, and another user's object,
// or somebody who shortens the file, does not mislead or end it.
#include "child.h"
#include "companion/profile_commands.h"
#include "companion/segment_view.h"
#include "platform/linux/segment_name.h"
#include "platform/process.h"
#include "platform/shared_block.h"
#include "platform/tool.h"
#include "shared/process_records.h"
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sys/stat.h>

using namespace companion;

namespace {

using platform::SharedSegment;
using platform::host::SegmentOwner;

constexpr uid_t c_uAnother = 65534;

std::string PathOf(SegmentOwner eOwner) {
    char szPath[platform::host::g_uSegmentPathBytes];
    platform::host::SegmentPath(eOwner, szPath);
    return szPath;
}

class LinuxCompanionSegment : public testing::Test {
  protected:
    LinuxCompanionSegment() {
        static int iCount = 0;
        m_strSuffix = "seg-" + std::to_string(getpid()) + "-" + std::to_string(++iCount);
        setenv("ORVIN_OSD_SEGMENT", m_strSuffix.c_str(), 1);
    }
    ~LinuxCompanionSegment() override {
        std::filesystem::remove(PathOf(SegmentOwner::Any));
        std::filesystem::remove(PathOf(SegmentOwner::User));
        unsetenv("ORVIN_OSD_SEGMENT");
    }
    /// What another user put there first: an object of the right size and with a record of his in it.
    static void MakeForeign(const std::string& strPath) {
        auto pSegment = std::make_unique<stSharedSegment>();
        g_fnApplyInitialImage(*pSegment);
        pSegment->StatusTable[0].uThreadId = pSegment->StatusTable[0].uProcessId = 1;
        std::ofstream(strPath, std::ios::binary)
            .write(reinterpret_cast<const char*>(pSegment.get()), sizeof *pSegment);
        ASSERT_EQ(chown(strPath.c_str(), c_uAnother, c_uAnother), 0);
        ASSERT_EQ(chmod(strPath.c_str(), 0666), 0);
    }

    std::string m_strSuffix;
};

platform::tool::Segment Find(std::string& strError) {
    SharedSegment(); // as loading the library does
    return platform::tool::FindSegment(nullptr, sizeof(stSharedSegment), strError);
}

#define SKIP_UNLESS_ROOT()                                                                                   \
    if (geteuid() != 0) GTEST_SKIP() << "only root makes objects of another user"

TEST_F(LinuxCompanionSegment, IsTheLibrarysOwnMapping) {
    EXPECT_EQ(RunInChild([] {
                  std::string strError;
                  const platform::tool::Segment st = Find(strError);
                  return st.pView == SharedSegment() && st.strPlace == PathOf(SegmentOwner::Any) &&
                                 st.strNote.empty()
                             ? 0
                             : 1;
              }),
              0);
}

TEST_F(LinuxCompanionSegment, AnotherUsersObjectIsPassedByForOneWithTheUsersNumber) {
    SKIP_UNLESS_ROOT();
    MakeForeign(PathOf(SegmentOwner::Any));
    EXPECT_EQ(RunInChild([] {
                  std::string strError;
                  const platform::tool::Segment st = Find(strError);
                  if (st.pView != SharedSegment()) return 1;
                  if (st.strPlace != PathOf(SegmentOwner::User)) return 2;
                  if (st.strNote.find("belongs to user 65534") == std::string::npos) return 3;
                  return SharedSegment()->StatusTable[0].uThreadId == 0 ? 0 : 4; // nothing of his is seen
              }),
              0);
    struct stat st {};
    ASSERT_EQ(stat(PathOf(SegmentOwner::User).c_str(), &st), 0);
    EXPECT_EQ(st.st_size, 0xCB170);
    EXPECT_EQ(st.st_mode & 0777, 0600u);
}

TEST_F(LinuxCompanionSegment, ProgramsOfOneUserMeetThereAlsoAfterThePlainNameIsFree) {
    SKIP_UNLESS_ROOT();
    MakeForeign(PathOf(SegmentOwner::Any));
    Signal ready, end;
    Child first([&] {
        SharedSegment()->uDataBank = 1;
        ready.Give();
        end.Take();
        return 0;
    });
    ready.Take();
    EXPECT_EQ(RunInChild([] { return SharedSegment()->uDataBank == 1 ? 0 : 1; }), 0);
    std::filesystem::remove(PathOf(SegmentOwner::Any));
    EXPECT_EQ(RunInChild([] { return SharedSegment()->uDataBank == 1 ? 0 : 1; }), 0);
    EXPECT_FALSE(std::filesystem::exists(PathOf(SegmentOwner::Any)));
    end.Give();
    EXPECT_EQ(first.Wait(), 0);
    EXPECT_EQ(RunInChild([] { return SharedSegment()->uDataBank == 0 ? 0 : 1; }), 0);
    EXPECT_TRUE(std::filesystem::exists(PathOf(SegmentOwner::Any))); // with nobody left, the plain name again
}

TEST_F(LinuxCompanionSegment, WithBothNamesTakenTheReasonIsTold) {
    SKIP_UNLESS_ROOT();
    MakeForeign(PathOf(SegmentOwner::Any));
    MakeForeign(PathOf(SegmentOwner::User));
    EXPECT_EQ(RunInChild([] {
                  std::string strError;
                  if (Find(strError).pView) return 1;
                  const bool bBoth =
                      strError.find(PathOf(SegmentOwner::User) + " belongs to user") != std::string::npos;
                  return bBoth && strError.starts_with(PathOf(SegmentOwner::Any) + " belongs to user") ? 0
                                                                                                       : 2;
              }),
              0);
}

TEST_F(LinuxCompanionSegment, AFileThatIsCutGivesZerosAndIsNoticed) {
    EXPECT_EQ(RunInChild([] {
                  std::string strError;
                  const platform::tool::Segment st = Find(strError);
                  if (!st.pView) return 1;
                  SharedSegment()->MonitorVGA[5] = 7;
                  if (platform::tool::SegmentWasCut() || truncate(st.strPlace.c_str(), 4096) != 0) return 2;
                  if (Snapshot(st.pView)->MonitorVGA[5] != 0) return 3;
                  SharedSegment()->ProcessProfile[3].uProcessId = 9; // the library's writes go on too
                  return platform::tool::SegmentWasCut() ? 0 : 4;
              }),
              0);
}

TEST_F(LinuxCompanionSegment, AFaultElsewhereStillEndsTheProgram) {
    // The sanitizers' own handler may stand behind it, which ends the program by an exit code.
    EXPECT_NE(RunInChild([] {
                  std::string strError;
                  Find(strError);
                  raise(SIGBUS);
                  return 0;
              }),
              0);
}

TEST_F(LinuxCompanionSegment, DeadRecordsAreForgottenAndADeadProgramIsNone) {
    EXPECT_EQ(RunInChild([] {
                  ControlLibrary st;
                  st.pSegment = SharedSegment();
                  const pid_t iKilled = fork();
                  if (iKilled == 0) {
                      RegisterProcess(static_cast<u32>(getpid()), static_cast<u32>(getpid()));
                      _exit(0);
                  }
                  waitpid(iKilled, nullptr, 0);
                  if (SharedSegment()->CommandTable[0].uProcessId != static_cast<u32>(iKilled)) return 1;
                  if (!Programs(st).empty() || NeedHolder(st)) return 2;
                  ForgetDead(st);
                  return SharedSegment()->CommandTable[0].uThreadId == 0 &&
                                 SharedSegment()->StatusTable[0].uThreadId == 0
                             ? 0
                             : 3;
              }),
              0);
}

TEST_F(LinuxCompanionSegment, AnyOtherLivingProcessKeepsAChange) {
    Signal ready, end;
    Child holder([&] {
        RegisterProcess(static_cast<u32>(getpid()), static_cast<u32>(getpid()));
        ready.Give();
        end.Take();
        return 0;
    });
    ready.Take();
    EXPECT_EQ(RunInChild([] {
                  ControlLibrary st;
                  st.pSegment = SharedSegment();
                  return NeedHolder(st) ? 0 : 1;
              }),
              0);
    end.Give();
    EXPECT_EQ(holder.Wait(), 0);
}

TEST(LinuxApiClaim, WhatAnotherUserOrKindOfFilePretendsIsNoClaim) {
    const u32 uId = static_cast<u32>(getpid());
    const std::string strPath = "/dev/shm/[RV5-OSD][PID:" + std::to_string(uId) + "]";
    EXPECT_EQ(platform::tool::ReadApiClaim(uId), ApiClaim::None);
    std::ofstream(strPath) << "D3D";
    EXPECT_EQ(platform::tool::ReadApiClaim(uId), ApiClaim::Direct3D);
    if (geteuid() == 0 && chown(strPath.c_str(), c_uAnother, c_uAnother) == 0) {
        EXPECT_EQ(platform::tool::ReadApiClaim(uId), ApiClaim::Unreadable);
    }
    std::filesystem::remove(strPath);
    ASSERT_EQ(mkfifo(strPath.c_str(), 0600), 0);
    EXPECT_EQ(platform::tool::ReadApiClaim(uId), ApiClaim::Unreadable); // and does not wait for a writer
    std::filesystem::remove(strPath);
}

} // namespace
