// What the library exports, and what it needs to be there.
#include "tests/unit/platform_win32/image_file.h"
#include <fstream>
#include <gtest/gtest.h>
#include <set>

namespace {

/// Names of the .def file: the first word of each line after EXPORTS, without quotes.
std::set<std::string> NamesInDefinition() {
    std::ifstream file("Z:" ORVIN_SOURCE_DIR "/platform/win32/ORVIN-OSD64-GL.def");
    std::set<std::string> setNames;
    std::string szLine;
    bool bExports = false;
    while (std::getline(file, szLine)) {
        const std::size_t uStart = szLine.find_first_not_of(" \t\"");
        if (uStart == std::string::npos || szLine[uStart] == ';') continue;
        const std::string szWord = szLine.substr(uStart, szLine.find_first_of(" \t\"\r", uStart) - uStart);
        if (bExports) setNames.insert(szWord);
        if (szWord == "EXPORTS") bExports = true;
    }
    return setNames;
}

const IMAGE_DATA_DIRECTORY& Directory(const u8* pImage, u32 uIndex) {
    return HeadersOf(pImage)->OptionalHeader.DataDirectory[uIndex];
}

std::set<std::string> ExportedNames(const u8* pImage) {
    const auto* pTable = reinterpret_cast<const IMAGE_EXPORT_DIRECTORY*>(
        pImage + Directory(pImage, IMAGE_DIRECTORY_ENTRY_EXPORT).VirtualAddress);
    const auto* puNames = reinterpret_cast<const DWORD*>(pImage + pTable->AddressOfNames);
    EXPECT_EQ(pTable->NumberOfFunctions, pTable->NumberOfNames);
    std::set<std::string> setNames;
    for (u32 i = 0; i < pTable->NumberOfNames; ++i)
        setNames.insert(reinterpret_cast<const char*>(pImage + puNames[i]));
    return setNames;
}

std::set<std::string> NeededLibraries(const u8* pImage) {
    std::set<std::string> setNames;
    const auto* pEntry = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(
        pImage + Directory(pImage, IMAGE_DIRECTORY_ENTRY_IMPORT).VirtualAddress);
    for (; pEntry->Name; ++pEntry) {
        std::string szName = reinterpret_cast<const char*>(pImage + pEntry->Name);
        for (char& c : szName) c = static_cast<char>(c >= 'A' && c <= 'Z' ? c + 32 : c);
        setNames.insert(szName);
    }
    return setNames;
}

const std::set<std::string> kPrescribed = {
    "InitialSharedSegmentData_GL",
    "EnableQueryFrameTime_GL",
    "sendCmd_GWDLL_GL",
    "SetMonitorDataFromGWexeToGWDll_GL",
    "SetMonitorDataOffsetFromGWexeToGWDll_GL",
    "SetMonitorFilterDataFromGWexeToGWDll_GL",
    "SetMonitorPosDataFromGWexeToGWDll_GL",
    "SetMonitorScreenshotDataFromGWexeToGWDll_GL",
    "SetMonitorTimerDataFromGWexeToGWDll_GL",
    "SetMonitorVGADataFromGWexeToGWDll_GL",
    "SetOSDGlobalProfileNameFromGWexeToGWDll_GL",
    "SetProcessID2ProfileNameFromGWexeToGWDll_GL",
    "GetFrameTimeByPID_GL",
    "GetAPIVerByTID_GL",
    "GetDataFullNamesFromProfile_GL",
    "GetTavoDataToGWDll",
    "SetTavoDataToGWDll",
    "deInit_GWDll_GL",
    "Hook_CB_ProcGetMSGOfGL",
    "GL_wglSwapBuffers",
    "GL_wglDeleteContext",
    "??4CGWDll@@QEAAAEAV0@AEBV0@@Z",
    "??4CGWDll@@QEAAAEAV0@$$QEAV0@@Z",
};

} // namespace

TEST(Exports, DefinitionFileHoldsTheControlInterfaceAndNothingElse) {
    EXPECT_EQ(NamesInDefinition(), kPrescribed);
}

TEST(Exports, LibraryExportsExactlyTheDefinitionFile) {
    MappedLibrary library(LibraryPath());
    ASSERT_NE(library.Image(), nullptr) << LibraryPath();
    EXPECT_EQ(ExportedNames(library.Image()), NamesInDefinition());
}

TEST(Exports, LibraryNeedsOnlyWhatTheSystemHas) {
    const std::set<std::string> setSystem = {"kernel32.dll", "user32.dll", "gdi32.dll",   "opengl32.dll",
                                             "msvcrt.dll",   "psapi.dll",  "shell32.dll", "ole32.dll",
                                             "advapi32.dll", "ntdll.dll"};
    MappedLibrary library(LibraryPath());
    ASSERT_NE(library.Image(), nullptr);
    for (const std::string& szName : NeededLibraries(library.Image()))
        EXPECT_TRUE(setSystem.count(szName)) << szName;
}
