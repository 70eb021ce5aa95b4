#include "companion/recording/output_file.h"
#include "companion/profile_folder.h"
#include "companion/utf.h"
#include <cerrno>
#include <system_error>

namespace companion::recording {

Result OutputFile::Open(const std::string& strPath, bool bForce) {
    m_strPath = strPath;
    const std::filesystem::path path = PathOfText(strPath);
    std::error_code error;
    if (!bForce && std::filesystem::is_regular_file(path, error))
        return Result::Fail(Printable(strPath) + " exists; --force writes over it");
    errno = 0;
    m_file.open(path, std::ios::binary | std::ios::trunc);
    return m_file ? Result{} : Why();
}

Result OutputFile::Write(const std::string& strText) {
    errno = 0;
    m_file.write(strText.data(), static_cast<std::streamsize>(strText.size()));
    if (!m_file.flush()) return Abandon();
    m_bBegun = true;
    return {};
}

Result OutputFile::Abandon() {
    const Result st = Why();
    const std::filesystem::path path = PathOfText(m_strPath);
    std::error_code error;
    if (!m_bBegun && std::filesystem::is_regular_file(path, error)) {
        m_file.close();
        std::filesystem::remove(path, error);
    }
    return st;
}

Result OutputFile::Close() {
    errno = 0;
    m_file.close();
    return m_file ? Result{} : Why();
}

Result OutputFile::Why() const {
    const std::string strWhy = errno ? ": " + std::generic_category().message(errno) : "";
    return Result::Fail("cannot write " + Printable(m_strPath) + strWhy);
}

std::string PlainFileName(const std::string& strProgram) {
    std::string str = strProgram.empty() ? "program" : strProgram;
    for (char& c : str)
        if (static_cast<unsigned char>(c) < 32 || std::string("<>:\"/\\|?* ").find(c) != std::string::npos)
            c = '-';
    return str;
}

} // namespace companion::recording
