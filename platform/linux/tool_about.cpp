// Linux: the machine in words, from the files that say it.
#include "platform/tool_about.h"
#include <cstdlib>
#include <fstream>
#include <pwd.h>
#include <sys/utsname.h>
#include <unistd.h>

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

std::string HomeFolder() {
    const char* const szHome = secure_getenv("HOME");
    const passwd* const pUser = getpwuid(getuid());
    std::string strHome = szHome && *szHome ? szHome : pUser && pUser->pw_dir ? pUser->pw_dir : "";
    while (strHome.size() > 1 && strHome.back() == '/') strHome.pop_back();
    return strHome == "/" ? "" : strHome;
}

std::vector<std::string> PersonNames() {
    std::vector<std::string> listNames;
    const passwd* const pUser = getpwuid(getuid());
    const std::string strFull = pUser && pUser->pw_gecos ? pUser->pw_gecos : "";
    listNames.push_back(strFull.substr(0, strFull.find(',')));
    if (pUser && pUser->pw_name) listNames.emplace_back(pUser->pw_name);
    for (const char* const szVariable : {"USER", "LOGNAME"})
        if (const char* const szName = secure_getenv(szVariable)) listNames.emplace_back(szName);
    return listNames;
}

std::string ProcessorText() { return Behind("/proc/cpuinfo", "model name", ':'); }

} // namespace platform::tool
