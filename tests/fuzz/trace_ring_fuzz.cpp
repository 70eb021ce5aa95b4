// The input as the block of an instance, read several times while its counter and its frames change.
#include "companion/recording/live_figures.h"
#include "companion/recording/trace_ring.h"
#include <cstdlib>
#include <cstring>

using namespace companion::recording;

extern "C" int LLVMFuzzerTestOneInput(const u8* pData, std::size_t uBytes) {
    // The head's fields first, then frames; the rest of the head is zeros.
    constexpr std::size_t uFrames = 8, uFields = 64;
    std::vector<u8> vec(g_uTraceHeaderBytes + uFrames * sizeof(stTraceFrame));
    std::memcpy(vec.data(), pData, std::min(uBytes, uFields));
    if (uBytes > uFields + 8) std::memcpy(vec.data() + offsetof(stTraceHeader, szVendor), pData + uFields, 8);
    const auto stHead = ReadTraceHead(vec.data(), vec.size());
    if (!stHead) return 0;
    TraceRing ring;
    LiveFigures live;
    ring.Begin(vec.data(), *stHead);
    for (std::size_t u = uFields; u + 12 <= uBytes; u += 12) {
        std::memcpy(vec.data() + offsetof(stTraceHeader, uWritten), pData + u, 2);
        if (pData[u + 2] == 255) std::memset(vec.data() + offsetof(stTraceHeader, uWritten), 255, 8);
        const std::size_t uAt = pData[u + 3] % (uFrames * sizeof(stTraceFrame) / 8) * 8;
        std::memcpy(vec.data() + g_uTraceHeaderBytes + uAt, pData + u + 4, 8);
        std::vector<stTraceFrame> list;
        ring.Read(pData[u] & 1, list);
        if (list.size() > uFrames) std::abort();
        for (std::size_t i = 1; i < list.size(); ++i)
            if (list[i].uNumber <= list[i - 1].uNumber || list[i].iBefore < list[i - 1].iBefore) std::abort();
        live.Take(list, stHead->iFrequency);
        live.Readings();
    }
    return 0;
}
