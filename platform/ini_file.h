#pragma once
// Settings files: sections of "key = value" lines. One reader for all platforms, with the rules of the
// profile calls of Win32: the first section of a name and its first key of a name count, names are compared
// without case, blanks around names and values go, one pair of quotes around a value goes, lines that begin
// with ';' are comments. Unlike those calls it reads the file once for many keys, and a bounded part of it.
#include "platform/types.h"

#include <string>
#include <string_view>
#include <vector>

namespace platform {

constexpr u32 g_uIniBytesMax = 1 << 20; ///< what lies beyond in a file is not seen

/// A value with a line of its own.
struct IniEntry {
    std::u16string m_wstrKey;
    std::u16string m_wstrValue;
    bool m_bQuoted = false; ///< the value stood in quotes, which are gone
};

struct IniSection {
    std::u16string m_wstrName;
    std::vector<IniEntry> m_vecEntries;
};

class CIniFile {
  public:
    /// Reads a file; one that is missing, unreadable or no plain file reads as empty. Encoding by mark
    /// (UTF-16 of either byte order, UTF-8); without a mark UTF-8 if it is valid, else the system's code
    /// page.
    static CIniFile Load(const char16_t* wzPath);
    /// The same from the bytes of a file.
    static CIniFile Parse(std::string_view bytes);

    /// Value of a key; null if the file does not hold it. Valid as long as this object.
    const IniEntry* Find(std::u16string_view wzSection, std::u16string_view wzKey) const noexcept;
    const std::vector<IniSection>& Sections() const noexcept { return m_vecSections; }

  private:
    void AddLine(std::u16string_view line);

    std::vector<IniSection> m_vecSections;
};

/// Comparison and order without case. Upper case of ASCII and Latin-1 letters only.
bool EqualNoCase(std::u16string_view a, std::u16string_view b) noexcept;
bool LessNoCase(std::u16string_view a, std::u16string_view b) noexcept;

} // namespace platform
