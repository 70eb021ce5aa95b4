#include "tools/profile/check/profile.h"

#include "companion/profile_folder.h"
#include "companion/result.h"
#include "config/items/item_map.h"
#include "config/profile/profile_document.h"
#include "tools/profile/check/document.h"
#include "tools/profile/check/fixed_style.h"
#include "tools/profile/check/item_values.h"
#include "tools/profile/check/layout.h"
#include "tools/profile/check/readers.h"
#include "tools/profile/check/video.h"
#include "tools/profile/check/writing.h"

#include <tinyxml2.h>

namespace companion {
namespace {

namespace fs = std::filesystem;

/// As the system writes paths.
std::string FileText(fs::path path) { return TextOfPath(path.make_preferred()); }

bool Parse(const fs::path& path, tinyxml2::XMLDocument& document, Findings& findings) {
    std::string strBytes;
    if (!ReadFile(path, g_uDocumentBytesMax + 1, strBytes)) {
        findings.Error(0, "the file cannot be opened");
        return false;
    }
    if (strBytes.size() <= g_uDocumentBytesMax) return ParseForCheck(strBytes, document, findings);
    findings.Error(0, "the file is larger than " + std::to_string(g_uDocumentBytesMax >> 20) + " MiB");
    return false;
}

/// Widths of faces in percent.
void CheckPreset(const tinyxml2::XMLElement* pPreset, Findings& findings) {
    constexpr double c_fLeast = 25, c_fMost = 400;
    const tinyxml2::XMLElement* p = pPreset ? pPreset->FirstChildElement("Variable") : nullptr;
    for (; p && !findings.IsFull(); p = p->NextSiblingElement("Variable")) {
        const char *szName = p->Attribute("Name"), *szValue = p->Attribute("Value");
        const double fPercent = szValue ? ReadNumber(szValue, ValueKind::Whole) : 0;
        if (!szName || !*szName)
            findings.Warning(p->GetLineNum(), "<Variable> without a Name is for no face");
        else if (fPercent < c_fLeast || fPercent > c_fMost)
            findings.Warning(p->GetLineNum(), "<Variable> of the face \"" + std::string(szName) +
                                                  "\": Value is a percentage, held to 25 to 400");
    }
}

/// No profile loads without it.
void CheckReference(const fs::path& pathData, u32 uStyle, Findings& findings) {
    const fs::path path = pathData / "OSD_Ref.xml";
    tinyxml2::XMLDocument document;
    findings.SetFile(FileText(path));
    if (!Parse(path, document, findings)) return;
    const tinyxml2::XMLElement& root = *document.FirstChildElement("OSD");
    CheckPreset(root.FirstChildElement("Preset"), findings);
    if (uStyle != STYLE_CUSTOM) CheckFixedReference(root, uStyle, findings);
}

struct stPlace {
    fs::path pathFolder, pathData;
};

void CheckItemList(const tinyxml2::XMLElement& info, const stPlace& place, const CheckOptions& stOptions,
                   Findings& findings) {
    const std::vector<ProfileItem> items = ItemsInReadingOrder(&info);
    const auto taken = CheckByReaders(info, items, findings);
    g_fnClearItems();
    if (taken.empty())
        findings.Warning(info.GetLineNum(), "the profile has no item: nothing is shown");
    else if (!AnyCanBeSeen(taken))
        findings.Warning(info.GetLineNum(), "no item of the profile can be seen: nothing is shown");
    CheckItems(taken, items, {stOptions.publishedNames, stOptions.sensorNames}, findings);
    CheckFiles(taken, place.pathFolder, findings);
    if (!CheckCapacity(taken, info, findings)) return;
    CheckFaces(taken, place.pathFolder, findings);
    CheckFontFiles(taken, place.pathFolder, place.pathData / "Profiles" / "Default", findings);
    CheckLayout(taken, place.pathFolder, place.pathData, findings);
}

void CheckFolder(const stPlace& place, const CheckOptions& stOptions, Findings& findings) {
    const fs::path path = place.pathFolder / "OSD.xml";
    findings.SetFile(FileText(path));
    tinyxml2::XMLDocument document;
    const bool bParsed = Parse(path, document, findings);
    const tinyxml2::XMLElement* const pRoot = bParsed ? document.FirstChildElement("OSD") : nullptr;
    CheckReference(place.pathData, pRoot ? g_fnLayoutStyleOf(*pRoot) : STYLE_CUSTOM, findings);
    if (!bParsed) return;
    findings.SetFile(FileText(path));
    const tinyxml2::XMLElement* const pInfo = CheckDocument(document, findings);
    if (!pInfo) return;
    CheckPhotoFile(pInfo->Parent()->FirstChildElement("Photo"), place.pathFolder, findings);
    CheckItemList(*pInfo, place, stOptions, findings);
}

} // namespace

bool FindProfileFaults(const CheckOptions& stOptions, Findings& findings) {
    const fs::path pathData = PathOfText(stOptions.strDataFolder);
    ProfilePlace stFound;
    findings.SetFile(stOptions.strProfile);
    if (const Result result = FindProfile(pathData, stOptions.strProfile, stFound); !result) {
        findings.Error(0, result.strError);
        return false;
    }
    CheckFolder({stFound.pathFolder, pathData}, stOptions, findings);
    CheckVideoSources(findings);
    findings.Sort();
    return true;
}

int CheckProfile(const CheckOptions& stOptions, std::string& strReport) {
    Findings findings;
    const bool bFound = FindProfileFaults(stOptions, findings);
    strReport = stOptions.bJson ? FindingsAsJson(stOptions.strProfile, findings, stOptions.bQuiet)
                                : FindingsAsText(stOptions.strProfile, findings, stOptions.bQuiet);
    if (!bFound) return kNotFound;
    return findings.Passes() ? kOk : kFailed;
}

} // namespace companion
