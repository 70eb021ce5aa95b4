// Picture files while they are written, and the threads that write them.
#include "child.h"
#include "platform/image_encoder.h"
#include "platform/linux/image_target.h"
#include "platform/threads.h"
#include "platform/utf.h"

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <vector>

namespace {

namespace fs = std::filesystem;
using platform::image::CImageTarget;

struct ImageTarget : ::testing::Test {
    void SetUp() override {
        char szFolder[] = "/tmp/orvin-target.XXXXXX";
        m_folder = mkdtemp(szFolder);
    }
    void TearDown() override { fs::remove_all(m_folder); }
    std::u16string Path(const char* szName) const {
        char16_t wz[512];
        platform::Utf8ToUtf16((m_folder / szName).c_str(), wz, 512);
        return wz;
    }
    std::size_t Files() const {
        const fs::directory_iterator it(m_folder);
        return static_cast<std::size_t>(std::distance(begin(it), end(it)));
    }
    std::string Read(const char* szName) const {
        std::ifstream file(m_folder / szName);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    bool Write(const char* szName, const char* szText) const {
        CImageTarget target;
        return target.Open(Path(szName).c_str()) && std::fputs(szText, target.File()) >= 0 && target.Finish();
    }
    fs::path m_folder;
};

} // namespace

TEST_F(ImageTarget, NobodyFindsItBeforeItIsWhole) {
    CImageTarget target;
    ASSERT_TRUE(target.Open(Path("a.png").c_str()));
    std::fputs("half", target.File());
    std::fflush(target.File());
    EXPECT_FALSE(fs::exists(m_folder / "a.png"));
    EXPECT_TRUE(target.Finish());
    EXPECT_EQ(Read("a.png"), "half");
    EXPECT_EQ(Files(), 1u);
}

TEST_F(ImageTarget, WhatIsNotFinishedIsTakenAway) {
    {
        CImageTarget target;
        ASSERT_TRUE(target.Open(Path("a.png").c_str()));
        std::fputs("half", target.File());
    }
    EXPECT_EQ(Files(), 0u);
}

TEST_F(ImageTarget, AProcessThatEndsMeanwhileLeavesNothing) {
    EXPECT_EQ(RunInChild([&] {
                  CImageTarget target;
                  if (!target.Open(Path("a.png").c_str())) return 1;
                  std::fputs("half", target.File());
                  std::fflush(target.File());
                  _exit(0);
              }),
              0);
    EXPECT_EQ(Files(), 0u);
}

TEST_F(ImageTarget, AFileOfThatNameIsReplacedWhole) {
    EXPECT_TRUE(Write("a.png", "the first one, a long one"));
    EXPECT_TRUE(Write("a.png", "second"));
    EXPECT_EQ(Read("a.png"), "second");
    EXPECT_EQ(Files(), 1u);
}

TEST_F(ImageTarget, TwoOfOneNameAtOnceAreBothWhole) {
    CImageTarget first, second;
    ASSERT_TRUE(first.Open(Path("a.png").c_str()));
    ASSERT_TRUE(second.Open(Path("a.png").c_str()));
    std::fputs("first", first.File());
    std::fputs("second", second.File());
    EXPECT_TRUE(second.Finish());
    EXPECT_EQ(Read("a.png"), "second");
    EXPECT_TRUE(first.Finish());
    EXPECT_EQ(Read("a.png"), "first");
    EXPECT_EQ(Files(), 1u);
}

TEST_F(ImageTarget, AFolderThatVanishesTakesTheFileAlong) {
    CImageTarget target;
    ASSERT_TRUE(target.Open(Path("a.png").c_str()));
    fs::remove_all(m_folder);
    EXPECT_FALSE(target.Finish());
    EXPECT_FALSE(fs::exists(m_folder));
}

TEST_F(ImageTarget, ALinkIsWrittenThrough) {
    EXPECT_TRUE(Write("real.png", "old and long"));
    fs::create_symlink("real.png", m_folder / "a.png");
    EXPECT_TRUE(Write("a.png", "new"));
    EXPECT_EQ(Read("real.png"), "new");
    EXPECT_TRUE(fs::is_symlink(m_folder / "a.png"));
}

TEST_F(ImageTarget, AFileOfOursIsAsAnyOther) {
    const mode_t uMask = umask(027);
    EXPECT_TRUE(Write("a.png", "x"));
    umask(uMask);
    EXPECT_EQ(fs::status(m_folder / "a.png").permissions(), static_cast<fs::perms>(0640));
}

TEST_F(ImageTarget, AFolderThatMayNotBeWrittenToIsRefused) {
    if (geteuid() == 0) GTEST_SKIP() << "root may";
    fs::permissions(m_folder, static_cast<fs::perms>(0500));
    EXPECT_FALSE(Write("a.png", "x"));
    fs::permissions(m_folder, static_cast<fs::perms>(0700));
}

/// The system's limit on the size of a file stands for a disk without room.
TEST_F(ImageTarget, AFullDiskLeavesNoFile) {
    for (const platform::ImageContainer e :
         {platform::ImageContainer::Bmp, platform::ImageContainer::Jpeg, platform::ImageContainer::Png}) {
        const int iStep = RunInChild([&] {
            std::signal(SIGXFSZ, SIG_IGN);
            const rlimit stLimit{1000, 1000};
            setrlimit(RLIMIT_FSIZE, &stLimit);
            std::vector<u8> vec(300 * 200 * 3);
            for (std::size_t u = 0; u < vec.size(); ++u) vec[u] = static_cast<u8>(u * u >> 7);
            return static_cast<int>(platform::EncodeImage(
                {300, 200, 900, vec.data(), Path("a.img").c_str(), e, platform::ImagePixels::Bgr24}));
        });
        EXPECT_GE(iStep, 10);
        EXPECT_LE(iStep, 12);
        EXPECT_EQ(Files(), 0u);
    }
}

TEST(LinuxErrands, AnyNumberRunsBelowTheHost) {
    static std::atomic<u32> s_uRunning, s_uLow;
    static std::atomic<bool> s_bEnd;
    s_uRunning = s_uLow = 0;
    s_bEnd = false;
    constexpr u32 c_uCount = 100; // more than there are places for threads with a handle
    const int iOwn = getpriority(PRIO_PROCESS, static_cast<id_t>(gettid()));
    static int s_iOwn;
    s_iOwn = iOwn;
    for (u32 u = 0; u < c_uCount; ++u)
        EXPECT_TRUE(platform::StartDetachedThread(
            [](void*) -> u32 {
                s_uLow += getpriority(PRIO_PROCESS, static_cast<id_t>(gettid())) > s_iOwn || s_iOwn == 19;
                ++s_uRunning;
                while (!s_bEnd) std::this_thread::yield();
                --s_uRunning;
                return 0;
            },
            nullptr));
    while (s_uRunning != c_uCount) std::this_thread::yield();
    EXPECT_EQ(s_uLow, c_uCount);
    EXPECT_EQ(getpriority(PRIO_PROCESS, static_cast<id_t>(gettid())), iOwn);
    s_bEnd = true;
    while (s_uRunning != 0) std::this_thread::yield();
    EXPECT_FALSE(platform::StartDetachedThread(nullptr, nullptr));
}

TEST(LinuxErrands, TakeNoSignalOfTheHost) {
    static std::atomic<int> s_iBlocked;
    s_iBlocked = -1;
    ASSERT_TRUE(platform::StartDetachedThread(
        [](void*) -> u32 {
            sigset_t st;
            pthread_sigmask(SIG_SETMASK, nullptr, &st);
            s_iBlocked = sigismember(&st, SIGALRM);
            return 0;
        },
        nullptr));
    while (s_iBlocked < 0) std::this_thread::yield();
    EXPECT_EQ(s_iBlocked, 1);
}
