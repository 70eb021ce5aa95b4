// The reader that all contents of files go through.
#include "platform/input_file.h"
#include "platform/regular_file.h"
#include "tests/support/odd_files.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

const char* const g_szName = "input_file_test.bin";

struct InputFileTest : testing::Test {
    void TearDown() override { std::filesystem::remove_all(g_szName); }
    static bool Read(u64 uMost, std::string& strBytes) {
        return platform::ReadWholeFile(platform::OpenInput(g_szName), uMost, strBytes);
    }
};

TEST_F(InputFileTest, AFileOfTheMostBytesIsReadAndOneMoreIsNot) {
    std::ofstream(g_szName, std::ios::binary) << "a\r\n\0b" << std::string(3, '\0');
    std::string strBytes = "old";
    const u64 uSize = std::filesystem::file_size(g_szName);
    EXPECT_TRUE(Read(uSize, strBytes));
    EXPECT_EQ(strBytes.size(), uSize);
    EXPECT_TRUE(strBytes.starts_with("a\r\n"));
    EXPECT_FALSE(Read(uSize - 1, strBytes));
    EXPECT_EQ(strBytes, "") << "nothing is read of it";
    EXPECT_TRUE(Read(~0u, strBytes));
}

TEST_F(InputFileTest, OnlyPlainFilesAreOpened) {
    ForEachOddFile(g_szName, [](const char* szKind) {
        std::string strBytes;
        const bool bPlain = std::string(szKind).starts_with("file");
        const std::u16string wzName(g_szName, g_szName + std::char_traits<char>::length(g_szName));
        EXPECT_EQ(static_cast<bool>(platform::OpenInput(g_szName)), bPlain) << szKind;
        EXPECT_EQ(static_cast<bool>(platform::OpenInput(wzName.c_str())), bPlain) << szKind;
        EXPECT_EQ(static_cast<bool>(platform::OpenInputAlone(wzName.c_str())), bPlain) << szKind;
        EXPECT_FALSE(Read(1 << 20, strBytes)) << szKind;
    });
    EXPECT_FALSE(platform::OpenInput(g_szName)) << "nothing there";
    EXPECT_FALSE(platform::OpenInput(static_cast<const char*>(nullptr)));
    EXPECT_FALSE(platform::OpenInput(static_cast<const char16_t*>(nullptr)));
}

TEST_F(InputFileTest, PiecesEndWithTheFileOrTheBound) {
    std::ofstream(g_szName, std::ios::binary) << std::string(700000, 'x');
    const platform::InputFile pFile = platform::OpenInput(g_szName);
    std::vector<u8> bytes(3, 'y');
    platform::AppendBytes(pFile.get(), 300000, bytes);
    EXPECT_EQ(bytes.size(), 300003u);
    EXPECT_EQ(bytes[2], 'y');
    platform::AppendBytes(pFile.get(), u64{1} << 40, bytes);
    EXPECT_EQ(bytes.size(), 700003u);
    EXPECT_EQ(bytes.back(), 'x');
}

TEST_F(InputFileTest, BlankPartsThatAreGivenBackStillReadAsZeros) {
    constexpr std::size_t uBytes = 5 << 20;
    std::string strBytes(uBytes, '\0');
    for (const std::size_t u : {std::size_t{0}, std::size_t{2 << 20}, uBytes - 1}) strBytes[u] = 'x';
    std::ofstream(g_szName, std::ios::binary) << strBytes;
    std::FILE* const pFile = std::fopen(g_szName, "rb+");
    ASSERT_NE(pFile, nullptr);
    platform::FreeBlankParts(pFile);
    EXPECT_EQ(platform::SizeOfFile(pFile), uBytes);
    std::rewind(pFile);
    EXPECT_EQ(std::fgetc(pFile), 'x');
    for (std::size_t uAt = 0; uAt < uBytes;) {
        const u64 uData = platform::DataFrom(pFile, uAt);
        ASSERT_GE(uData, uAt);
        ASSERT_LE(uData, uBytes);
        EXPECT_EQ(strBytes.find('x', uAt), strBytes.find('x', uData)) << "nothing is passed over";
        uAt = uData + 65536;
    }
    EXPECT_GE(platform::DataFrom(pFile, uBytes), uBytes);
    EXPECT_EQ(std::fgetc(pFile), 0) << "the stream stands where it stood";
    std::fclose(pFile);
    std::string strRead;
    EXPECT_TRUE(Read(uBytes, strRead));
    EXPECT_EQ(strRead, strBytes);
}

} // namespace
