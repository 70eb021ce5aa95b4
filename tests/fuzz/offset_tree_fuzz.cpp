// The input once as a bank of the name tree, once as a set of names that is written and read back.
#include "platform/segment.h"
#include "shared/offset_tree.h"
#include <cstdlib>

namespace {

using Names = std::map<std::string, u32>;

void Require(bool bHolds) {
    if (!bHolds) std::abort();
}

/// Names that tell paths through the input: the usual ones, all listed ones, and the input itself.
void ReadBank(const u8* pData, u32 uBytes) {
    u32 uValue = 0;
    const auto vecEntries = g_fnListOffsetTree(pData, uBytes);
    Require(vecEntries.size() <= uBytes / 4);
    for (const auto& st : vecEntries) g_fnFindInOffsetTree(pData, uBytes, st.m_szName, uValue);
    for (const char* szName : {"", "A", "FPS", "FPS_AVG", "GPU_CLK#0", "GPU_CLK#1"})
        g_fnFindInOffsetTree(pData, uBytes, szName, uValue);
    g_fnFindInOffsetTree(pData, uBytes, {reinterpret_cast<const char*>(pData), uBytes}, uValue);
    const bool bNothing = g_fnOffsetTreeValuesStart(pData, uBytes) < g_uOffsetTreeHeaderBytes;
    Require(!bNothing || vecEntries.empty());
}

/// Names end at zeros of the input; each has its place as value.
Names NamesOf(const u8* pData, u32 uBytes) {
    Names mapNames;
    std::string szName;
    for (u32 u = 0; u < uBytes; ++u) {
        if (pData[u])
            szName.push_back(static_cast<char>(pData[u]));
        else
            mapNames[std::move(szName)] = u, szName.clear();
    }
    mapNames[szName] = uBytes;
    return mapNames;
}

void WriteAndReadBack(const Names& mapNames) {
    const std::vector<u8> vec = g_fnSerializeOffsetTree(mapNames, g_uDataTableBytes);
    const u32 uBytes = static_cast<u32>(vec.size());
    if (uBytes == 4) return Require(mapNames.empty() || mapNames.size() > 255);
    u32 uValue = 0;
    for (const auto& [szName, uWritten] : mapNames)
        Require(g_fnFindInOffsetTree(vec.data(), uBytes, szName, uValue) && uValue == uWritten);
    const auto vecEntries = g_fnListOffsetTree(vec.data(), uBytes);
    Require(vecEntries.size() == mapNames.size());
    Require(g_fnSerializeOffsetTree(mapNames, uBytes) == vec);
    Require(g_fnSerializeOffsetTree(mapNames, uBytes - 1).size() == 4);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const u8* pData, std::size_t uBytes) {
    if (uBytes > g_uDataTableBytes) return 0;
    ReadBank(pData, static_cast<u32>(uBytes));
    if (uBytes <= 4096) WriteAndReadBack(NamesOf(pData, static_cast<u32>(uBytes)));
    return 0;
}
