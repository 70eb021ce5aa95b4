// The ten arrays of a manager: the one place of it that knows all kinds of controls.
#include "base/slots.h"
#include "controls/control_kinds.h"
#include "draw/batcher_slots.h"

#include <new>
#include <tuple>

namespace {

template <class T> bool MakeArray(T**& ppArray, u32 uEntries) {
    if (ppArray) return false;
    ppArray = new (std::nothrow) T* [uEntries] {};
    return ppArray != nullptr;
}

/// Deletes the objects, then the array; a global copy of the array's address goes with it.
template <class T> void DeleteArray(T**& ppArray, u32 uEntries, T**& ppGlobal) {
    if (!ppArray) return;
    for (u32 i = 0; i < uEntries; ++i) {
        delete ppArray[i];
        ppArray[i] = nullptr;
    }
    if (ppGlobal == ppArray) ppGlobal = nullptr;
    delete[] ppArray;
    ppArray = nullptr;
}

void CopyArrayPointers(const stManagerArrays& st) {
    g_fnForEachKind([&](const auto& kind) { *kind.pppCurrent = st.*kind.pppArray; });
}

} // namespace

bool COSDManager::m_fnInitialize() {
    return std::apply(
        [this](const auto&... kind) { return (MakeArray(m_stArrays.*kind.pppArray, kind.uEntries) && ...); },
        g_aControlKinds);
}

void COSDManager::m_fnRelease() {
    ++g_uDrawListChanges;
    g_fnForEachKind([this](const auto& kind) {
        DeleteArray(m_stArrays.*kind.pppArray, kind.uEntries, *kind.pppCurrent);
    });
}

void g_fnSelectManager() {
    g_pOSDManager = g_apOSDManager[g_uManagerSlot];
    if (!g_pOSDManager) return;
    CopyArrayPointers(g_pOSDManager->m_stArrays);
    g_pDrawBasic = g_apDrawBasic[g_uManagerSlot];
    g_pDrawText = g_apDrawText[g_uManagerSlot];
}

void g_fnDestroyManagers() {
    for (COSDManager*& pManager : g_apOSDManager) {
        delete pManager;
        pManager = nullptr;
    }
    g_pOSDManager = nullptr;
    CopyArrayPointers({});
}
