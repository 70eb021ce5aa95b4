#include "platform/tool_bytes.h"
#include "platform/foreign_overlays.h"
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <string>

namespace platform::tool {
namespace {

char Folded(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; }

bool IsGlLibrary(std::string_view strFile) {
    constexpr std::string_view astrNames[] = {"libGL.so", "libGLX.so", "libEGL.so", "libOpenGL.so"};
    return std::any_of(std::begin(astrNames), std::end(astrNames),
                       [&](std::string_view strName) { return strFile.starts_with(strName); });
}

void AddModule(std::string_view strFile, ProcessFacts& st) {
    if (strFile == "libORVIN-OSD64-GL.so") st.bLibraryMapped = true;
    if (IsGlLibrary(strFile)) st.bGlMapped = true;
    if (!IsForeignOverlay(strFile)) return;
    if (std::find(st.listOverlays.begin(), st.listOverlays.end(), strFile) == st.listOverlays.end()) {
        st.listOverlays.emplace_back(strFile);
    }
}

} // namespace

bool EqualFolded(std::string_view strA, std::string_view strB) {
    return std::equal(strA.begin(), strA.end(), strB.begin(), strB.end(),
                      [](char a, char b) { return Folded(a) == Folded(b); });
}

bool IsForeignOverlay(std::string_view strFile) {
    return std::any_of(std::begin(g_aszForeignOverlays), std::end(g_aszForeignOverlays),
                       [&](std::string_view strOverlay) { return EqualFolded(strOverlay, strFile); });
}

void ReadModuleFacts(std::string_view strMaps, ProcessFacts& stFacts) {
    stFacts.bReadable = !strMaps.empty();
    while (!strMaps.empty()) {
        const size_t uEnd = std::min(strMaps.find('\n'), strMaps.size());
        std::string_view strLine = strMaps.substr(0, uEnd);
        strMaps.remove_prefix(std::min(uEnd + 1, strMaps.size()));
        const size_t uSlash = strLine.rfind('/');
        if (uSlash == std::string_view::npos) continue;
        std::string_view strFile = strLine.substr(uSlash + 1);
        constexpr std::string_view strDeleted = " (deleted)"; // replaced on disk while mapped
        if (strFile.ends_with(strDeleted)) strFile.remove_suffix(strDeleted.size());
        AddModule(strFile, stFacts);
    }
    if (stFacts.bReadable) stFacts.eDetour = stFacts.bLibraryMapped ? Detour::Preload : Detour::Unknown;
}

namespace {

/// "BEGIN-END rw-s OFFSET MAJOR:MINOR INODE   PATH", numbers hexadecimal but for the inode.
std::optional<SharedMap> ReadMapLine(const std::string& strLine, const FileNumber& stFile) {
    unsigned long long uBegin = 0, uEnd = 0, uOffset = 0, uNumber = 0;
    unsigned uMajor = 0, uMinor = 0;
    char szAccess[8] = {};
    const int iRead = std::sscanf(strLine.c_str(), "%llx-%llx %7s %llx %x:%x %llu", &uBegin, &uEnd, szAccess,
                                  &uOffset, &uMajor, &uMinor, &uNumber);
    if (iRead != 7 || uEnd <= uBegin || uOffset != 0 || std::strcmp(szAccess, "rw-s") != 0)
        return std::nullopt;
    if (uMajor != stFile.uMajor || uMinor != stFile.uMinor || uNumber != stFile.uNumber) return std::nullopt;
    return SharedMap{uBegin, static_cast<size_t>(uEnd - uBegin)};
}

} // namespace

std::optional<SharedMap> FindSharedMap(std::string_view strMaps, const FileNumber& stFile) {
    while (!strMaps.empty()) {
        const size_t uEnd = std::min(strMaps.find('\n'), strMaps.size());
        if (const auto stMap = ReadMapLine(std::string(strMaps.substr(0, uEnd)), stFile)) return stMap;
        strMaps.remove_prefix(std::min(uEnd + 1, strMaps.size()));
    }
    return std::nullopt;
}

ApiClaim ClaimOfTag(const char* szTag) {
    if (std::memcmp(szTag, "OGL", 3) == 0) return ApiClaim::OpenGL;
    if (std::memcmp(szTag, "D3D", 3) == 0) return ApiClaim::Direct3D;
    return ApiClaim::None;
}

namespace {
template <class T> T ReadAs(const u8* pBytes) {
    T value;
    std::memcpy(&value, pBytes, sizeof(value));
    return value;
}
} // namespace

Jump ReadJump(const u8* pBytes, size_t uCount, u64 uAddress) {
    const auto fnFrom = [&](u64 uLength, i64 iDistance) {
        return uAddress + uLength + static_cast<u64>(iDistance);
    };
    if (uCount >= 2 && pBytes[0] == 0xEB) return {Jump::Kind::Direct, fnFrom(2, ReadAs<i8>(pBytes + 1))};
    if (uCount >= 5 && pBytes[0] == 0xE9) return {Jump::Kind::Direct, fnFrom(5, ReadAs<i32>(pBytes + 1))};
    if (uCount >= 6 && pBytes[0] == 0xFF && pBytes[1] == 0x25) {
        return {Jump::Kind::ThroughPointer, fnFrom(6, ReadAs<i32>(pBytes + 2))};
    }
    return {};
}

} // namespace platform::tool
