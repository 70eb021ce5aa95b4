#pragma once
// Reads a 64-bit Windows image: from its file or as mapped into this process.
#include "platform/types.h"
#include "platform/win32/windows_api.h"
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

/// The library of this build.
std::string LibraryPath();

inline std::vector<u8> ReadWholeFile(const std::string& szPath) {
    std::vector<u8> abFile;
    std::FILE* pFile = std::fopen(szPath.c_str(), "rb");
    if (!pFile) return abFile;
    std::fseek(pFile, 0, SEEK_END);
    abFile.resize(static_cast<std::size_t>(std::ftell(pFile)));
    std::fseek(pFile, 0, SEEK_SET);
    if (std::fread(abFile.data(), 1, abFile.size(), pFile) != abFile.size()) abFile.clear();
    std::fclose(pFile);
    return abFile;
}

inline const IMAGE_NT_HEADERS64* HeadersOf(const u8* pImage) {
    const auto* pDos = reinterpret_cast<const IMAGE_DOS_HEADER*>(pImage);
    return reinterpret_cast<const IMAGE_NT_HEADERS64*>(pImage + pDos->e_lfanew);
}

/// Header of a section by name; null if there is none.
inline const IMAGE_SECTION_HEADER* FindSection(const u8* pImage, const char* szName) {
    const IMAGE_NT_HEADERS64* pHeaders = HeadersOf(pImage);
    const IMAGE_SECTION_HEADER* pSection = IMAGE_FIRST_SECTION(pHeaders);
    for (u32 i = 0; i < pHeaders->FileHeader.NumberOfSections; ++i, ++pSection)
        if (std::strncmp(reinterpret_cast<const char*>(pSection->Name), szName, IMAGE_SIZEOF_SHORT_NAME) == 0)
            return pSection;
    return nullptr;
}

/// A library mapped without running its entry point.
class MappedLibrary {
  public:
    explicit MappedLibrary(const std::string& szPath)
        : m_hModule(LoadLibraryExA(szPath.c_str(), nullptr, DONT_RESOLVE_DLL_REFERENCES)) {}
    ~MappedLibrary() {
        if (m_hModule) FreeLibrary(m_hModule);
    }
    MappedLibrary(const MappedLibrary&) = delete;
    MappedLibrary& operator=(const MappedLibrary&) = delete;
    const u8* Image() const { return reinterpret_cast<const u8*>(m_hModule); }
    u8* Section(const char* szName) const {
        const IMAGE_SECTION_HEADER* pSection = m_hModule ? FindSection(Image(), szName) : nullptr;
        return pSection ? reinterpret_cast<u8*>(m_hModule) + pSection->VirtualAddress : nullptr;
    }

  private:
    HMODULE m_hModule;
};
