#include "companion/target.h"
#include "companion/utf.h"
#include "platform/tool.h"
#include <charconv>
#include <vector>

namespace companion {

bool ParseProcessId(const std::string& strText, u32& uProcessId) {
    const char* pEnd = strText.data() + strText.size();
    const auto [pStop, eError] = std::from_chars(strText.data(), pEnd, uProcessId);
    return eError == std::errc() && pStop == pEnd && uProcessId != 0;
}

Result ResolveTarget(const std::string& strTarget, u32& uProcessId) {
    if (ParseProcessId(strTarget, uProcessId)) return {};
    const std::vector<u32> listFound = platform::tool::FindProcesses(strTarget);
    if (listFound.empty()) return Result::NotFound("no process is named " + Printable(strTarget));
    if (listFound.size() > 1) {
        std::string strIds;
        for (const u32 uId : listFound) strIds += " " + std::to_string(uId);
        return Result::Fail("several processes are named " + Printable(strTarget) + ":" + strIds);
    }
    uProcessId = listFound.front();
    return {};
}

} // namespace companion
