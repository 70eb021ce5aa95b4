#pragma once
// Records by number, with a bitmap of the numbers in use.
#include "platform/types.h"

#include <bitset>
#include <vector>

/// Room for uSlots records; memory goes up to the highest number in use.
template <class T, u32 uSlots> class CTemplatePool {
  public:
    /// A fresh record under that number; null for one beyond the room.
    T* m_fnUse(u32 uId) {
        if (uId >= uSlots) return nullptr;
        if (uId >= m_listSlots.size()) m_listSlots.resize(uId + 1);
        m_bitsUsed.set(uId);
        m_listSlots[uId] = T{};
        return &m_listSlots[uId];
    }
    bool m_fnIsUsed(u32 uId) const { return uId < uSlots && m_bitsUsed.test(uId); }
    /// The record, or null where none is. Valid until the next m_fnUse.
    const T* m_fnFind(u32 uId) const { return m_fnIsUsed(uId) ? &m_listSlots[uId] : nullptr; }
    T* m_fnFind(u32 uId) { return m_fnIsUsed(uId) ? &m_listSlots[uId] : nullptr; }
    std::size_t m_fnCount() const { return m_bitsUsed.count(); }
    void m_fnClear() {
        m_bitsUsed.reset();
        m_listSlots.clear();
    }

  private:
    std::bitset<uSlots> m_bitsUsed;
    std::vector<T> m_listSlots;
};
