// The section "Shared": its place in the file, its bytes, and that processes share it.
#include "platform/process.h"
#include "platform/shared_block.h"
#include "shared/process_records.h"
#include "tests/unit/platform_win32/image_file.h"
#include <cstdlib>
#include <gtest/gtest.h>
#include <memory>

namespace {

constexpr u32 kSectionBytes = 0xCB170;
constexpr u32 kSectionFlags = 0xD0000040; // read, write, shared, initialised data

std::vector<u8> ExpectedImage() {
    std::vector<u8> abImage(kSectionBytes, 0);
    abImage[0x11] = 1;         // global enable
    abImage[0x5930 + 136] = 1; // release in the default command
    abImage[0x5930 + 148] = 1; // and its three alignments
    abImage[0x5930 + 164] = 1;
    abImage[0x5930 + 180] = 1;
    return abImage;
}

/// Runs one test of this program in a process of its own; its exit code, 0 when it passed.
u32 RunInChild(const char* szTest, const char* szArgument) {
    char szProgram[MAX_PATH] = {};
    GetModuleFileNameA(nullptr, szProgram, MAX_PATH);
    std::string szCommand =
        std::string("\"") + szProgram + "\" --gtest_also_run_disabled_tests --gtest_filter=" + szTest;
    SetEnvironmentVariableA("ORVIN_TEST_ARGUMENT", szArgument);
    STARTUPINFOA start{};
    start.cb = sizeof(start);
    PROCESS_INFORMATION process{};
    if (!CreateProcessA(nullptr, szCommand.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start,
                        &process))
        return 1000;
    WaitForSingleObject(process.hProcess, INFINITE);
    DWORD uExit = 1001;
    GetExitCodeProcess(process.hProcess, &uExit);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return uExit;
}

std::string ArgumentFromParent() {
    char szArgument[MAX_PATH] = {};
    GetEnvironmentVariableA("ORVIN_TEST_ARGUMENT", szArgument, MAX_PATH);
    return szArgument;
}

std::string CopyLibrary(const char* szName) {
    char szFolder[MAX_PATH] = {};
    GetTempPathA(MAX_PATH, szFolder);
    const std::string szCopy = std::string(szFolder) + szName;
    return CopyFileA(LibraryPath().c_str(), szCopy.c_str(), FALSE) ? szCopy : "";
}

stSharedSegment* SegmentOf(const MappedLibrary& library) {
    return reinterpret_cast<stSharedSegment*>(library.Section("Shared"));
}

} // namespace

TEST(SharedSection, SizeFlagsAndBytesInTheLibraryFile) {
    const std::vector<u8> abFile = ReadWholeFile(LibraryPath());
    ASSERT_FALSE(abFile.empty()) << LibraryPath();
    const IMAGE_SECTION_HEADER* pSection = FindSection(abFile.data(), "Shared");
    ASSERT_NE(pSection, nullptr);
    EXPECT_EQ(pSection->Misc.VirtualSize, kSectionBytes);
    EXPECT_EQ(pSection->Characteristics & 0xF00000E0u,
              kSectionFlags); // alignment bits mean nothing in an image
    ASSERT_GE(pSection->SizeOfRawData, kSectionBytes);
    const u8* pBytes = abFile.data() + pSection->PointerToRawData;
    EXPECT_TRUE(std::vector<u8>(pBytes, pBytes + kSectionBytes) == ExpectedImage());
}

TEST(SharedSection, FirstProcessStartsFromTheInitialImage) {
    const std::string szCopy = CopyLibrary("orvin-section-first.dll");
    ASSERT_FALSE(szCopy.empty());
    {
        MappedLibrary library(szCopy);
        const u8* pBytes = library.Section("Shared");
        ASSERT_NE(pBytes, nullptr);
        EXPECT_TRUE(std::vector<u8>(pBytes, pBytes + kSectionBytes) == ExpectedImage());
    }
    DeleteFileA(szCopy.c_str());
}

TEST(SharedSectionChild, DISABLED_WritesIntoTheLibrary) {
    MappedLibrary library(ArgumentFromParent());
    stSharedSegment* pSegment = SegmentOf(library);
    ASSERT_NE(pSegment, nullptr);
    EXPECT_EQ(pSegment->MonitorPos[14], 0x11223344u) << "the parent wrote this before";
    pSegment->MonitorPos[15] = 0x55667788;
    pSegment->ProcessProfile[199].bUseGlobal = 99;
}

TEST(SharedSection, TwoProcessesSeeTheSameBytesAndACopyHasItsOwn) {
    const std::string szFirst = CopyLibrary("orvin-section-a.dll"),
                      szSecond = CopyLibrary("orvin-section-b.dll");
    ASSERT_FALSE(szFirst.empty() || szSecond.empty());
    {
        MappedLibrary first(szFirst), second(szSecond);
        volatile stSharedSegment* pSegment = SegmentOf(first);
        ASSERT_NE(SegmentOf(first), nullptr);
        pSegment->MonitorPos[14] = 0x11223344;
        EXPECT_EQ(RunInChild("SharedSectionChild.DISABLED_WritesIntoTheLibrary", szFirst.c_str()), 0u);
        EXPECT_EQ(pSegment->MonitorPos[15], 0x55667788u);
        EXPECT_EQ(pSegment->ProcessProfile[199].bUseGlobal, 99u);
        const u8* pOther = second.Section("Shared");
        EXPECT_TRUE(std::vector<u8>(pOther, pOther + kSectionBytes) == ExpectedImage());
    }
    DeleteFileA(szFirst.c_str());
    DeleteFileA(szSecond.c_str());
}

TEST(SharedSectionChild, DISABLED_WritesThroughTheService) {
    EXPECT_EQ(platform::SharedSegment()->MonitorPos[13], 7u);
    platform::SharedSegment()->MonitorPos[12] = 8;
}

TEST(SharedSection, TheServiceGivesTheSharedBytes) {
    volatile stSharedSegment* pSegment = platform::SharedSegment();
    const u8* pProgram = reinterpret_cast<const u8*>(GetModuleHandleA(nullptr));
    EXPECT_EQ(reinterpret_cast<const u8*>(platform::SharedSegment()),
              pProgram + FindSection(pProgram, "Shared")->VirtualAddress);
    pSegment->MonitorPos[13] = 7;
    EXPECT_EQ(RunInChild("SharedSectionChild.DISABLED_WritesThroughTheService", ""), 0u);
    EXPECT_EQ(pSegment->MonitorPos[12], 8u);
}

TEST(DeadRecordsChild, DISABLED_RegistersAndIsKilled) {
    RegisterProcess(GetCurrentProcessId(), GetCurrentThreadId());
    TerminateProcess(GetCurrentProcess(), 77);
}

TEST(DeadRecordsChild, DISABLED_RegistersAndHoldsARecord) {
    const u32 uPid = GetCurrentProcessId(), uTid = GetCurrentThreadId();
    RegisterProcess(uPid, uTid);
    u8 bChanged = 0;
    EXPECT_TRUE(ReadCommandRecord(uPid, uTid, g_uRecordChanged, &bChanged, nullptr));
}

/// The rest of both tables, filled with the records that are there already, turn by turn.
void RepeatRecords(stSharedSegment& stSegment, u32 uHeld) {
    for (u32 u = uHeld; u < g_uProcessRecordCount; ++u) {
        stSegment.CommandTable[u] = stSegment.CommandTable[u % uHeld];
        stSegment.StatusTable[u] = stSegment.StatusTable[u % uHeld];
        stSegment.aCommandStamp[u] = stSegment.aCommandStamp[u % uHeld];
        stSegment.aStatusStamp[u] = stSegment.aStatusStamp[u % uHeld];
    }
}

TEST(DeadRecords, ANewProgramTakesOverTheRecordOfATerminatedOne) {
    constexpr u32 c_uKilled = 10; // each start of a program costs time here
    stSharedSegment& stSegment = *platform::SharedSegment();
    g_fnClearRecordTables();
    for (u32 u = 0; u < c_uKilled; ++u)
        ASSERT_EQ(RunInChild("DeadRecordsChild.DISABLED_RegistersAndIsKilled", ""), 77u);
    ASSERT_NE(stSegment.CommandTable[c_uKilled - 1].uThreadId, 0u);
    EXPECT_NE(stSegment.aCommandStamp[0], 0u);
    RepeatRecords(stSegment, c_uKilled);
    EXPECT_EQ(RunInChild("DeadRecordsChild.DISABLED_RegistersAndHoldsARecord", ""), 0u);
    g_fnClearRecordTables();
}

TEST(DeadRecords, AProcessIsToldFromALaterOneOfItsId) {
    const u32 uPid = GetCurrentProcessId(), uStamp = platform::ProcessStamp(uPid);
    ASSERT_NE(uStamp, 0u);
    EXPECT_FALSE(platform::IsProcessGone(uPid, uStamp));
    EXPECT_FALSE(platform::IsProcessGone(uPid, 0));
    EXPECT_TRUE(platform::IsProcessGone(uPid, uStamp ^ 2));
    EXPECT_TRUE(platform::IsProcessGone(0x7FFFFFF0, 0));
}
