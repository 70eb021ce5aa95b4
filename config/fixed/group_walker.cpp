#include "config/fixed/group_walker.h"

#include "config/fixed/enable_map.h"
#include "config/fixed/expression.h"
#include "config/fixed/group_order.h"
#include "config/fixed/name_maps.h"
#include "config/settings/setting_binding.h"
#include "controls/control_ids.h"
#include "controls/control_kinds.h"

#include <algorithm>
#include <set>
#include <string>

#include <tinyxml2.h>

namespace {

/// One level of the walk: an element with its siblings. Children get levels of their own.
struct stLevel {
    CControl* pParent;
    u32 uIndex;
    u32 uFlow;
    f32 fX, fY;           ///< cursor
    f32 fEntryX, fEntryY; ///< where it stood when the level began
    CControl** ppLastPlaced;
};

std::string AttributeText(const tinyxml2::XMLElement& element, const char* szKey, const char* szDefault) {
    char szText[g_uSettingText];
    SettingTable table;
    const stSettingRow aRows[] = {{szKey, szDefault, SETTING_TEXT, TARGET_TEXT, szText, g_uSettingText}};
    g_fnAddSettings(table, aRows);
    g_fnApplyXmlSettings(&element, table);
    g_fnFreeSettings(table);
    return szText;
}

i32 AttributeNumber(const tinyxml2::XMLElement& element, const char* szKey) {
    return g_fnEvalNumber(AttributeText(element, szKey, "0").c_str());
}

char Letter(const tinyxml2::XMLElement& element) { return element.Value() ? *element.Value() : '\0'; }

/// The item that an element of that kind names, if the letter is the kind's.
template <eControlKind eKind>
CControl* FindOfKind(char cLetter, u32 uIndex, const NameMap& map, const std::string& szId, u32 uOffset) {
    if (cLetter != g_fnKind<eKind>().cLetter) return nullptr;
    const u32 uBID = g_fnFindBID(map, szId);
    if (uBID == g_uNoBID) return nullptr;
    return g_fnFindCtrlById(g_fnMakeLB_ID(uIndex, uBID + uOffset), g_fnKind<eKind>());
}

CControl* FindItem(char cLetter, u32 uIndex, const std::string& szId, u32 uOffset) {
    const stNameMaps& st = g_stNameMaps;
    if (auto* p = FindOfKind<KIND_TEXTBOX>(cLetter, uIndex, st.mapTextBox, szId, uOffset)) return p;
    if (auto* p = FindOfKind<KIND_NUMBOX>(cLetter, uIndex, st.mapNumBox, szId, uOffset)) return p;
    if (auto* p = FindOfKind<KIND_PANEL>(cLetter, uIndex, st.mapPanel, szId, uOffset)) return p;
    return FindOfKind<KIND_FLIPBOX>(cLetter, uIndex, st.mapFlipBox, szId, uOffset);
}

/// Puts the control's left upper corner on the cursor; its children follow.
void MoveToCursor(CControl& control, const stLevel& level) {
    f32 fParentX = 0, fParentY = 0;
    if (CControl* pParent = g_pOSDManager->m_fnGetParent(&control))
        pParent->m_fnGetPosition(&fParentX, &fParentY, nullptr);
    control.m_fnSetAnchor(1, level.fX - fParentX, level.fY - fParentY);
}

/// The cursor begins behind the first control of a row or column, which stays where it is.
void StartFlow(CControl& control, stLevel& level) {
    f32 fWidth, fHeight;
    const bool bRow = level.uFlow == FLOW_ROW_START;
    control.m_fnGetPosition(&level.fX, &level.fY, nullptr);
    control.m_fnGetSize(&fWidth, &fHeight);
    (bRow ? level.fX : level.fY) += bRow ? fWidth : fHeight;
    level.uFlow = bRow ? FLOW_ROW : FLOW_COLUMN;
}

void ContinueFlow(CControl& control, stLevel& level) {
    f32 fWidth, fHeight;
    MoveToCursor(control, level);
    control.m_fnGetSize(&fWidth, &fHeight); // after the move
    if (level.uFlow == FLOW_ROW)
        level.fX += fWidth;
    else
        level.fY += fHeight;
}

void ApplyFlow(CControl& control, stLevel& level) {
    if (level.uFlow == FLOW_ROW_START || level.uFlow == FLOW_COLUMN_START)
        StartFlow(control, level);
    else if (level.uFlow == FLOW_ROW || level.uFlow == FLOW_COLUMN)
        ContinueFlow(control, level);
    if (level.ppLastPlaced) *level.ppLastPlaced = &control;
}

class CGroupWalk {
  public:
    /// The elements that a walk begins with.
    explicit CGroupWalk(const tinyxml2::XMLElement* pElement) {
        for (auto* p = pElement; p; p = p->NextSiblingElement()) m_fnFindExtensions(*p, 0);
    }
    void m_fnWalk(const tinyxml2::XMLElement* pElement, stLevel level);

  private:
    /// What the items below an element are, the element included.
    struct stContents {
        bool bExtension, bOther;
    };
    stContents m_fnFindExtensions(const tinyxml2::XMLElement& element, u32 uDepth);

    void m_fnVisit(const tinyxml2::XMLElement& element, stLevel& level);
    void m_fnVisitSensors(const tinyxml2::XMLElement& element, stLevel& level);
    void m_fnVisitOnce(const tinyxml2::XMLElement& element, stLevel& level);
    void m_fnVisitItem(const tinyxml2::XMLElement& element, const std::string& szId, stLevel& level);
    void m_fnVisitLoop(const tinyxml2::XMLElement& element, stLevel& level);
    void m_fnVisitContainer(const tinyxml2::XMLElement& element, const stLevel& level);

    /// Elements that stand for the rows of all sensors.
    std::set<const tinyxml2::XMLElement*> m_setExtensions;
    const stGroupExtension* m_pExtension = nullptr; ///< sensor of the row being walked
    u32 m_uDepth = 0, m_uVisits = 0;
};

/// An item stands for sensors by its own name, whatever is below it; a container if all its items do and they
/// are more than one child's. A container of one such child is what the rows of sensors line up in.
CGroupWalk::stContents CGroupWalk::m_fnFindExtensions(const tinyxml2::XMLElement& element, u32 uDepth) {
    const char* szId = element.Attribute("ID");
    const bool bItem = szId && *szId;
    stContents st{bItem && g_fnIsExtensionName(szId), bItem && !g_fnIsExtensionName(szId)};
    u32 uChildren = 0;
    if (uDepth < g_uGroupDepthMost)
        for (auto* p = element.FirstChildElement(); p; p = p->NextSiblingElement()) {
            const stContents stBelow = m_fnFindExtensions(*p, uDepth + 1);
            if (bItem) continue;
            uChildren += stBelow.bExtension || stBelow.bOther;
            st.bExtension |= stBelow.bExtension;
            st.bOther |= stBelow.bOther;
        }
    if (st.bExtension && !st.bOther && (bItem || uChildren > 1)) m_setExtensions.insert(&element);
    return st;
}

void CGroupWalk::m_fnWalk(const tinyxml2::XMLElement* pElement, stLevel level) {
    if (m_uDepth > g_uGroupDepthMost) return;
    ++m_uDepth;
    level.fEntryX = level.fX;
    level.fEntryY = level.fY;
    for (; pElement && m_uVisits < g_uGroupVisitsMost; pElement = pElement->NextSiblingElement())
        m_fnVisit(*pElement, level);
    --m_uDepth;
}

void CGroupWalk::m_fnVisit(const tinyxml2::XMLElement& element, stLevel& level) {
    if (!m_pExtension && m_setExtensions.contains(&element))
        m_fnVisitSensors(element, level);
    else
        m_fnVisitOnce(element, level);
}

void CGroupWalk::m_fnVisitSensors(const tinyxml2::XMLElement& element, stLevel& level) {
    const u32 uIndex = level.uIndex;
    for (const stGroupExtension& st : g_listGroupExtension) {
        m_pExtension = &st;
        level.uIndex = st.uGroup;
        m_fnVisitOnce(element, level);
    }
    level.uIndex = uIndex;
    m_pExtension = nullptr;
}

void CGroupWalk::m_fnVisitOnce(const tinyxml2::XMLElement& element, stLevel& level) {
    if (++m_uVisits > g_uGroupVisitsMost) return;
    const std::string szId = AttributeText(element, "ID", "");
    if (!szId.empty())
        m_fnVisitItem(element, szId, level);
    else if (Letter(element) == 'A')
        m_fnVisitLoop(element, level);
    else
        m_fnVisitContainer(element, level);
}

void CGroupWalk::m_fnVisitItem(const tinyxml2::XMLElement& element, const std::string& szId, stLevel& level) {
    const u32 uOffset = m_pExtension && g_fnIsExtensionName(szId) ? m_pExtension->uRow : 0;
    CControl* const pControl = FindItem(Letter(element), level.uIndex, szId, uOffset);
    if (!pControl || g_pOSDManager->m_fnAddChild(level.pParent, pControl) < 0) return;
    ApplyFlow(*pControl, level);
    m_fnWalk(element.FirstChildElement(),
             {pControl, level.uIndex, FLOW_NONE, level.fEntryX, level.fEntryY, 0, 0, nullptr});
}

void CGroupWalk::m_fnVisitLoop(const tinyxml2::XMLElement& element, stLevel& level) {
    // No item has an instance outside this range, so those rounds would place nothing.
    const i32 iFirst = std::max(AttributeNumber(element, "StartIndex"), 0);
    const i32 iLast = std::min(AttributeNumber(element, "EndIndex"), static_cast<i32>(g_uInstances) - 1);
    for (i32 i = iFirst; i <= iLast; ++i) {
        CControl* pLast = nullptr;
        stLevel round = level;
        round.uIndex = static_cast<u32>(i);
        round.ppLastPlaced = &pLast;
        m_fnWalk(element.FirstChildElement(), round);
        // KEEP(profiles): of a round that placed several only the last counts, and it goes on this level's
        // cursor.
        if (pLast) ApplyFlow(*pLast, level);
    }
}

void CGroupWalk::m_fnVisitContainer(const tinyxml2::XMLElement& element, const stLevel& level) {
    stLevel inner = level;
    switch (Letter(element)) {
    case 'C':
        inner.uFlow = FLOW_COLUMN_START;
        break;
    case 'R':
        inner.uFlow = FLOW_ROW_START;
        break;
    case 'T':
        break;
    case 'I':
        if (!g_fnEvalCondition(AttributeText(element, "Condition", "1").c_str())) return;
        inner.pParent = nullptr; // KEEP(profiles): whatever surrounds the element
        break;
    default:
        return;
    }
    m_fnWalk(element.FirstChildElement(), inner);
}

} // namespace

bool g_fnWalkGroup(const tinyxml2::XMLElement* pElement, CControl* pParent, u32 uIndex, u32 uFlow, f32 x,
                   f32 y, CControl** ppLastPlaced) {
    if (g_pOSDManager)
        CGroupWalk(pElement).m_fnWalk(pElement, {pParent, uIndex, uFlow, x, y, x, y, ppLastPlaced});
    return true;
}

bool g_fnWalkWholeGroup(const tinyxml2::XMLElement* pGroup) {
    return g_fnWalkGroup(pGroup ? pGroup->FirstChildElement() : nullptr, nullptr, 0, FLOW_NONE, 0, 0,
                         nullptr);
}
