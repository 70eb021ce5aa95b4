// Linux: the machine in words, from the files that say it.
#include "platform/tool_about.h"
#include <fstream>
#include <sys/utsname.h>

namespace platform::tool {
namespace {

/// What stands behind the first line that begins so, without quotes; empty without one.
std::string Behind(const char* szFile, const std::string& strBegin, char cMark) {
    std::ifstream file(szFile);
    for (std::string strLine; std::getline(file, strLine);) {
        const size_t uMark = strLine.find(cMark);
        if (!strLine.starts_with(strBegin) || uMark == std::string::npos) continue;
        const size_t uFrom = strLine.find_first_not_of(" \t\"", uMark + 1);
        const size_t uLast = strLine.find_last_not_of(" \t\"");
        return uFrom == std::string::npos || uLast < uFrom ? "" : strLine.substr(uFrom, uLast + 1 - uFrom);
    }
    return {};
}

} // namespace

std::string SystemText() {
    std::string strName = Behind("/etc/os-release", "PRETTY_NAME", '=');
    utsname st{};
    if (uname(&st) != 0) return strName;
    if (!strName.empty()) strName += ", ";
    return strName + st.sysname + " " + st.release;
}

std::string ProcessorText() { return Behind("/proc/cpuinfo", "model name", ':'); }

} // namespace platform::tool
