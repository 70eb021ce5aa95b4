#include "controls/control_ids.h"

#include "base/log.h"
#include "controls/control_kinds.h"

#include <type_traits>

namespace {

/// Stores a control of kind T at the next free place.
template <class T> i32 Register(const stControlKind<T>& kind, u64 u64LB_ID, CControl* pControl) {
    T** const ppArray = *kind.pppCurrent;
    T* pObject = dynamic_cast<T*>(pControl);
    if (!pObject || !ppArray || !kind.pIds) return 0;
    stControlIdTable& stTable = *kind.pIds;
    if (stTable.m_fnFind(u64LB_ID) != g_uNoControl) {
        g_fnLog("g_fnRegisterXCtrl() error - repeated LB_ID: %lld\n", static_cast<long long>(u64LB_ID));
        return 0;
    }
    const u32 uPtr_ID = stTable.m_fnTake(u64LB_ID, kind.uEntries);
    if (uPtr_ID == g_uNoControl) {
        g_fnLog("g_fnRegisterXCtrl() error - uPtr_ID: %d\n", static_cast<i32>(stTable.m_uNext));
        return 0;
    }
    ppArray[uPtr_ID] = pObject;
    return 1;
}

/// The kinds whose controls have ids.
template <class Do> void ForEachKindWithIds(Do fnDo) {
    g_fnForEachKind([&]<class T>(const stControlKind<T>& kind) {
        if constexpr (std::is_base_of_v<CControl, T>)
            if (kind.pIds) fnDo(kind);
    });
}

} // namespace

i32 g_fnRegisterXCtrl(u32 uType, u64 u64LB_ID, CControl* pControl) {
    i32 iDone = 0;
    ForEachKindWithIds([&](const auto& kind) {
        if (kind.uIdType == uType) iDone = Register(kind, u64LB_ID, pControl);
    });
    return iDone;
}

i32 g_fnRegisterTextCtrl(u32 uIndex, u32 uBID, CTextBox_Base* pTextBox) {
    return g_fnRegisterXCtrl(IdTextBox, g_fnMakeLB_ID(uIndex, uBID), pTextBox);
}

ControlNames* g_fnControlNames(char cLetter) {
    ControlNames* pNames = nullptr;
    ForEachKindWithIds([&](const auto& kind) {
        if (kind.bNamed && kind.cLetter == cLetter) pNames = &kind.pIds->m_mapNames;
    });
    return pNames;
}

CControl* g_fnFindCtrlByName(char cLetter, std::string_view szName) {
    CControl* pFound = nullptr;
    ForEachKindWithIds([&](const auto& kind) {
        if (!kind.bNamed || kind.cLetter != cLetter) return;
        const auto it = kind.pIds->m_mapNames.find(szName);
        if (it != kind.pIds->m_mapNames.end()) pFound = g_fnFindCtrlById(it->second, kind);
    });
    return pFound;
}

void g_fnClearControlIds() {
    ForEachKindWithIds([](const auto& kind) {
        kind.pIds->m_fnClear();
        kind.pIds->m_mapNames.clear();
    });
}
