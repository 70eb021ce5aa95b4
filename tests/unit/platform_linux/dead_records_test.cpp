// Programs that are killed, or replaced by another one: their records and claims do not stay.
#include "child.h"
#include "platform/linux/process_stamp.h"
#include "platform/named_mapping.h"
#include "platform/process.h"
#include "platform/shared_block.h"
#include "shared/process_records.h"
#include <cstdlib>
#include <dlfcn.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/syscall.h>

namespace {

using platform::SharedSegment;

constexpr int c_iMany = 150;

u32 Pid() { return static_cast<u32>(getpid()); }
u32 Tid() { return static_cast<u32>(gettid()); }

void Register() { RegisterProcess(Pid(), Tid()); }

bool HoldsRecord() {
    u8 bChanged = 0;
    return ReadCommandRecord(Pid(), Tid(), g_uRecordChanged, &bChanged, nullptr);
}

u32 TakenSlots() {
    u32 uTaken = 0;
    for (const stProcessRecord& st : SharedSegment()->CommandTable) uTaken += st.uThreadId != 0;
    return uTaken;
}

class LinuxDeadRecords : public testing::Test {
  protected:
    LinuxDeadRecords() {
        static int iCount = 0;
        m_strSuffix = "dead-" + std::to_string(getpid()) + "-" + std::to_string(++iCount);
        setenv("ORVIN_OSD_SEGMENT", m_strSuffix.c_str(), 1);
    }
    ~LinuxDeadRecords() override {
        std::filesystem::remove("/dev/shm/ORVIN-OSD64-GL.Shared-" + m_strSuffix);
        unsetenv("ORVIN_OSD_SEGMENT");
    }

    std::string m_strSuffix;
};

TEST_F(LinuxDeadRecords, AfterAHundredAndFiftyKillsANewProgramStillGetsARecord) {
    Signal ready, end;
    Child holder([&] {
        Register();
        ready.Give();
        end.Take();
        return HoldsRecord() ? 0 : 1;
    });
    ready.Take();
    for (int i = 0; i < c_iMany; ++i) {
        Child killed([] {
            Register();
            if (!HoldsRecord()) return 1;
            return raise(SIGKILL);
        });
        ASSERT_EQ(killed.Wait(), 1000 + SIGKILL) << i;
    }
    EXPECT_EQ(RunInChild([] {
                  Register();
                  return HoldsRecord() ? 0 : 1;
              }),
              0);
    end.Give();
    EXPECT_EQ(holder.Wait(), 0);
}

/// The library itself, whose handler of forks is under test, in a process of its own.
int ForkAndExecUnderTheLibrary() {
    if (!dlopen(ORVIN_BINARY_DIR "/bin/libORVIN-OSD64-GL.so", RTLD_NOW | RTLD_LOCAL)) return 1;
    if (!HoldsRecord()) return 2;
    for (int i = 0; i < c_iMany; ++i) {
        const pid_t iChild = fork();
        if (iChild == 0) {
            execl("/bin/true", "true", nullptr);
            _exit(9);
        }
        int iStatus = 0;
        if (waitpid(iChild, &iStatus, 0) != iChild || iStatus != 0) return 3;
    }
    return TakenSlots() == 1 ? 0 : 4;
}

TEST_F(LinuxDeadRecords, AHundredAndFiftyForksWithExecTakeNoRecord) {
    EXPECT_EQ(RunInChild(ForkAndExecUnderTheLibrary), 0);
}

TEST_F(LinuxDeadRecords, ClaimsOfKilledProgramsAreRemoved) {
    std::vector<std::string> listPaths;
    for (int i = 0; i < 20; ++i) {
        Signal end;
        Child killed([&] {
            end.Take();
            const std::string strName = "[RV5-OSD][PID:" + std::to_string(getpid()) + "]";
            platform::CreateNamedMapping(strName.c_str(), 256);
            return raise(SIGKILL);
        });
        listPaths.push_back("/dev/shm/[RV5-OSD][PID:" + std::to_string(killed.Pid()) + "]");
        end.Give();
        ASSERT_EQ(killed.Wait(), 1000 + SIGKILL);
        ASSERT_TRUE(std::filesystem::exists(listPaths.back()));
    }
    const std::string strOwn = "[RV5-OSD][PID:" + std::to_string(getpid()) + "]";
    void* const hOwn = platform::CreateNamedMapping(strOwn.c_str(), 256);
    // The first program under a fresh segment clears them too.
    EXPECT_EQ(RunInChild([] {
                  g_fnClearOnFirstAttach();
                  return 0;
              }),
              0);
    for (const std::string& strPath : listPaths) EXPECT_FALSE(std::filesystem::exists(strPath)) << strPath;
    EXPECT_TRUE(std::filesystem::exists("/dev/shm/" + strOwn));
    platform::CloseMapping(hOwn);
}

TEST(LinuxProcessStamp, TellsALivingProcessFromAnEndedOne) {
    Signal end;
    Child child([&] {
        end.Take();
        return 0;
    });
    const u32 uId = static_cast<u32>(child.Pid());
    const u32 uStamp = platform::ProcessStamp(uId);
    EXPECT_NE(uStamp, 0u);
    EXPECT_FALSE(platform::IsProcessGone(uId, uStamp));
    EXPECT_FALSE(platform::IsProcessGone(uId, 0));
    end.Give();
    siginfo_t stInfo{};
    ASSERT_EQ(waitid(P_PID, uId, &stInfo, WEXITED | WNOWAIT), 0); // ended, and not yet taken notice of
    EXPECT_TRUE(platform::IsProcessGone(uId, uStamp));
    EXPECT_TRUE(platform::IsProcessGone(uId, 0));
    child.Wait();
    EXPECT_TRUE(platform::IsProcessGone(uId, uStamp));
    EXPECT_EQ(platform::ProcessStamp(uId), 0u);
}

TEST(LinuxProcessStamp, TellsAReusedIdApartAndIdsOfAnotherNamespaceNever) {
    const u32 uStamp = platform::ProcessStamp(Pid());
    ASSERT_NE(uStamp, 0u);
    EXPECT_TRUE(platform::IsProcessGone(Pid(), uStamp ^ 1));
    EXPECT_FALSE(platform::IsProcessGone(Pid(), uStamp ^ 0x01000001));
    EXPECT_FALSE(platform::IsProcessGone(4194305, 0x01000001 ^ (uStamp & 0xFF000000)));
    EXPECT_TRUE(platform::IsProcessGone(0, 0));
    EXPECT_TRUE(platform::IsProcessGone(0xFFFFFFF0, 0));
}

TEST(LinuxProcessStamp, AProgramWhoseFirstThreadHasEndedLives) {
    Signal ready, end;
    static Signal *s_pReady, *s_pEnd;
    s_pReady = &ready, s_pEnd = &end;
    Child child([] {
        pthread_t hThread;
        const auto fnRun = [](void*) -> void* {
            // The first thread's end shows in its own entry.
            for (char cState = 0; cState != 'Z';) {
                char szLine[512] = {};
                const int iFile = open(("/proc/" + std::to_string(getpid()) + "/stat").c_str(), O_RDONLY);
                if (read(iFile, szLine, sizeof szLine - 1) > 0) cState = std::strrchr(szLine, ')')[2];
                close(iFile);
            }
            s_pReady->Give();
            s_pEnd->Take();
            _exit(0);
        };
        if (pthread_create(&hThread, nullptr, fnRun, nullptr) != 0) return 1;
        syscall(SYS_exit, 0); // of this thread alone
        return 2;
    });
    ready.Take();
    EXPECT_FALSE(platform::IsProcessGone(static_cast<u32>(child.Pid()), 0));
    end.Give();
    EXPECT_EQ(child.Wait(), 0);
}

} // namespace
