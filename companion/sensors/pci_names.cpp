#include "companion/sensors/pci_names.h"
#include "companion/sensors/text_file.h"
#include <algorithm>

namespace companion::sensors {
namespace {

constexpr const char* kLists[] = {"/usr/share/misc/pci.ids", "/usr/share/hwdata/pci.ids"};
constexpr size_t kIdDigits = 4;

std::string Lower(std::string str) {
    std::transform(str.begin(), str.end(), str.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return str;
}

/// "Navi 21 [Radeon RX 6800 XT]" is sold as what stands in the brackets.
std::string SoldAs(std::string_view strName) {
    const size_t uOpen = strName.rfind('['), uClose = strName.rfind(']');
    const bool bBrackets = uOpen != strName.npos && uClose != strName.npos && uClose > uOpen + 1;
    return std::string(bBrackets ? Trimmed(strName.substr(uOpen + 1, uClose - uOpen - 1)) : strName);
}

/// Vendors stand at the beginning of a line, their devices behind one tab.
std::string NameIn(std::string_view strList, const std::string& strVendor, const std::string& strDevice) {
    bool bVendor = false;
    std::string_view strLine;
    for (size_t uFrom = 0; TakeLine(strList, uFrom, strLine);) {
        if (strLine.empty() || strLine.front() == '#') continue;
        if (strLine.front() != '\t') bVendor = strLine.starts_with(strVendor + " ");
        if (bVendor && strLine.starts_with("\t" + strDevice + " "))
            return SoldAs(Trimmed(strLine.substr(1 + kIdDigits)));
    }
    return {};
}

std::string LookUp(const std::string& strRoot, const std::string& strPciId) {
    const std::string strId = Lower(strPciId);
    if (strId.size() != 2 * kIdDigits + 1 || strId[kIdDigits] != ':') return {};
    std::string strList, strName;
    for (const char* szList : kLists) {
        if (!strName.empty() || !ReadText(strRoot + szList, strList)) continue;
        strName = NameIn(strList, strId.substr(0, kIdDigits), strId.substr(kIdDigits + 1));
    }
    return strName;
}

} // namespace

const std::string& PciNames::Find(const std::string& strRoot, const std::string& strPciId) {
    const auto it = m_mapNames.find(strPciId);
    if (it != m_mapNames.end()) return it->second;
    return m_mapNames[strPciId] = LookUp(strRoot, strPciId);
}

} // namespace companion::sensors
