// Changes to the text of a settings file. It is read with the rules of platform/ini_file.h.
#include "platform/tool_settings.h"
#include <algorithm>
#include <functional>
#include <set>

namespace platform::tool {
namespace {

char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool EqualWithoutCase(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return Lower(x) == Lower(y); });
}

std::string_view Trimmed(std::string_view str) {
    constexpr std::string_view strBlanks = " \t\r\v\f\x1A";
    const std::size_t uFirst = str.find_first_not_of(strBlanks);
    if (uFirst == str.npos) return {};
    return str.substr(uFirst, str.find_last_not_of(strBlanks) + 1 - uFirst);
}

bool IsControl(char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }

bool HasControl(std::string_view str) { return std::any_of(str.begin(), str.end(), IsControl); }

/// A line and where it lies in the file; its end is that of the text, ahead of the line break.
struct Line {
    std::size_t uAt, uEnd;
    std::string_view strText;    ///< without blanks around it
    std::string_view strSection; ///< what its section is called; empty ahead of the first
    bool bHeader;

    bool SaysNothing() const { return strText.empty() || strText.starts_with(';'); }
};

std::vector<Line> LinesOf(std::string_view strFile) {
    std::vector<Line> list;
    std::string_view strSection;
    constexpr std::string_view strMark = "\xEF\xBB\xBF";
    for (std::size_t uAt = strFile.starts_with(strMark) ? strMark.size() : 0; uAt < strFile.size();) {
        const std::size_t uEnd = std::min(strFile.find('\n', uAt), strFile.size());
        const std::string_view strText = Trimmed(strFile.substr(uAt, uEnd - uAt));
        const std::size_t uClose = strText.rfind(']');
        const bool bHeader = strText.starts_with('[') && uClose != strText.npos;
        if (bHeader) strSection = Trimmed(strText.substr(1, uClose - 1));
        list.push_back({uAt, uEnd, strText, strSection, bHeader});
        uAt = uEnd + 1;
    }
    return list;
}

bool IsValueOf(const Line& line, std::string_view strPath, std::string_view strName) {
    if (line.bHeader || line.SaysNothing() || !EqualWithoutCase(line.strSection, strPath)) return false;
    return EqualWithoutCase(Trimmed(line.strText.substr(0, line.strText.find('='))), strName);
}

/// Quotes keep a text of digits a text, and its blanks.
std::string LineOf(const Setting& st) {
    return st.strName + " = " + (st.uNumber ? std::to_string(*st.uNumber) : '"' + st.strText + '"');
}

/// Takes lines out, with their line breaks.
std::string Without(const std::string& strFile, const std::function<bool(const Line&)>& fnGoes) {
    std::string strOut;
    std::size_t uTaken = 0;
    for (const Line& line : LinesOf(strFile)) {
        if (!fnGoes(line)) continue;
        strOut.append(strFile, uTaken, line.uAt - uTaken);
        uTaken = std::min(line.uEnd + 1, strFile.size());
    }
    return strOut.append(strFile, uTaken);
}

bool IsAtOrBelow(std::string_view strSection, std::string_view strPath) {
    return EqualWithoutCase(strSection.substr(0, strPath.size()), strPath) &&
           (strSection.size() == strPath.size() || strSection[strPath.size()] == '\\');
}

} // namespace

std::optional<u32> SettingNumber(const std::string& strKey, const std::string& strName) {
    return CurrentSetting(strKey, strName).uNumber;
}

std::optional<std::string> SettingText(const std::string& strKey, const std::string& strName) {
    const Setting st = CurrentSetting(strKey, strName);
    return st.bRemoved || st.uNumber ? std::nullopt : std::optional(st.strText);
}

Result CheckSetting(const Setting& st) {
    if (HasControl(st.strKey) || HasControl(st.strName) || HasControl(st.strText))
        return Result::Fail("a setting cannot hold control characters");
    if (st.strName.empty() || st.strName.find_first_of("=[;") != std::string::npos ||
        Trimmed(st.strName) != st.strName)
        return Result::Fail("\"" + st.strName + "\" cannot be the name of a setting");
    return {};
}

std::optional<std::string> ValueInFile(std::string_view strFile, std::string_view strSection,
                                       std::string_view strName) {
    bool bInside = false;
    for (const Line& line : LinesOf(strFile)) {
        if (bInside && line.bHeader) return std::nullopt;
        bInside = bInside || (line.bHeader && EqualWithoutCase(line.strSection, strSection));
        if (!bInside || !IsValueOf(line, strSection, strName)) continue;
        const std::size_t uEqual = line.strText.find('=');
        if (uEqual == line.strText.npos) return std::nullopt;
        std::string_view strValue = Trimmed(line.strText.substr(uEqual + 1));
        const bool bQuoted = strValue.size() > 1 && strValue.front() == strValue.back() &&
                             (strValue.front() == '"' || strValue.front() == '\'');
        if (bQuoted) strValue = strValue.substr(1, strValue.size() - 2);
        return std::string(strValue);
    }
    return std::nullopt;
}

/// A value keeps its line; a new one comes behind the last line that says something of its section. Lines
/// that hide behind the first of their name go.
std::string WithSetting(std::string strFile, const std::string& strPath, const Setting& stSetting) {
    std::optional<std::size_t> uKept;
    strFile = Without(strFile, [&](const Line& line) {
        if (!IsValueOf(line, strPath, stSetting.strName)) return false;
        if (!uKept && !stSetting.bRemoved) return uKept = line.uAt, false;
        return true;
    });
    if (stSetting.bRemoved) return strFile;
    const std::string strLine = LineOf(stSetting);
    std::optional<std::size_t> uBehind;
    for (const Line& line : LinesOf(strFile)) {
        if (uKept && line.uAt == *uKept) return strFile.replace(line.uAt, line.uEnd - line.uAt, strLine);
        if (EqualWithoutCase(line.strSection, strPath) && !line.SaysNothing()) uBehind = line.uEnd;
    }
    if (uBehind) return strFile.insert(*uBehind, "\n" + strLine);
    if (!strFile.empty() && !strFile.ends_with('\n')) strFile += '\n';
    return strFile + (strFile.empty() ? "[" : "\n[") + strPath + "]\n" + strLine + "\n";
}

/// The blank line ahead of a section goes with it, as it came with it.
std::string WithoutSettingKey(const std::string& strFile, const std::string& strPath) {
    const auto IsGoing = [&](const Line& line) {
        return IsAtOrBelow(line.strSection, strPath) && !line.SaysNothing();
    };
    std::set<std::size_t> setBlanks;
    const std::vector<Line> list = LinesOf(strFile);
    for (std::size_t u = 1; u < list.size(); ++u)
        if (list[u].bHeader && IsGoing(list[u]) && list[u - 1].strText.empty())
            setBlanks.insert(list[u - 1].uAt);
    return Without(strFile, [&](const Line& line) { return IsGoing(line) || setBlanks.contains(line.uAt); });
}

} // namespace platform::tool
