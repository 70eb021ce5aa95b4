#include "companion/sensors/published.h"
#include "shared/offset_tree.h"
#include <algorithm>
#include <cstring>

namespace companion::sensors {
namespace {

constexpr u32 kLastOffset = g_uRawDataBytes - sizeof(i32);

template <class T> T Load(const u8* pFrom) {
    T value;
    std::memcpy(&value, pFrom, sizeof(value));
    return value;
}

/// Names as text behind the values, if they are there.
std::vector<std::string> TextNames(const u8* pRaw, size_t uFrom) {
    std::vector<std::string> listNames;
    if (uFrom + sizeof(u32) > g_uRawDataBytes || Load<u32>(pRaw + uFrom) != g_uNamesMark) return listNames;
    const u8* const pEnd = pRaw + g_uRawDataBytes;
    for (const u8* pName = pRaw + uFrom + sizeof(u32); pName != pEnd && *pName != 0;) {
        const u8* const pZero = std::find(pName, pEnd, u8{0});
        if (pZero == pEnd) break;
        listNames.emplace_back(pName, pZero);
        pName = pZero + 1;
    }
    return listNames;
}

/// Replaces what the tree knows of a name by the name itself. Text that does not fit the tree is not
/// believed.
void NameWhole(PublishedValue& st, const std::vector<std::string>& listNames) {
    st.bWhole = st.strName.find('?') == std::string::npos;
    const size_t uPlace = st.uOffset / sizeof(i32);
    if (st.bWhole || st.uOffset % sizeof(i32) != 0 || uPlace >= listNames.size()) return;
    st.bWhole = FitsName(listNames[uPlace], st.strName);
    if (st.bWhole) st.strName = listNames[uPlace];
}

} // namespace

u32 CurrentBank(const stSharedSegment& stSegment) { return g_fnReadOnce(stSegment.uDataBank) > 0 ? 1 : 0; }

bool FitsName(const std::string& strName, const std::string& strKnown) {
    return std::equal(strName.begin(), strName.end(), strKnown.begin(), strKnown.end(),
                      [](char c, char cKnown) { return c == cKnown || cKnown == '?'; });
}

std::vector<PublishedValue> ReadPublished(const stSharedSegment& stSegment) {
    const u32 uBank = CurrentBank(stSegment);
    const u8* pRaw = stSegment.RawData[uBank];
    std::vector<PublishedValue> listValues;
    size_t uEnd = 0;
    for (const stOffsetTreeEntry& st : g_fnListOffsetTree(stSegment.DataTable[uBank], g_uDataTableBytes)) {
        PublishedValue& stValue = listValues.emplace_back();
        stValue.strName = st.m_szName;
        stValue.uOffset = st.m_uValue;
        stValue.bInRoom = st.m_uValue <= kLastOffset;
        if (!stValue.bInRoom) continue;
        stValue.iValue = Load<i32>(pRaw + st.m_uValue);
        uEnd = std::max<size_t>(uEnd, st.m_uValue + sizeof(i32));
    }
    const auto listNames = TextNames(pRaw, uEnd);
    for (PublishedValue& st : listValues) NameWhole(st, listNames);
    std::sort(listValues.begin(), listValues.end(),
              [](const PublishedValue& stA, const PublishedValue& stB) { return stA.strName < stB.strName; });
    return listValues;
}

void AppendNames(const std::map<std::string, u32>& mapOffsets, std::vector<u8>& aRaw) {
    std::string strText(sizeof(u32), '\0');
    std::memcpy(strText.data(), &g_uNamesMark, sizeof(u32));
    for (const auto& [strName, uOffset] : mapOffsets) strText += strName + '\0';
    strText += '\0';
    if (aRaw.size() + strText.size() <= g_uRawDataBytes)
        aRaw.insert(aRaw.end(), strText.begin(), strText.end());
}

} // namespace companion::sensors
