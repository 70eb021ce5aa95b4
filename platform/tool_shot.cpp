// The text of a settings file with and without the settings of a screenshot.
#include "platform/tool_shot.h"
#include <charconv>

namespace platform::tool {
namespace {

constexpr std::string_view kMark = "\xEF\xBB\xBF";
constexpr std::string_view kWowRoot = "SOFTWARE\\WOW6432Node\\Zarn\\ORVIN-OSD";
constexpr std::string_view kRoot = "SOFTWARE\\Zarn\\ORVIN-OSD";

char Folded(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool Equal(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i)
        if (Folded(a[i]) != Folded(b[i])) return false;
    return true;
}

std::string_view Trim(std::string_view text) {
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
    while (!text.empty() && (text.back() == ' ' || text.back() == '\t' || text.back() == '\r'))
        text.remove_suffix(1);
    return text;
}

std::string_view NextLine(std::string_view& text) {
    const size_t uEnd = text.find('\n');
    const std::string_view line = text.substr(0, uEnd);
    text.remove_prefix(uEnd == std::string_view::npos ? text.size() : uEnd + 1);
    return Trim(line);
}

std::string_view SectionOf(std::string_view line) {
    if (line.size() < 2 || line.front() != '[') return {};
    return Trim(
        line.substr(1, line.find(']') == std::string_view::npos ? line.size() - 1 : line.find(']') - 1));
}

/// The keys below this root count where there is one, and the others do not.
bool HasWowRoot(std::string_view text) {
    while (!text.empty()) {
        const std::string_view section = SectionOf(NextLine(text));
        if (Equal(section.substr(0, kWowRoot.size()), kWowRoot)) return true;
    }
    return false;
}

std::string_view Unquoted(std::string_view value) {
    if (value.size() >= 2 && value.front() == value.back() && (value.front() == '"' || value.front() == '\''))
        value = value.substr(1, value.size() - 2);
    return value;
}

void TakeNumber(std::string_view value, u32& uOut) {
    const bool bHex = value.size() > 2 && value[0] == '0' && Folded(value[1]) == 'x';
    if (bHex) value.remove_prefix(2);
    u32 u = 0;
    const auto [pEnd, eError] = std::from_chars(value.data(), value.data() + value.size(), u, bHex ? 16 : 10);
    if (eError == std::errc() && pEnd == value.data() + value.size()) uOut = u;
}

struct Found {
    bool bFolder = false, bMode = false, bType = false;
};

void TakeEntry(std::string_view line, ShotSettings& st, Found& stFound) {
    const size_t uEquals = line.find('=');
    if (line.empty() || line.front() == ';' || uEquals == std::string_view::npos) return;
    const std::string_view key = Trim(line.substr(0, uEquals)), value = Trim(line.substr(uEquals + 1));
    if (Equal(key, "DirPath") && !stFound.bFolder) {
        st.strFolder = Unquoted(value);
        stFound.bFolder = true;
    }
    if (Equal(key, "CapMode") && !stFound.bMode) {
        TakeNumber(value, st.uMode);
        stFound.bMode = true;
    }
    if (Equal(key, "CapType") && !stFound.bType) {
        TakeNumber(value, st.uType);
        stFound.bType = true;
    }
}

std::string FirstLine(u32 uProcessId) {
    return "; for a screenshot of orvin-osd, process " + std::to_string(uProcessId) +
           "; taken back at its end\n";
}
constexpr std::string_view kLastLine = "; end of what a screenshot needs\n";

bool IsUtf16(std::string_view text) {
    return text.size() >= 2 &&
           ((text[0] == '\xFF' && text[1] == '\xFE') || (text[0] == '\xFE' && text[1] == '\xFF'));
}

} // namespace

ShotSettings ParseShotSettings(std::string_view text) {
    if (text.substr(0, kMark.size()) == kMark) text.remove_prefix(kMark.size());
    const std::string strSection = std::string(HasWowRoot(text) ? kWowRoot : kRoot) + "\\Camera";
    ShotSettings st;
    Found stFound;
    bool bInside = false;
    while (!text.empty()) {
        const std::string_view line = NextLine(text);
        if (!line.empty() && line.front() == '[')
            bInside = Equal(SectionOf(line), strSection);
        else if (bInside)
            TakeEntry(line, st, stFound);
    }
    return st;
}

std::optional<std::string> TextWithShotSettings(std::string_view text, const ShotSettings& st,
                                                u32 uProcessId) {
    if (IsUtf16(text)) return std::nullopt;
    std::string strOut;
    if (text.substr(0, kMark.size()) == kMark) {
        strOut = kMark;
        text.remove_prefix(kMark.size());
    }
    strOut += FirstLine(uProcessId) + "[" + std::string(HasWowRoot(text) ? kWowRoot : kRoot) +
              "\\Camera]\nDirPath = \"" + st.strFolder + "\"\nCapMode = " + std::to_string(st.uMode) +
              "\nCapType = " + std::to_string(st.uType) + "\n" + std::string(kLastLine);
    return strOut + std::string(text);
}

std::string TextWithoutShotSettings(std::string_view text, u32 uProcessId) {
    const std::string strFirst = FirstLine(uProcessId);
    const size_t uBegin = text.find(strFirst);
    const size_t uEnd = uBegin == std::string_view::npos ? uBegin : text.find(kLastLine, uBegin);
    if (uEnd == std::string_view::npos) return std::string(text);
    return std::string(text.substr(0, uBegin)) + std::string(text.substr(uEnd + kLastLine.size()));
}

} // namespace platform::tool
