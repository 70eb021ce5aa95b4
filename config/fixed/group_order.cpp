#include "config/fixed/group_order.h"

#include "config/fixed/group_walker.h"
#include "config/fixed/name_maps.h"
#include "config/settings/setting_binding.h"

#include <algorithm>
#include <set>

#include <tinyxml2.h>

std::vector<stGroupExtension> g_listGroupExtension;

namespace {

/// "ID" of one element, null if it has none.
const char* OwnId(const tinyxml2::XMLElement& element) {
    const char* szId = element.Attribute("ID");
    return szId && *szId ? szId : nullptr;
}

std::string CutId(const char* szId) {
    return std::string(std::string_view(szId).substr(0, g_uSettingText - 1));
}

const char* FirstId(const tinyxml2::XMLElement& element, u32 uDepth) {
    if (const char* szId = OwnId(element)) return szId;
    if (uDepth > g_uGroupDepthMost) return nullptr;
    for (auto* p = element.FirstChildElement(); p; p = p->NextSiblingElement())
        if (const char* szId = FirstId(*p, uDepth + 1)) return szId;
    return nullptr;
}

struct stOrderedChild {
    tinyxml2::XMLElement* pElement;
    i32 iRank;
};

/// Refills the places of ranked children in rank order. False if they stand so already.
bool SortRanked(std::vector<stOrderedChild>& list) {
    std::vector<stOrderedChild> ranked;
    std::copy_if(list.begin(), list.end(), std::back_inserter(ranked),
                 [](const stOrderedChild& st) { return st.iRank >= 0; });
    const auto Less = [](const stOrderedChild& a, const stOrderedChild& b) { return a.iRank < b.iRank; };
    if (std::is_sorted(ranked.begin(), ranked.end(), Less)) return false;
    std::stable_sort(ranked.begin(), ranked.end(), Less);
    auto it = ranked.begin();
    for (stOrderedChild& st : list)
        if (st.iRank >= 0) st = *it++;
    return true;
}

/// Reorders below an element; answers its first ID as the document had it.
const char* Reorder(tinyxml2::XMLElement& element, const GroupRank& fnRank, u32 uDepth) {
    const char* szFirst = OwnId(element);
    if (uDepth > g_uGroupDepthMost) return szFirst;
    std::vector<stOrderedChild> list;
    for (auto* p = element.FirstChildElement(); p; p = p->NextSiblingElement()) {
        const char* szId = Reorder(*p, fnRank, uDepth + 1);
        list.push_back({p, szId ? fnRank(CutId(szId).c_str()) : g_iNoRank});
        if (!szFirst) szFirst = szId;
    }
    if (SortRanked(list)) // comments may end up in front: nobody reads them
        for (const stOrderedChild& st : list) element.InsertEndChild(st.pElement);
    return szFirst;
}

using Names = std::set<std::string, std::less<>>;

void CollectIds(const tinyxml2::XMLElement& element, Names& names, u32 uDepth) {
    if (const char* szId = OwnId(element)) names.insert(CutId(szId));
    if (uDepth > g_uGroupDepthMost) return;
    for (auto* p = element.FirstChildElement(); p; p = p->NextSiblingElement())
        CollectIds(*p, names, uDepth + 1);
}

bool IsNamed(const Names& names, std::string_view szPrefix, const std::string& szWord) {
    for (const char* szRole : {"TITLE", "VALUE", "UNIT", "DATA"})
        for (const char* szKind : {g_szTextBoxKind, g_szNumBoxKind, g_szFlipBoxKind, g_szPanelKind})
            if (names.contains(g_fnItemFullName(szPrefix, szWord, szRole, szKind))) return true;
    return false;
}

} // namespace

std::string g_fnFirstGroupId(const tinyxml2::XMLElement* pElement) {
    const char* szId = pElement ? FirstId(*pElement, 0) : nullptr;
    return szId ? CutId(szId) : std::string();
}

void g_fnReorderGroup(tinyxml2::XMLElement* pGroup, const GroupRank& fnRank) {
    if (pGroup) Reorder(*pGroup, fnRank, 0);
}

bool g_fnIsExtensionName(std::string_view szItem) { return szItem.find(g_szExtensionWord) != szItem.npos; }

void g_fnDropNamedExtensions(const tinyxml2::XMLElement* pGroup, std::string_view szPrefix,
                             std::vector<stGroupExtension>& list) {
    if (!pGroup) return;
    Names names;
    CollectIds(*pGroup, names, 0);
    std::erase_if(list, [&](const stGroupExtension& st) { return IsNamed(names, szPrefix, st.szWord); });
}
