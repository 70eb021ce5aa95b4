// Files that are written, and read.
#include "platform/folders.h"
#include "platform/regular_file.h"

#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <unistd.h>

TEST(LinuxFileOpen, WritingEmptiesTheFileAndReadingNeedsAPlainOne) {
    const auto path = std::filesystem::temp_directory_path() / ("orvin-open-" + std::to_string(getpid()));
    std::filesystem::create_directory(path);
    const std::u16string wzName = (path / "\xC3\xA4.bin").u16string(), wzFolder = path.u16string();
    std::FILE* pFile = platform::OpenFileForWrite(wzName.c_str());
    ASSERT_NE(pFile, nullptr);
    std::fputs("ab", pFile);
    std::fclose(pFile);
    pFile = platform::OpenFileForReadAlone(wzName.c_str());
    ASSERT_NE(pFile, nullptr);
    EXPECT_EQ(std::fgetc(pFile), 'a');
    std::fclose(pFile);
    pFile = platform::OpenFileForWrite(wzName.c_str());
    ASSERT_NE(pFile, nullptr);
    EXPECT_EQ(std::fgetc(pFile), EOF);
    std::fclose(pFile);
    EXPECT_EQ(platform::OpenFileForReadAlone(wzFolder.c_str()), nullptr);
    EXPECT_EQ(platform::OpenFileForWrite(wzFolder.c_str()), nullptr);
    std::filesystem::remove_all(path);
}

TEST(LinuxFileOpen, ProgramsThatTheHostStartsDoNotInheritTheFile) {
    std::FILE* const pFile = platform::OpenRegularFile("/proc/self/exe");
    ASSERT_NE(pFile, nullptr);
    EXPECT_NE(fcntl(fileno(pFile), F_GETFD) & FD_CLOEXEC, 0);
    EXPECT_GT(platform::SizeOfFile(pFile), 100000u);
    std::fclose(pFile);
}
