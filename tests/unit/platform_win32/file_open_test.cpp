// Files that are written, and read by one at a time.
#include "platform/folders.h"
#include "platform/regular_file.h"
#include "platform/win32/windows_api.h"

#include <cstdio>
#include <cwchar>
#include <gtest/gtest.h>
#include <io.h>

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

TEST(FileOpen, DevicesAndPipesAreNoFiles) {
    for (const char16_t* wz : {u"NUL", u"CON", u"C:\\", u"\\\\.\\pipe\\orvin_file_open"})
        EXPECT_EQ(platform::OpenFileForRead(wz), nullptr);
    EXPECT_EQ(platform::OpenRegularFile("NUL"), nullptr);
    const HANDLE hPipe =
        CreateNamedPipeW(L"\\\\.\\pipe\\orvin_file_open", PIPE_ACCESS_DUPLEX, 0, 1, 0, 0, 0, nullptr);
    ASSERT_NE(hPipe, INVALID_HANDLE_VALUE);
    EXPECT_EQ(platform::OpenFileForRead(u"\\\\.\\pipe\\orvin_file_open"), nullptr);
    CloseHandle(hPipe);
}

TEST(FileOpen, TheNarrowFormAndTheSize) {
    std::FILE* pFile = platform::OpenFileForWrite(u"file_open_size.bin");
    ASSERT_NE(pFile, nullptr);
    EXPECT_EQ(std::fwrite("a\r\nb", 1, 4, pFile), 4u);
    std::fclose(pFile);
    pFile = platform::OpenRegularFile("file_open_size.bin");
    ASSERT_NE(pFile, nullptr);
    EXPECT_EQ(platform::SizeOfFile(pFile), 4u);
    char szText[8] = "";
    EXPECT_EQ(std::fread(szText, 1, sizeof szText, pFile), 4u) << "line ends stay";
    DWORD uFlags = HANDLE_FLAG_INHERIT;
    EXPECT_TRUE(GetHandleInformation(reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(pFile))), &uFlags));
    EXPECT_EQ(uFlags & HANDLE_FLAG_INHERIT, 0u);
    std::fclose(pFile);
    std::remove("file_open_size.bin");
}
