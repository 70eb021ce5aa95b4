#include "child.h"
#include "platform/shared_block.h"
#include "shared/process_records.h"
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/stat.h>

namespace {

using platform::SharedSegment;

class LinuxSegment : public testing::Test {
  protected:
    LinuxSegment() {
        static int iCount = 0;
        m_strSuffix = "unit-" + std::to_string(getpid()) + "-" + std::to_string(++iCount);
        setenv("ORVIN_OSD_SEGMENT", m_strSuffix.c_str(), 1);
    }
    ~LinuxSegment() override {
        std::filesystem::remove(Path());
        unsetenv("ORVIN_OSD_SEGMENT");
    }
    std::string Path() const { return "/dev/shm/ORVIN-OSD64-GL.Shared-" + m_strSuffix; }

    std::string m_strSuffix;
};

int HasInitialImage() {
    const stSharedSegment& st = *SharedSegment();
    const stSharedCommand& stDefault = st.DefaultCommand;
    const bool bOnes = st.bGlobalEnable == 1 && stDefault.bRelease == 1 && stDefault.uPos0Align == 1 &&
                       stDefault.uPos1Align == 1 && stDefault.uPos2Align == 1;
    u32 uSum = 0;
    for (u32 i = 0; i < sizeof st; ++i) uSum += reinterpret_cast<const u8*>(&st)[i];
    return bOnes && uSum == 5 ? 0 : 1;
}

TEST_F(LinuxSegment, FirstProcessFindsTheInitialImage) { EXPECT_EQ(RunInChild(HasInitialImage), 0); }

TEST_F(LinuxSegment, ObjectHasTheExactSizeAndIsPrivateToTheUser) {
    ASSERT_EQ(RunInChild(HasInitialImage), 0);
    struct stat st {};
    ASSERT_EQ(stat(Path().c_str(), &st), 0);
    EXPECT_EQ(st.st_size, 0xCB170);
    EXPECT_EQ(st.st_mode & 0777, 0600u);
}

TEST_F(LinuxSegment, TwoProcessesSeeTheSameBytes) {
    Signal written, checked;
    Child first([&] {
        SharedSegment()->StatusTable[7].uThreadId = 77;
        written.Give();
        checked.Take();
        return SharedSegment()->StatusTable[8].uThreadId == 88 ? 0 : 1;
    });
    Child second([&] {
        written.Take();
        const bool bSeen = SharedSegment()->StatusTable[7].uThreadId == 77;
        SharedSegment()->StatusTable[8].uThreadId = 88;
        checked.Give();
        return bSeen ? 0 : 1;
    });
    EXPECT_EQ(first.Wait(), 0);
    EXPECT_EQ(second.Wait(), 0);
}

TEST_F(LinuxSegment, ContentsEndWithTheLastProcess) {
    EXPECT_EQ(RunInChild([] {
                  SharedSegment()->uDataBank = 1;
                  return 0;
              }),
              0);
    EXPECT_EQ(RunInChild(HasInitialImage), 0);
}

TEST_F(LinuxSegment, ContentsStayWhileOneProcessHoldsThem) {
    Signal ready, end;
    Child holder([&] {
        SharedSegment()->uDataBank = 1;
        ready.Give();
        end.Take();
        return 0;
    });
    ready.Take();
    for (int i = 0; i < 2; ++i)
        EXPECT_EQ(RunInChild([] { return SharedSegment()->uDataBank == 1 ? 0 : 1; }), 0);
    end.Give();
    EXPECT_EQ(holder.Wait(), 0);
}

TEST_F(LinuxSegment, ForkedChildHoldsTheContentsAfterItsParent) {
    Signal ready, end, gone;
    Child parent([&] {
        SharedSegment()->uDataBank = 1;
        if (fork() == 0) {
            ready.Give();
            end.Take();
            gone.Give();
            _exit(0);
        }
        return 0;
    });
    EXPECT_EQ(parent.Wait(), 0);
    ready.Take();
    EXPECT_EQ(RunInChild([] { return SharedSegment()->uDataBank == 1 ? 0 : 1; }), 0);
    end.Give();
    gone.Take();
}

TEST_F(LinuxSegment, ManyProcessesAtOnceAgreeOnOneObject) {
    constexpr u32 uCount = 12;
    Signal ready, go;
    std::vector<std::unique_ptr<Child>> vecChildren;
    for (u32 i = 0; i < uCount; ++i)
        vecChildren.push_back(std::make_unique<Child>([&, i] {
            SharedSegment()->MonitorVGA[i] = 1;
            ready.Give();
            go.Take();
            u32 uSum = 0;
            for (u32 j = 0; j < uCount; ++j) uSum += SharedSegment()->MonitorVGA[j];
            return uSum == uCount ? 0 : 1;
        }));
    for (u32 i = 0; i < uCount; ++i) ready.Take();
    for (u32 i = 0; i < uCount; ++i) go.Give();
    for (auto& pChild : vecChildren) EXPECT_EQ(pChild->Wait(), 0);
}

TEST_F(LinuxSegment, ObjectOfAnotherSizeIsLeftAloneForAPrivateBlock) {
    std::ofstream(Path()) << "short";
    EXPECT_EQ(RunInChild([] {
                  SharedSegment()->uDataBank = 1;
                  return 0;
              }),
              0);
    EXPECT_EQ(std::filesystem::file_size(Path()), 5u);
}

TEST_F(LinuxSegment, SymbolicLinkInItsPlaceIsNotFollowed) {
    const std::string strTarget = Path() + ".target";
    {
        std::ofstream file(strTarget);
        file << std::string(0xCB170, 'x');
    }
    std::filesystem::create_symlink(strTarget, Path());
    EXPECT_EQ(RunInChild(HasInitialImage), 0);
    std::string strStart(1, ' ');
    std::ifstream(strTarget).read(strStart.data(), 1);
    EXPECT_EQ(strStart, "x");
    std::filesystem::remove(strTarget);
}

TEST_F(LinuxSegment, NoPrivateNameStaysBehind) {
    EXPECT_EQ(RunInChild(HasInitialImage), 0);
    for (const auto& entry : std::filesystem::directory_iterator("/dev/shm"))
        if (entry.path().string().find(m_strSuffix) != std::string::npos) {
            EXPECT_EQ(entry.path().string(), Path());
        }
}

TEST_F(LinuxSegment, RecordsOfTheOwnIdLeftByExecAreDropped) {
    EXPECT_EQ(RunInChild([] {
                  RegisterProcess(static_cast<u32>(getpid()), 1);
                  RegisterProcess(static_cast<u32>(getpid()), 2);
                  RegisterProcess(4000000, 3);
                  g_fnDropRecordsOfProcess(static_cast<u32>(getpid()));
                  const auto& stTable = SharedSegment()->CommandTable;
                  return stTable[0].uThreadId == 0 && stTable[1].uThreadId == 0 && stTable[2].uThreadId == 3
                             ? 0
                             : 1;
              }),
              0);
}

/// A record that lies across a page: its changed flag on the first, the end of its command on the next.
stProcessRecord& RecordAcrossAPage() {
    const auto uPage = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    for (stProcessRecord& st : SharedSegment()->CommandTable)
        if (reinterpret_cast<std::uintptr_t>(&st.bChanged) / uPage !=
            reinterpret_cast<std::uintptr_t>(&st.Command.bRebuildUpdate) / uPage)
            return st;
    std::abort();
}

stProcessRecord* s_pRecord = nullptr;

int IsChangedFlagWrittenLast() {
    s_pRecord = &RecordAcrossAPage();
    s_pRecord->uThreadId = s_pRecord->uProcessId = 77;
    const auto uPage = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    const auto uNext = reinterpret_cast<std::uintptr_t>(&s_pRecord->Command.bRebuildUpdate) / uPage * uPage;
    // The write of the command's end faults: that is the moment to look at the flag.
    signal(SIGSEGV, [](int) { _exit(s_pRecord->bChanged == 0 ? 0 : 1); });
    if (mprotect(reinterpret_cast<void*>(uNext), uPage, PROT_READ) != 0) return 3;
    stSharedCommand stCommand{};
    stCommand.bRelease = 1;
    stCommand.bRebuildUpdate = 1;
    WriteCommandRecord(77, 77, 1, stCommand, g_uRecordChanged | g_uRecordCommand);
    return 2;
}

TEST_F(LinuxSegment, AReaderThatSeesTheChangedFlagFindsTheWholeCommand) {
    EXPECT_EQ(RunInChild(IsChangedFlagWrittenLast), 0);
}

} // namespace
