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

/// What stands behind the values.
struct Tail {
    std::vector<std::string> listNames;
    std::optional<Publication> stBy;
};

constexpr size_t kPublicationBytes = 3 * sizeof(u32) + sizeof(u64);

std::optional<Publication> PublicationAt(const u8* pFrom, const u8* pEnd) {
    if (static_cast<size_t>(pEnd - pFrom) < kPublicationBytes || Load<u32>(pFrom) != g_uFeedMark)
        return std::nullopt;
    return Publication{Load<u32>(pFrom + 4), Load<u32>(pFrom + 8), Load<u64>(pFrom + 12)};
}

/// Names as text and who published, if they are there.
Tail ReadTail(const u8* pRaw, size_t uFrom) {
    Tail st;
    if (uFrom + sizeof(u32) > g_uRawDataBytes || Load<u32>(pRaw + uFrom) != g_uNamesMark) return st;
    const u8* const pEnd = pRaw + g_uRawDataBytes;
    const u8* pName = pRaw + uFrom + sizeof(u32);
    while (pName != pEnd && *pName != 0) {
        const u8* const pZero = std::find(pName, pEnd, u8{0});
        if (pZero == pEnd) return st;
        st.listNames.emplace_back(pName, pZero);
        pName = pZero + 1;
    }
    if (pName != pEnd) st.stBy = PublicationAt(pName + 1, pEnd);
    return st;
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

namespace {

/// The values by what the tree knows of their names; uEnd: behind the last of them.
std::vector<PublishedValue> ReadTree(const stSharedSegment& stSegment, u32 uBank, size_t& uEnd) {
    const u8* pRaw = stSegment.RawData[uBank];
    std::vector<PublishedValue> listValues;
    for (const stOffsetTreeEntry& st : g_fnListOffsetTree(stSegment.DataTable[uBank], g_uDataTableBytes)) {
        PublishedValue& stValue = listValues.emplace_back();
        stValue.strName = st.m_szName;
        stValue.uOffset = st.m_uValue;
        stValue.bInRoom = st.m_uValue <= kLastOffset;
        if (!stValue.bInRoom) continue;
        stValue.iValue = Load<i32>(pRaw + st.m_uValue);
        uEnd = std::max<size_t>(uEnd, st.m_uValue + sizeof(i32));
    }
    return listValues;
}

} // namespace

std::vector<PublishedValue> ReadPublished(const stSharedSegment& stSegment) {
    const u32 uBank = CurrentBank(stSegment);
    size_t uEnd = 0;
    auto listValues = ReadTree(stSegment, uBank, uEnd);
    const Tail stTail = ReadTail(stSegment.RawData[uBank], uEnd);
    for (PublishedValue& st : listValues) NameWhole(st, stTail.listNames);
    std::sort(listValues.begin(), listValues.end(),
              [](const PublishedValue& stA, const PublishedValue& stB) { return stA.strName < stB.strName; });
    return listValues;
}

std::optional<Publication> ReadPublication(const stSharedSegment& stSegment) {
    const u32 uBank = CurrentBank(stSegment);
    size_t uEnd = 0;
    ReadTree(stSegment, uBank, uEnd);
    return ReadTail(stSegment.RawData[uBank], uEnd).stBy;
}

void AppendNames(const std::map<std::string, u32>& mapOffsets, const Publication& stBy,
                 std::vector<u8>& aRaw) {
    std::string strText;
    const auto fnAppend = [&](const auto& value) {
        strText.append(reinterpret_cast<const char*>(&value), sizeof(value));
    };
    fnAppend(g_uNamesMark);
    for (const auto& [strName, uOffset] : mapOffsets) strText += strName + '\0';
    strText += '\0';
    fnAppend(g_uFeedMark);
    fnAppend(stBy.uProcessId);
    fnAppend(stBy.uStamp);
    fnAppend(stBy.uTime);
    if (aRaw.size() + strText.size() <= g_uRawDataBytes)
        aRaw.insert(aRaw.end(), strText.begin(), strText.end());
}

void SetTime(u64 uTime, std::vector<u8>& aRaw) {
    if (aRaw.size() < kPublicationBytes) return;
    u8* const pBy = aRaw.data() + aRaw.size() - kPublicationBytes;
    if (Load<u32>(pBy) == g_uFeedMark) std::memcpy(pBy + 3 * sizeof(u32), &uTime, sizeof(uTime));
}

} // namespace companion::sensors
