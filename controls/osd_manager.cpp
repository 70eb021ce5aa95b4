#include "controls/osd_manager.h"

#include "base/slots.h"
#include "controls/control.h"

#include <algorithm>

COSDManager* g_apOSDManager[g_uManagerSlots];
COSDManager* g_pOSDManager;

CFontUniCode** g_ppFont;
CTextBox_Base** g_ppTextBox;
CNumBox_Base** g_ppNumBox;
CFlipBox_Base** g_ppFlipBox;
CPanel_Base** g_ppPanel;
CPanel_Base** g_ppStylePanel;
CImgBox_Base** g_ppImgBox;
CLineGraph_Base** g_ppLineGraph;
CVideoBox_Base** g_ppVideoBox;
CPieChart_Base** g_ppPieChart;

namespace {

template <class List, class T> bool Contains(const List& list, const T& value) {
    return std::find(list.begin(), list.end(), value) != list.end();
}

/// The list of a map's entry, or null.
template <class Map, class Key> ControlList* FindList(Map& map, const Key& key) {
    const auto it = map.find(key);
    return it != map.end() ? it->second.get() : nullptr;
}

} // namespace

COSDManager::~COSDManager() { COSDManager::m_fnRelease(); }

bool COSDManager::m_fnStartOver() {
    m_fnRelease();
    for (KeyList& layer : m_aLayer) layer.clear();
    m_mapDrawList.clear();
    m_mapChildren.clear();
    m_mapParent.clear();
    return m_fnInitialize();
}

bool COSDManager::m_fnIsInLayer(const void* pKey, u32 uLayer) { return Contains(m_aLayer[uLayer], pKey); }

bool COSDManager::m_fnAddToLayer(const void* pKey, u32 uLayer) {
    if (!pKey || m_fnIsInLayer(pKey, uLayer)) return false;
    m_aLayer[uLayer].push_back(pKey);
    ++g_uDrawListChanges;
    std::unique_ptr<ControlList>& pList = m_mapDrawList[pKey];
    if (!pList) pList = std::make_unique<ControlList>();
    return true;
}

bool COSDManager::m_fnRemoveFromLayer(const void* pKey, u32 uLayer) {
    if (!pKey || !m_fnIsInLayer(pKey, uLayer)) return false;
    std::erase(m_aLayer[uLayer], pKey);
    ++g_uDrawListChanges;
    m_mapDrawList.erase(pKey);
    return true;
}

KeyList& COSDManager::m_fnGetLayer(u32 uLayer) { return m_aLayer[uLayer]; }

bool COSDManager::m_fnIsAttached(CControl* pControl, u32 uLayer) {
    const void* pKey = pControl ? pControl->m_fnGetDrawKey() : nullptr;
    if (!pKey) return false;
    // KEEP(profiles): the query enters the key; this is how a key comes into a layer with its first control.
    if (m_fnAddToLayer(pKey, uLayer)) return false;
    const ControlList* pList = FindList(m_mapDrawList, pKey);
    return pList && Contains(*pList, pControl);
}

bool COSDManager::m_fnAttachBack(CControl* pControl, u32 uLayer) {
    if (!pControl || m_fnIsAttached(pControl, uLayer)) return false;
    ControlList* pList = FindList(m_mapDrawList, pControl->m_fnGetDrawKey());
    // A key that had stood in another layer brings its list along, perhaps with this control in it.
    if (!pList || Contains(*pList, pControl)) return false;
    pList->push_back(pControl);
    ++g_uDrawListChanges;
    return true;
}

bool COSDManager::m_fnAttachFront(CControl* pControl, u32 uLayer) {
    if (!pControl || m_fnIsAttached(pControl, uLayer)) return false;
    ControlList* pList = FindList(m_mapDrawList, pControl->m_fnGetDrawKey());
    if (!pList || Contains(*pList, pControl)) return false;
    pList->insert(pList->begin(), pControl);
    ++g_uDrawListChanges;
    return true;
}

bool COSDManager::m_fnDetach(CControl* pControl, u32 uLayer) {
    if (!m_fnIsAttached(pControl, uLayer)) return false;
    std::erase(*FindList(m_mapDrawList, pControl->m_fnGetDrawKey()), pControl);
    ++g_uDrawListChanges;
    return true;
}

// KEEP(profiles): an unknown key is entered, with no list.
ControlList* COSDManager::m_fnGetDrawList(const void* pKey) { return m_mapDrawList[pKey].get(); }

bool COSDManager::m_fnHasParent(CControl* pChild) { return m_mapParent.contains(pChild); }

bool COSDManager::m_fnIsChildOf(CControl* pParent, CControl* pChild) {
    const ControlList* pChildren = FindList(m_mapChildren, pParent);
    return pChildren && Contains(*pChildren, pChild);
}

i32 COSDManager::m_fnAddChild(CControl* pParent, CControl* pChild) {
    if (!pChild) return -1;
    // The parent may not be the child nor hang anywhere below it: placing a ring would never end.
    for (CControl* p = pParent; p; p = m_fnGetParent(p))
        if (p == pChild) return -2;
    std::unique_ptr<ControlList>& pChildren = m_mapChildren[pParent];
    if (!pChildren) pChildren = std::make_unique<ControlList>();
    if (m_fnIsChildOf(pParent, pChild)) return 1;
    if (m_fnHasParent(pChild))
        if (ControlList* pOld = FindList(m_mapChildren, m_mapParent[pChild])) std::erase(*pOld, pChild);
    pChildren->push_back(pChild);
    m_mapParent[pChild] = pParent;
    pChild->m_fnResolvePosition(pParent);
    return 0;
}

bool COSDManager::m_fnCollectSubtree(CControl* pControl, ControlList& list) {
    if (!pControl) return false;
    const ControlList* pChildren = FindList(m_mapChildren, pControl);
    if (!pChildren) return true;
    for (CControl* pChild : *pChildren) {
        if (!pChild) continue;
        list.push_back(pChild);
        m_fnCollectSubtree(pChild, list);
    }
    return true;
}

i32 COSDManager::m_fnRemoveSubtree(CControl* pControl) {
    if (!pControl) return -1;
    ControlList list{pControl};
    m_fnCollectSubtree(pControl, list);
    for (CControl* p : list) m_mapChildren.erase(p);
    for (CControl* p : list) {
        const auto it = m_mapParent.find(p);
        if (it == m_mapParent.end()) continue;
        if (ControlList* pSiblings = FindList(m_mapChildren, it->second)) std::erase(*pSiblings, p);
    }
    for (CControl* p : list) m_mapParent.erase(p);
    return 0;
}

ControlList* COSDManager::m_fnGetChildren(CControl* pParent) { return FindList(m_mapChildren, pParent); }

CControl* COSDManager::m_fnGetParent(CControl* pChild) {
    const auto it = m_mapParent.find(pChild);
    return it != m_mapParent.end() ? it->second : nullptr;
}

void COSDManager::m_fnOnResize() {
    const ControlList* pRoot = m_fnGetChildren(nullptr);
    if (!pRoot) return;
    for (CControl* pChild : *pRoot)
        if (pChild) pChild->m_fnResolvePosition(nullptr);
}

void COSDManager::m_fnResolveControl(CControl* pControl) {
    if (!pControl) return;
    const auto it = m_mapParent.find(pControl);
    if (it != m_mapParent.end()) pControl->m_fnResolvePosition(it->second);
}

void COSDManager::m_fnReserved20() {}

void g_fnSetManagerSlot(u32 uSlot) {
    if (uSlot == g_uManagerSlot || uSlot >= g_uManagerSlots) return;
    g_uManagerSlot = uSlot;
    g_fnSelectManager();
}
