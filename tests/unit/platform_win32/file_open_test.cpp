// Files that are written, and read by one at a time.
#include "platform/folders.h"

#include <cstdio>
#include <cwchar>
#include <gtest/gtest.h>

static const char16_t* const g_wzName = u"file_open_\u00E4\u4E2D.bin";

TEST(FileOpen, WritingTakesAnyNameAndEmptiesTheFile) {
    std::FILE* pFile = platform::OpenFileForWrite(g_wzName);
    ASSERT_NE(pFile, nullptr);
    EXPECT_EQ(std::fwrite("ab\n", 1, 3, pFile), 3u);
    std::fclose(pFile);
    pFile = platform::OpenFileForWrite(g_wzName);
    ASSERT_NE(pFile, nullptr);
    EXPECT_EQ(std::fgetc(pFile), EOF);
    std::fclose(pFile);
    EXPECT_EQ(platform::OpenFileForWrite(u"C:\\no such folder\\a"), nullptr);
    _wremove(reinterpret_cast<const wchar_t*>(g_wzName));
}

TEST(FileOpen, NobodyElseReadsAFileThatIsReadAlone) {
    std::FILE* pFile = platform::OpenFileForWrite(g_wzName);
    ASSERT_NE(pFile, nullptr);
    std::fclose(pFile);
    pFile = platform::OpenFileForReadAlone(g_wzName);
    ASSERT_NE(pFile, nullptr);
    EXPECT_EQ(platform::OpenFileForRead(g_wzName), nullptr);
    std::fclose(pFile);
    pFile = platform::OpenFileForRead(g_wzName);
    ASSERT_NE(pFile, nullptr);
    EXPECT_EQ(platform::OpenFileForReadAlone(g_wzName), nullptr) << "another reader is in the way";
    std::fclose(pFile);
    _wremove(reinterpret_cast<const wchar_t*>(g_wzName));
    EXPECT_EQ(platform::OpenFileForReadAlone(g_wzName), nullptr);
}
