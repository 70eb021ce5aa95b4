// Linux: the segment is a POSIX shared object, programs are entered by preloading.
#include "platform/tool.h"
#include "platform/linux/data_folder.h"
#include "platform/linux/tool_holder.h"
#include "platform/tool_bytes.h"
#include <cerrno>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <fstream>
#include <sstream>
#include <sys/stat.h>
#include <unistd.h>

namespace platform::tool {
namespace {

constexpr const char* kPreloadName = "libORVIN-OSD64-GL-preload.so";

std::string ReadLink(const std::string& strPath) {
    char szTarget[4096];
    const ssize_t iLength = readlink(strPath.c_str(), szTarget, sizeof(szTarget));
    return iLength > 0 ? std::string(szTarget, static_cast<size_t>(iLength)) : std::string();
}

std::string FilePart(const std::string& strPath) { return strPath.substr(strPath.rfind('/') + 1); }

std::string FolderPart(const std::string& strPath) {
    const size_t uSlash = strPath.rfind('/');
    return uSlash == std::string::npos ? "." : strPath.substr(0, uSlash);
}

std::string ProcPath(u32 uProcessId, const char* szEntry) {
    return "/proc/" + std::to_string(uProcessId) + "/" + szEntry;
}

/// The kernel's name of the process, at most 15 characters.
std::string ShortName(u32 uProcessId) {
    std::string strName;
    std::ifstream file(ProcPath(uProcessId, "comm"));
    std::getline(file, strName);
    return strName;
}

/// File part of the image, or the kernel's short name where the link may not be read.
std::string NameOf(u32 uProcessId) {
    std::string strImage = ReadLink(ProcPath(uProcessId, "exe"));
    constexpr std::string_view strDeleted = " (deleted)";
    if (strImage.ends_with(strDeleted)) strImage.resize(strImage.size() - strDeleted.size());
    if (!strImage.empty()) return FilePart(strImage);
    return ShortName(uProcessId);
}

std::string Reason() { return std::strerror(errno); }

/// A file descriptor that closes itself.
class Descriptor {
  public:
    explicit Descriptor(int iFile) : m_iFile(iFile) {}
    ~Descriptor() {
        if (m_iFile >= 0) close(m_iFile);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int Get() const { return m_iFile; }

  private:
    int m_iFile;
};

bool PreloadsCleanly(const std::string& strPath) {
    return strPath.find_first_of(" :\t") == std::string::npos;
}

std::string PreloadPart(const std::string& strLibrary) {
    const std::string strFolder = FolderPart(strLibrary);
    char* szFolder = realpath(strFolder.c_str(), nullptr);
    const std::string strPreload = JoinPath(szFolder != nullptr ? szFolder : strFolder, kPreloadName);
    std::free(szFolder);
    return strPreload;
}

/// Puts the preload part ahead of what the programs to come preload already.
Result Preload(const std::string& strLibrary) {
    const Result stCan = CanRunWithOverlay(strLibrary);
    if (!stCan) return stCan;
    const std::string strPreload = PreloadPart(strLibrary);
    const char* szBefore = std::getenv("LD_PRELOAD");
    const bool bBefore = szBefore != nullptr && *szBefore != '\0';
    setenv("LD_PRELOAD", (strPreload + (bBefore ? ":" + std::string(szBefore) : "")).c_str(), 1);
    return {};
}

} // namespace

std::vector<std::string> Arguments(int argc, char** argv) {
    // Whoever starts us may have closed the three standard files. The next file that is opened would be one
    // of them, and what is printed would go into the segment.
    int iFile = 0;
    while ((iFile = open("/dev/null", O_RDWR)) >= 0 && iFile <= STDERR_FILENO) {
    }
    if (iFile >= 0) close(iFile);
    return {argv + (argc > 0 ? 1 : 0), argv + argc};
}

std::string OwnFolder() { return FolderPart(ReadLink("/proc/self/exe")); }
std::string OwnName() { return FilePart(ReadLink("/proc/self/exe")); }
u32 OwnProcessId() { return static_cast<u32>(getpid()); }
const char* LibraryName() { return "libORVIN-OSD64-GL.so"; }

std::string JoinPath(const std::string& strFolder, const std::string& strFile) {
    return strFolder + "/" + strFile;
}

bool FileExists(const std::string& strPath) { return access(strPath.c_str(), F_OK) == 0; }

std::string CommonDataFolder() {
    char szFolder[4096];
    return host::DataFolder(szFolder, sizeof szFolder) ? szFolder : std::string();
}

std::string ConfigFolder() {
    if (const char* const szOwn = host::Variable("ORVIN_OSD_CONFIG")) return szOwn;
    if (const char* const szData = host::Variable("ORVIN_OSD_APPDATA")) return JoinPath(szData, "orvin-osd");
    if (const char* const szConfig = host::Variable("XDG_CONFIG_HOME"))
        return JoinPath(szConfig, "orvin-osd");
    const char* const szHome = host::Variable("HOME");
    return szHome ? JoinPath(szHome, ".config/orvin-osd") : std::string();
}

std::string TempFolder() {
    const char* szFolder = std::getenv("TMPDIR");
    return szFolder != nullptr && *szFolder != '\0' ? szFolder : "/tmp";
}

void* LoadSharedLibrary(const std::string& strPath, std::string& strError) {
    // A bare file name would send the loader through its search path.
    const std::string strFile = strPath.find('/') == std::string::npos ? "./" + strPath : strPath;
    void* hModule = dlopen(strFile.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (hModule == nullptr) {
        const char* szReason = dlerror();
        strError = szReason != nullptr ? szReason : "unknown reason";
    }
    return hModule;
}

void* FindExport(void* hModule, const char* szName) { return dlsym(hModule, szName); }

void SleepMilliseconds(u32 uMilliseconds) { usleep(uMilliseconds * 1000); }

ProcessFacts InspectProcess(u32 uProcessId) {
    ProcessFacts st;
    st.bExists = uProcessId != 0 && FileExists(ProcPath(uProcessId, "stat"));
    if (!st.bExists) return st;
    st.strName = NameOf(uProcessId);
    std::ifstream file(ProcPath(uProcessId, "maps"));
    std::stringstream maps;
    maps << file.rdbuf();
    ReadModuleFacts(maps.str(), st);
    return st;
}

std::vector<u32> FindProcesses(const std::string& strName) {
    std::vector<u32> listFound;
    DIR* pFolder = opendir("/proc");
    if (pFolder == nullptr) return listFound;
    while (const dirent* pEntry = readdir(pFolder)) {
        const std::string_view strEntry(pEntry->d_name);
        u32 uId = 0;
        const auto [pStop, eError] = std::from_chars(strEntry.data(), strEntry.data() + strEntry.size(), uId);
        if (eError != std::errc() || pStop != strEntry.data() + strEntry.size() || uId == OwnProcessId())
            continue;
        if (EqualFolded(NameOf(uId), strName) || EqualFolded(ShortName(uId), strName))
            listFound.push_back(uId);
    }
    closedir(pFolder);
    return listFound;
}

ApiClaim ReadApiClaim(u32 uProcessId) {
    const std::string strPath = "/dev/shm/[RV5-OSD][PID:" + std::to_string(uProcessId) + "]";
    // Anybody may put something of that name there, a pipe too, at which opening would wait.
    const Descriptor file(open(strPath.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    if (file.Get() < 0) return errno == ENOENT ? ApiClaim::None : ApiClaim::Unreadable;
    struct stat stInfo {};
    if (fstat(file.Get(), &stInfo) != 0 || !S_ISREG(stInfo.st_mode) || stInfo.st_uid != geteuid())
        return ApiClaim::Unreadable;
    char szTag[4] = {};
    if (pread(file.Get(), szTag, 3, 0) != 3) return ApiClaim::Unreadable;
    return ClaimOfTag(szTag);
}

Result CanRunWithOverlay(const std::string& strLibrary) {
    const std::string strPreload = PreloadPart(strLibrary);
    if (!FileExists(strPreload)) return Result::NotFound("the preload part is not at " + strPreload);
    if (PreloadsCleanly(strPreload)) return {};
    return Result::Fail("a path with blanks or colons cannot be preloaded: " + strPreload);
}

bool RunNeedsLibrary() { return false; }

Result Run(const RunRequest& stRequest, const EnteringLibrary&, int&) {
    const Result stReady = stRequest.bBare ? Result{} : Preload(stRequest.strLibrary);
    if (!stReady) return stReady;
    RemoveDeadClaims();
    if (stRequest.fnAhead) stRequest.fnAhead(OwnProcessId()); // which the program takes over
    if (!stRequest.bBare) HoldSegmentFor(OwnProcessId());
    std::vector<char*> listWords{const_cast<char*>(stRequest.strProgram.c_str())};
    for (const std::string& strWord : stRequest.listArguments)
        listWords.push_back(const_cast<char*>(strWord.c_str()));
    listWords.push_back(nullptr);
    execvp(stRequest.strProgram.c_str(), listWords.data());
    const std::string strWhy = "cannot start " + stRequest.strProgram + ": " + Reason();
    return errno == ENOENT ? Result::NotFound(strWhy) : Result::Fail(strWhy);
}

Result CanEnterRunningPrograms() {
    return Result::Fail("a running program cannot be entered on this system; start it with "
                        "'orvin-osd run -- PROGRAM' instead");
}

Result Attach(u32, bool, const EnteringLibrary&) { return CanEnterRunningPrograms(); }
Result Hook(const EnteringLibrary&, const std::function<void()>&) { return CanEnterRunningPrograms(); }
Result Unhook() { return CanEnterRunningPrograms(); }

} // namespace platform::tool
