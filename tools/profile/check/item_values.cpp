#include "tools/profile/check/item_values.h"

#include "config/items/item_graph.h"
#include "tools/profile/check/data_names.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <map>
#include <tinyxml2.h>

namespace companion {
namespace {

/// As many vertices can be numbered with 16 bits.
constexpr double g_fVerticesMost = 65536;
constexpr unsigned g_uPairColumnsMost = 32767; ///< two vertices a sample, one sample more than columns
constexpr unsigned g_uQuadColumnsMost = 16384; ///< four a column

bool IsKind(const ProfileItem& item, const char* szElement) {
    return !std::strcmp(item.pKind->szName, szElement);
}

int LineOf(const ProfileItem& item, const char* szAttribute) {
    return AttributeLine(*item.pElement, szAttribute);
}

u32 ToU32(double f) { return f >= 0xFFFFFFFFu ? 0xFFFFFFFFu : f > 0 ? static_cast<u32>(f) : 0; }

/// One place to write "TITLE: words" at an attribute's line.
class ItemReport {
  public:
    ItemReport(const ProfileItem& item, Findings& findings) : m_item(item), m_findings(findings) {}
    void Error(const char* szAttribute, const std::string& strText) const {
        Add(Severity::Error, szAttribute, strText);
    }
    void Warning(const char* szAttribute, const std::string& strText) const {
        Add(Severity::Warning, szAttribute, strText);
    }
    void Note(const char* szAttribute, const std::string& strText) const {
        Add(Severity::Note, szAttribute, strText);
    }

  private:
    void Add(Severity eSeverity, const char* szAttribute, const std::string& strText) const {
        m_findings.Add(eSeverity, LineOf(m_item, szAttribute), ItemTitle(m_item) + ": " + strText);
    }
    const ProfileItem& m_item;
    Findings& m_findings;
};

void CheckRange(const ProfileItem& item, const ItemReport& report) {
    const double fMin = AttributeNumber(item, "MinValue"), fMax = AttributeNumber(item, "MaxValue");
    if (fMin < fMax) return;
    if (fMin == fMax)
        report.Error("MinValue", "MinValue equals MaxValue: every value above it is the maximum");
    else
        report.Warning("MinValue", "MinValue is above MaxValue; the two change places");
}

void CheckPairColumns(const ProfileItem& item, const ItemReport& report) {
    const double fColumns = AttributeNumber(item, "DataNum");
    if (fColumns < 0 || fColumns > g_uPairColumnsMost)
        report.Error("DataNum", "DataNum is out of range, which is 2 to " +
                                    std::to_string(g_uPairColumnsMost) + "; the layout cannot be built");
    else if (fColumns == 1)
        report.Warning("DataNum", "DataNum 1 counts as 2");
    if (item.pElement->Attribute("DataWidth"))
        report.Note("DataWidth", "DataWidth has no effect: lines and areas are half a column thick");
}

void CheckQuadColumns(const ProfileItem& item, const ItemReport& report) {
    const unsigned uColumns = GraphColumns(item);
    if (uColumns > g_uQuadColumnsMost)
        report.Error("DataWidth", "DataWidth makes " + std::to_string(uColumns) + " columns of a width of " +
                                      WholeText(AttributeNumber(item, "ContentSizeW")) + "; at most " +
                                      std::to_string(g_uQuadColumnsMost) +
                                      " can be, the layout cannot be built");
    if (item.pElement->Attribute("DataNum"))
        report.Note("DataNum", "DataNum has no effect: stairs and bars count their columns from the width");
}

void CheckGraph(const ProfileItem& item, const ItemReport& report) {
    CheckRange(item, report);
    const double fType = AttributeNumber(item, "LineType");
    if (fType == 2 || fType == 3)
        CheckQuadColumns(item, report);
    else
        CheckPairColumns(item, report);
    if (AttributeNumber(item, "DataStartIdx") > GraphColumns(item))
        report.Warning("DataStartIdx",
                       "DataStartIdx is behind the last column, where the graph begins instead");
}

void CheckChartMesh(const ProfileItem& item, bool bRing, const ItemReport& report) {
    const double fSlots = AttributeNumber(item, "SlotNum"), fSegments = AttributeNumber(item, "ShapeSegNum");
    if (fSlots < 0) return report.Error("SlotNum", "SlotNum is below 0; the layout cannot be built");
    if (fSegments < 0)
        return report.Error("ShapeSegNum", "ShapeSegNum is below 0; the layout cannot be built");
    const double fPoints = (fSegments + 1) * fSlots,
                 fMost = bRing ? g_fVerticesMost / 2 : g_fVerticesMost - 1;
    if (fPoints > fMost)
        report.Error("SlotNum", "(ShapeSegNum + 1) * SlotNum is " + WholeText(fPoints) + "; at most " +
                                    WholeText(fMost) + " can be, the layout cannot be built");
}

/// The chart takes 360 for 0, so only a difference of angles within one turn is what it seems.
void CheckAngles(const ProfileItem& item, const ItemReport& report) {
    const double fStart = AttributeNumber(item, "StartDegree"), fEnd = AttributeNumber(item, "EndDegree");
    const bool bFull = fEnd == 360 && fStart == 0;
    if (fEnd == 360 && !bFull)
        report.Warning("EndDegree", "EndDegree 360 counts as 0: the gauge ends on the right");
    if (fEnd < fStart && fEnd != 360 && AttributeNumber(item, "Clockwise") == 0)
        report.Note("EndDegree", "EndDegree is below StartDegree: the gauge runs clockwise from the start");
}

void CheckChart(const ProfileItem& item, const ItemReport& report) {
    CheckRange(item, report);
    const bool bRing = AttributeNumber(item, "ChartType") == 1;
    CheckChartMesh(item, bRing, report);
    CheckAngles(item, report);
    if (AttributeNumber(item, "SlotNum") == 1)
        report.Warning("SlotNum", "SlotNum 1: the gauge is either empty or full");
    if (!bRing && AttributeNumber(item, "ShapeSegNum") > 1)
        report.Warning("ShapeSegNum",
                       "a fan draws only one piece of each slot; take ShapeSegNum 1 and more slots");
    if (bRing && AttributeNumber(item, "ChartFillRatio") >= 100)
        report.Warning("ChartFillRatio", "ChartFillRatio 100 leaves a ring without width");
}

void CheckBox(const ProfileItem& item, const ItemReport& report) {
    if (AttributeNumber(item, "ContentSizeW") == 0 || AttributeNumber(item, "ContentSizeH") == 0)
        report.Warning("ContentSizeW", "ContentSizeW or ContentSizeH is 0: nothing can be seen");
}

void CheckPanel(const ProfileItem& item, const ItemReport& report) {
    CheckBox(item, report);
    if (item.pElement->Attribute("PanelScattering") && AttributeNumber(item, "PanelType") != 2)
        report.Note("PanelScattering", "PanelScattering has an effect on frosted glass (PanelType 2) only");
}

void CheckTextSize(const ProfileItem& item, const ItemReport& report) {
    if (!item.pElement->Attribute("TextSize"))
        report.Error("TextSize", "TextSize is missing and counts as 0: nothing can be seen");
}

constexpr const char* g_aszProgramValues[] = {"GL", "ARCH", "PROFILE_NAME", "PID", "TID"};

void CheckProgramValue(const ProfileItem& item, const ItemReport& report) {
    const std::string strName = AttributeText(item, "StringFullName");
    if (strName.empty()) return;
    for (const char* sz : g_aszProgramValues)
        if (strName == sz) return;
    report.Warning("StringFullName", "StringFullName \"" + strName +
                                         "\" is none of GL, ARCH, PROFILE_NAME, PID, TID" +
                                         "; the text stays");
}

void CheckByKind(const ProfileItem& item, const ItemReport& report) {
    if (FindAttribute(*item.pKind, "TextSize")) CheckTextSize(item, report);
    if (IsKind(item, "TextBox")) CheckProgramValue(item, report);
    if (IsKind(item, "Panel")) CheckPanel(item, report);
    if (IsKind(item, "LineGraph")) CheckGraph(item, report);
    if (IsKind(item, "PieChart")) CheckChart(item, report);
    if (IsKind(item, "Image")) CheckBox(item, report);
}

/// Names of the controls that an item is made of, by the letter of their kind in front.
std::vector<std::string> ControlNames(const ProfileItem& item) {
    const std::string strStem = item.strName.substr(0, item.strName.rfind('@'));
    const std::string strTail = item.strOwner.empty() ? "" : '@' + item.strOwner;
    const auto Name = [&](char cLetter, const char* szPart) { return cLetter + strStem + szPart + strTail; };
    const std::string strData = AttributeText(item, "DataFullName");
    if (IsKind(item, "Panel")) return {Name('P', "_F"), Name('P', "")};
    if (IsKind(item, "TextBox") || IsKind(item, "Memo")) return {Name('P', "_F"), Name('T', "")};
    if (IsKind(item, "Image")) return {Name('P', "_F"), Name('I', "")};
    if (!IsKind(item, "NumBox")) return {Name('P', "_F")};
    if (strData == "SYSTEM_TIME")
        return {Name('P', "_F"),  Name('T', "[0]"), Name('T', "[1]"),
                Name('N', "[0]"), Name('N', "[1]"), Name('N', "[2]")};
    if (strData == "RESOLUTION") return {Name('P', "_F"), Name('T', ""), Name('N', "[0]"), Name('N', "[1]")};
    return {Name('P', "_F"), Name('N', "")};
}

/// A frame, and each part of a clock, has a name that is made of the item's; what has it as its own loses it.
void CheckMadeUpNames(const std::vector<const ProfileItem*>& taken, Findings& findings) {
    std::map<std::string, const ProfileItem*> holders;
    for (const ProfileItem* p : taken)
        for (const std::string& strName : ControlNames(*p)) {
            const auto [it, bFirst] = holders.emplace(strName, p);
            if (!bFirst && it->second != p)
                findings.Error(LineOf(*p, "Name"),
                               ItemTitle(*p) + ": the name \"" + strName.substr(1) +
                                   "\" belongs to a part of one of two items, this one and the " +
                                   it->second->pKind->szName + " in line " +
                                   std::to_string(it->second->pElement->GetLineNum()) +
                                   "; one of them is not built whole, so rename it");
        }
}

bool HasInk(const ProfileItem& item, const char* szOpacity) {
    return AttributeNumber(item, szOpacity) * 100 / 255 >= 1; // whole percent
}

bool HasRoom(const ProfileItem& item) {
    return AttributeNumber(item, "ContentSizeW") > 0 && AttributeNumber(item, "ContentSizeH") > 0;
}

/// Whether an item could show anything at all.
bool CanBeSeen(const ProfileItem& item) {
    if (FindAttribute(*item.pKind, "TextSize")) {
        const bool bWords = !IsKind(item, "TextBox") || !AttributeText(item, "Text").empty() ||
                            !AttributeText(item, "StringFullName").empty();
        return bWords && AttributeNumber(item, "TextSize") > 0 && HasInk(item, "TextColorA");
    }
    if (IsKind(item, "Panel"))
        return AttributeNumber(item, "PanelType") != 0 && HasInk(item, "PanelColorA") && HasRoom(item);
    if (IsKind(item, "LineGraph")) return HasInk(item, "LineColorA") && HasRoom(item);
    if (IsKind(item, "PieChart")) return HasInk(item, "ChartColorA") && HasRoom(item);
    return HasInk(item, "ImageColorA") && HasRoom(item);
}

using ItemsByName = std::map<std::string, const ProfileItem*>;

/// Items as owners see them.
struct stOwners {
    ItemsByName taken; ///< by whole name
    ItemsByName all;   ///< by whole name, those that were refused included
    ItemsByName owned; ///< those that have an owner themselves, by the name in front of it
};

stOwners OwnersOf(const std::vector<const ProfileItem*>& taken, const std::vector<ProfileItem>& all) {
    stOwners st;
    for (const ProfileItem* p : taken) st.taken.emplace(p->strName, p);
    for (const ProfileItem& item : all) {
        st.all.emplace(item.strName, &item);
        if (const std::size_t uAt = item.strName.rfind('@'); uAt != std::string::npos)
            st.owned.emplace(item.strName.substr(0, uAt), &item);
    }
    return st;
}

/// Why an owner is missing.
std::string OwnerFault(const std::string& strOwner, const stOwners& st) {
    if (const auto it = st.all.find(strOwner); it != st.all.end())
        return "the item \"" + strOwner + "\" in line " + std::to_string(it->second->pElement->GetLineNum()) +
               (it->second->bShown ? " is refused" : " is not shown");
    if (const auto it = st.owned.find(strOwner); it != st.owned.end())
        return "the item \"" + it->second->strName + "\" has an owner itself, and so can own nothing";
    return "there is no item \"" + strOwner + '"';
}

/// Owners go by their whole names, so an owner with an owner is never found.
void CheckOwner(const ProfileItem& item, const stOwners& owners, const ItemReport& report) {
    if (item.strOwner.empty() || owners.taken.contains(item.strOwner)) return;
    report.Error("Name", "the owner is missing: " + OwnerFault(item.strOwner, owners) +
                             "; the item stands in the upper left corner of the screen");
}

} // namespace

// Numbers come from files and may be of any size.
std::string WholeText(double f) {
    char sz[400];
    std::snprintf(sz, sizeof sz, "%.0f", f);
    return sz;
}

unsigned GraphColumns(const ProfileItem& item) {
    const double fType = AttributeNumber(item, "LineType");
    if (fType == 2 || fType == 3)
        return g_fnGraphColumns(ToU32(AttributeNumber(item, "ContentSizeW")),
                                static_cast<f32>(AttributeNumber(item, "DataWidth")));
    const double fColumns = AttributeNumber(item, "DataNum");
    return fColumns < 2 ? 2 : ToU32(fColumns);
}

bool AnyCanBeSeen(const std::vector<const ProfileItem*>& taken) {
    return std::any_of(taken.begin(), taken.end(), [](const ProfileItem* p) { return CanBeSeen(*p); });
}

void CheckItems(const std::vector<const ProfileItem*>& taken, const std::vector<ProfileItem>& all,
                const DataNames& names, Findings& findings) {
    CheckMadeUpNames(taken, findings);
    const stOwners owners = OwnersOf(taken, all);
    DataNameCheck dataNames(names);
    for (const ProfileItem* p : taken) {
        if (findings.IsFull()) return;
        const ItemReport report(*p, findings);
        CheckByKind(*p, report);
        CheckOwner(*p, owners, report);
        if (FindAttribute(*p->pKind, "DataFullName")) dataNames.Check(*p, findings);
    }
}

} // namespace companion
