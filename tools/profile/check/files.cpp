// Files that items of a profile name.
#include "companion/profile_folder.h"
#include "companion/utf.h"
#include "controls/text_file.h"
#include "platform/utf.h"
#include "tools/profile/check/font_cache.h"
#include "tools/profile/check/images.h"
#include "tools/profile/check/writing.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <set>
#include <tinyxml2.h>

namespace companion {
namespace {

namespace fs = std::filesystem;

/// Text without a mark that is no UTF-8 is read in another code page on each system.
bool IsPlainUtf8(const std::string& strBytes) {
    if (strBytes.starts_with("\xFF\xFE") || strBytes.starts_with("\xFE\xFF")) return true;
    for (const char* sz = strBytes.c_str(); *sz;) {
        const bool bReplacement = std::strncmp(sz, "\xEF\xBF\xBD", 3) == 0;
        if (platform::NextUtf8(sz) == 0xFFFD && !bReplacement) return false;
    }
    return true;
}

/// What keeps a memo's file from being shown; empty if nothing does.
std::string MemoFault(const fs::path& path) {
    if (g_fnLoadTextFromFile(path.u16string().c_str())) return {};
    return "holds no text: the layout cannot be built";
}

void CheckMemo(const ProfileItem& item, const fs::path& path, Findings& findings) {
    const int iLine = AttributeLine(*item.pElement, "FileName");
    const std::string strWhat = ItemTitle(item) + ": \"" + AttributeText(item, "FileName") + "\" ";
    if (const std::string strFault = MemoFault(path); !strFault.empty())
        return findings.Error(iLine, strWhat + strFault);
    std::error_code ignored;
    if (const auto uSize = fs::file_size(path, ignored); !ignored && uSize > g_uTextFileBytesMax)
        findings.Warning(iLine, strWhat + "is larger than " + std::to_string(g_uTextFileBytesMax / 1024) +
                                    " KiB; the lines beyond are not shown");
    std::string strBytes;
    ReadFile(path, g_uTextFileBytesMax, strBytes);
    if (!IsPlainUtf8(strBytes))
        findings.Warning(
            iLine, strWhat + "is neither UTF-8 nor UTF-16 with a mark; its letters depend on the system");
}

void CheckFile(const ProfileItem& item, const char* szAttribute, const fs::path& pathFolder,
               Findings& findings) {
    const std::string strName = AttributeText(item, szAttribute);
    if (strName.empty()) return; // told by the reader
    const int iLine = AttributeLine(*item.pElement, szAttribute);
    const fs::path path = FileInProfile(pathFolder, strName);
    std::error_code ignored;
    if (path.empty())
        findings.Error(iLine, ItemTitle(item) + ": \"" + strName + "\" leaves the profile's folder");
    else if (!fs::is_regular_file(path, ignored))
        findings.Error(iLine,
                       ItemTitle(item) + ": there is no file \"" + strName + "\" in the profile's folder");
    else if (std::string_view(item.pKind->szName) == "Memo")
        CheckMemo(item, path, findings);
    else if (std::string_view(item.pKind->szName) == "Image")
        CheckPicture(item, path, findings);
}

} // namespace

fs::path FileInProfile(const fs::path& pathFolder, const std::string& strName) {
    std::string strParts = strName;
    std::replace(strParts.begin(), strParts.end(), '\\', '/');
    std::u16string wzParts;
    UnitsFromUtf8(strParts, wzParts);
    return g_fnStaysInFolder(wzParts) ? pathFolder / PathOfText(strParts) : fs::path();
}

void CheckFiles(const std::vector<const ProfileItem*>& taken, const fs::path& pathFolder,
                Findings& findings) {
    for (const ProfileItem* p : taken)
        for (const char* szAttribute : {"FileName", "ImageFileName"})
            if (FindAttribute(*p->pKind, szAttribute)) CheckFile(*p, szAttribute, pathFolder, findings);
}

void CheckPhotoFile(const tinyxml2::XMLElement* pPhoto, const fs::path& pathFolder, Findings& findings) {
    const char* const szName = pPhoto ? pPhoto->Attribute("Filename") : nullptr;
    if (!szName || !*szName || pPhoto->IntAttribute("IsShow") == 0) return;
    const fs::path path = FileInProfile(pathFolder, szName);
    std::error_code ignored;
    if (!path.empty() && fs::is_regular_file(path, ignored)) return;
    findings.Error(AttributeLine(*pPhoto, "Filename"),
                   "Photo: there is no file \"" + std::string(szName) + "\" in the profile's folder");
}

void CheckFontFiles(const std::vector<const ProfileItem*>& taken, const fs::path& pathFolder,
                    const fs::path& pathShared, Findings& findings) {
    const std::string strDocument = findings.File();
    std::set<std::string> faces;
    for (const ProfileItem* p : taken) {
        if (!FindAttribute(*p->pKind, "FontName")) continue;
        const std::string strFace = AttributeText(*p, "FontName");
        if (!faces.insert(strFace).second || strFace.find_first_of("/\\") != std::string::npos) continue;
        const fs::path pathName = PathOfText("2-" + strFace + ".fnt");
        std::error_code ignored;
        const bool bOwn = fs::exists(pathFolder / pathName, ignored);
        FontFileFacts stFacts;
        if (const Result stRead = InspectFontFile((bOwn ? pathFolder : pathShared) / pathName, stFacts);
            !stRead)
            continue; // none there, the usual case
        if (stFacts.strFault.empty()) continue;
        findings.SetFile(TextOfPath(fs::path(stFacts.path).make_preferred()));
        findings.Warning(0, "the font file " + stFacts.strFault + "; it is passed over" +
                                (bOwn ? "" : ", in every profile that shares it"));
        findings.SetFile(strDocument);
    }
}

} // namespace companion
