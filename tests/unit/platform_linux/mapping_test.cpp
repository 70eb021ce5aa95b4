#include "child.h"
#include "platform/named_mapping.h"
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace {

class LinuxMapping : public testing::Test {
  protected:
    void SetUp() override { m_strOwn = "[RV5-OSD][PID:" + std::to_string(getpid()) + "]"; }
    void TearDown() override {
        std::filesystem::remove("/dev/shm/" + m_strOwn);
        std::filesystem::remove("/dev/shm/" + m_strOther);
    }
    /// An object made by hand, last written long before this process began.
    static void MakeOld(const std::string& strName, const char* szText) {
        const std::string strPath = "/dev/shm/" + strName;
        std::string strBytes(256, '\0');
        strBytes.replace(0, std::strlen(szText), szText);
        std::ofstream(strPath) << strBytes;
        const timespec ast[2] = {{1000000000, 0}, {1000000000, 0}};
        ASSERT_EQ(utimensat(AT_FDCWD, strPath.c_str(), ast, 0), 0);
    }
    static std::string Text(void* hMapping) {
        auto* const pView = static_cast<char*>(platform::MapView(hMapping, 256));
        const std::string str = pView ? std::string(pView, 3) : "none";
        platform::UnmapView(pView);
        return str;
    }

    std::string m_strOwn;
    std::string m_strOther = "orvin-unit-mapping-" + std::to_string(getpid());
};

TEST_F(LinuxMapping, NewBlockIsZeroAndGoesWithItsMaker) {
    void* const hMapping = platform::CreateNamedMapping(m_strOwn.c_str(), 256);
    ASSERT_NE(hMapping, nullptr);
    EXPECT_EQ(Text(hMapping), std::string(3, '\0'));
    EXPECT_TRUE(std::filesystem::exists("/dev/shm/" + m_strOwn));
    platform::CloseMapping(hMapping);
    EXPECT_FALSE(std::filesystem::exists("/dev/shm/" + m_strOwn));
}

TEST_F(LinuxMapping, ExistingBlockKeepsItsContentsSizeAndName) {
    MakeOld(m_strOther, "D3D");
    void* const hMapping = platform::CreateNamedMapping(m_strOther.c_str(), 512);
    ASSERT_NE(hMapping, nullptr);
    EXPECT_EQ(Text(hMapping), "D3D");
    EXPECT_EQ(platform::MapView(hMapping, 512), nullptr);
    platform::CloseMapping(hMapping);
    EXPECT_EQ(std::filesystem::file_size("/dev/shm/" + m_strOther), 256u);
}

TEST_F(LinuxMapping, LeftoverOfARecycledProcessIdIsRewritten) {
    MakeOld(m_strOwn, "D3D");
    void* const hMapping = platform::CreateNamedMapping(m_strOwn.c_str(), 256);
    ASSERT_NE(hMapping, nullptr);
    EXPECT_EQ(Text(hMapping), std::string(3, '\0'));
    platform::CloseMapping(hMapping);
}

TEST_F(LinuxMapping, ClaimMadeSinceTheProcessBeganStands) {
    void* const hFirst = platform::CreateNamedMapping(m_strOwn.c_str(), 256);
    auto* const pView = static_cast<char*>(platform::MapView(hFirst, 256));
    ASSERT_NE(pView, nullptr);
    std::memcpy(pView, "D3D", 4);
    void* const hSecond = platform::CreateNamedMapping(m_strOwn.c_str(), 256);
    EXPECT_EQ(Text(hSecond), "D3D");
    platform::UnmapView(pView);
    platform::CloseMapping(hSecond);
    platform::CloseMapping(hFirst);
}

TEST_F(LinuxMapping, OpenFindsTheBlockByItsWideNameOnlyWhileItExists) {
    const std::u16string wstrName(m_strOther.begin(), m_strOther.end());
    EXPECT_EQ(platform::OpenNamedMapping(wstrName.c_str()), nullptr);
    MakeOld(m_strOther, "abc");
    void* const hMapping = platform::OpenNamedMapping(wstrName.c_str());
    ASSERT_NE(hMapping, nullptr);
    EXPECT_EQ(Text(hMapping), "abc");
    platform::CloseMapping(hMapping);
    EXPECT_TRUE(std::filesystem::exists("/dev/shm/" + m_strOther));
}

TEST_F(LinuxMapping, SeparatorsInANameAreFolded) {
    const std::string strName = "a\\b/" + m_strOther;
    void* const hMapping = platform::CreateNamedMapping(strName.c_str(), 16);
    ASSERT_NE(hMapping, nullptr);
    EXPECT_TRUE(std::filesystem::exists("/dev/shm/a_b_" + m_strOther));
    platform::CloseMapping(hMapping);
}

TEST_F(LinuxMapping, BadNamesAndSizesAreRefused) {
    EXPECT_EQ(platform::CreateNamedMapping("", 16), nullptr);
    EXPECT_EQ(platform::CreateNamedMapping(nullptr, 16), nullptr);
    EXPECT_EQ(platform::CreateNamedMapping("..", 16), nullptr);
    EXPECT_EQ(platform::CreateNamedMapping(std::string(400, 'x').c_str(), 16), nullptr);
    EXPECT_EQ(platform::CreateNamedMapping(m_strOther.c_str(), 0), nullptr);
    EXPECT_EQ(platform::OpenNamedMapping(nullptr), nullptr);
    EXPECT_EQ(platform::MapView(nullptr, 16), nullptr);
    platform::UnmapView(nullptr);
    platform::CloseMapping(nullptr);
}

TEST_F(LinuxMapping, ForkedChildThatClosesLeavesTheParentsName) {
    void* const hMapping = platform::CreateNamedMapping(m_strOther.c_str(), 16);
    ASSERT_NE(hMapping, nullptr);
    EXPECT_EQ(RunInChild([&] {
                  platform::CloseMapping(hMapping);
                  return 0;
              }),
              0);
    EXPECT_TRUE(std::filesystem::exists("/dev/shm/" + m_strOther));
    platform::CloseMapping(hMapping);
}

} // namespace
