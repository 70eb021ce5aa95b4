#include "config/items/interner.h"

#include <array>
#include <map>
#include <string>

namespace {

constexpr std::size_t g_uBuckets = 4;

std::array<std::map<std::string, u64, std::less<>>, g_uBuckets> g_aNames;
u64 g_u64NextId = 1;

/// Sum of the bytes as signed numbers: text beyond ASCII may give a negative one.
std::size_t BucketOf(std::string_view szText) {
    i64 iSum = 0;
    for (const char c : szText) iSum += static_cast<i8>(c);
    // A negative remainder shares the fourth bucket with 0.
    const i64 iRest = iSum % static_cast<i64>(g_uBuckets);
    return iRest > 0 ? static_cast<std::size_t>(iRest - 1) : g_uBuckets - 1;
}

} // namespace

u64 g_fnInternName(const char* szText) {
    const std::string_view szName = szText ? szText : "";
    auto& names = g_aNames[BucketOf(szName)];
    if (const auto it = names.find(szName); it != names.end()) return it->second;
    names.emplace(szName, g_u64NextId);
    return g_u64NextId++;
}
