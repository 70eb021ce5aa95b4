#include "platform/linux/image_target.h"
#include "platform/folders.h"

#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <memory>
#include <new>
#include <sys/stat.h>
#include <unistd.h>

namespace platform::image {
namespace {

constexpr u32 c_uPathRoom = 4096;
constexpr int c_iFlags = O_RDWR | O_CLOEXEC | O_NOCTTY;
constexpr mode_t c_uMode = 0666; // less what the process masks

std::string Narrow(const char16_t* wzPath) {
    const std::unique_ptr<char[]> pPath(new char[c_uPathRoom]); // the thread's stack may be small
    return NarrowPath(wzPath, pPath.get(), c_uPathRoom) ? pPath.get() : std::string();
}

std::string FolderOf(const std::string& strPath) {
    const std::size_t uSlash = strPath.rfind('/');
    return uSlash == std::string::npos ? "." : strPath.substr(0, uSlash + 1);
}

/// True for a name that is free, or that a plain file has.
bool IsForPlainFile(const std::string& strPath) {
    struct stat stFile {};
    return lstat(strPath.c_str(), &stFile) != 0 ? errno == ENOENT : S_ISREG(stFile.st_mode);
}

} // namespace

CImageTarget::~CImageTarget() {
    if (m_pFile) std::fclose(m_pFile);
    if (!m_strDraft.empty()) unlink(m_strDraft.c_str());
}

/// Another one each time: two pictures of one name may be written at once.
std::string CImageTarget::Draft() const {
    static std::atomic<u32> s_uDrafts{0};
    return m_strPath + "." + std::to_string(getpid()) + "-" + std::to_string(++s_uDrafts) + ".part";
}

bool CImageTarget::Take(int iFile, Kind eKind) {
    if (iFile < 0) return false;
    m_eKind = eKind;
    m_pFile = fdopen(iFile, "wb+");
    if (!m_pFile) close(iFile);
    return m_pFile != nullptr;
}

/// A file without a name gets one by way of its entry in /proc, which a closed room may lack.
bool CImageTarget::OpenPlain(const std::string& strFolder) {
    if (access("/proc/self/fd", X_OK) == 0 &&
        Take(open(strFolder.c_str(), c_iFlags | O_TMPFILE, c_uMode), Kind::Nameless))
        return true;
    m_strDraft = Draft();
    const int iFile = open(m_strDraft.c_str(), c_iFlags | O_CREAT | O_EXCL, c_uMode);
    if (iFile < 0) m_strDraft.clear();
    return Take(iFile, Kind::Draft);
}

bool CImageTarget::Open(const char16_t* wzPath) noexcept try {
    m_strPath = Narrow(wzPath);
    if (m_strPath.empty()) return false;
    if (IsForPlainFile(m_strPath)) return OpenPlain(FolderOf(m_strPath));
    return Take(open(m_strPath.c_str(), c_iFlags | O_CREAT | O_TRUNC | O_NONBLOCK, c_uMode), Kind::InPlace);
} catch (...) { // no memory
    return false;
}

/// The file gets the name that it is for, or a draft's if that is taken.
bool CImageTarget::Link() noexcept try {
    const std::string strFile = "/proc/self/fd/" + std::to_string(fileno(m_pFile));
    const auto fnLink = [&](const std::string& strPath) {
        return linkat(AT_FDCWD, strFile.c_str(), AT_FDCWD, strPath.c_str(), AT_SYMLINK_FOLLOW) == 0;
    };
    if (fnLink(m_strPath)) return true;
    if (errno != EEXIST) return false;
    const std::string strDraft = Draft();
    if (!fnLink(strDraft)) return false;
    m_strDraft = strDraft;
    return true;
} catch (...) { // no memory
    return false;
}

bool CImageTarget::Rename() noexcept {
    if (rename(m_strDraft.c_str(), m_strPath.c_str()) != 0) return false;
    m_strDraft.clear();
    return true;
}

bool CImageTarget::Finish() noexcept {
    bool bWhole = std::fflush(m_pFile) == 0 && !std::ferror(m_pFile);
    if (m_eKind == Kind::Nameless) bWhole = bWhole && Link();
    bWhole = std::fclose(m_pFile) == 0 && bWhole;
    m_pFile = nullptr;
    return bWhole && (m_strDraft.empty() || Rename());
}

} // namespace platform::image
