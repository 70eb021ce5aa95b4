#pragma once
// Settings files: sections of "key = value" lines. One reader for all platforms, with the rules of the
// profile calls of Win32: the first section of a name and its first key of a name count, names are compared
// without case, blanks around names and values go, one pair of quotes around a value goes, lines that begin
// with ';' are comments. Unlike those calls it reads the file once for many keys, and a bounded part of it.
#include "platform/types.h"

#include <string_view>
#include <vector>

namespace platform {

constexpr u32 g_uIniBytesMax = 1 << 20; ///< what lies beyond in a file is not seen

/// A key's line. Views into the file's text.
struct IniEntry {
    std::u16string_view m_wzKey;
    std::u16string_view m_wzValue;
    bool m_bHasValue; ///< false without '=': the key has no value, and hides later ones of its name
    bool m_bQuoted;   ///< the value stood in quotes, which are gone
};

struct IniSection {
    std::u16string_view m_wzName;
    u32 m_uFirst; ///< its entries are those from here to the next section's first
};

class CIniFile {
  public:
    /// Reads a file; one that is missing, unreadable or no plain file reads as empty.
    static CIniFile Load(const char16_t* wzPath);
    /// Load from the bytes of a file. Encoding by mark (UTF-16 of either byte order, UTF-8); without one
    /// UTF-8 if it is valid, else the system's code page.
    static CIniFile Parse(std::string_view bytes);

    CIniFile(CIniFile&&) = default;
    CIniFile& operator=(CIniFile&&) = default;

    /// First entry of a name in the first section of a name; null if there is none, or it has no value. Valid
    /// as long as this object.
    const IniEntry* Find(std::u16string_view wzSection, std::u16string_view wzKey) const noexcept;

    u32 Sections() const noexcept { return static_cast<u32>(m_vecSections.size()); }
    std::u16string_view SectionName(u32 uSection) const noexcept { return m_vecSections[uSection].m_wzName; }
    u32 FirstEntry(u32 uSection) const noexcept { return m_vecSections[uSection].m_uFirst; }
    u32 EndEntry(u32 uSection) const noexcept;
    const IniEntry& Entry(u32 uEntry) const noexcept { return m_vecEntries[uEntry]; }

  private:
    CIniFile() = default;
    void AddLine(std::u16string_view line);
    bool AddSection(std::u16string_view line);

    std::vector<char16_t> m_vecText; ///< what all views point into
    std::vector<IniSection> m_vecSections;
    std::vector<IniEntry> m_vecEntries;
};

/// Equality and order without case, for ASCII letters.
bool EqualNoCase(std::u16string_view a, std::u16string_view b) noexcept;
bool LessNoCase(std::u16string_view a, std::u16string_view b) noexcept;

} // namespace platform
