#include "platform/log.h"
#include "platform/utf.h"
#include <cstring>
#include <unistd.h>

namespace platform {
namespace {

void WriteError(const char* szText) noexcept {
    [[maybe_unused]] const ssize_t iWritten = write(STDERR_FILENO, szText, std::strlen(szText));
}

} // namespace

void WriteLogLine(const char* szLine) noexcept {
    WriteError(szLine);
    WriteError("\n");
}

void ShowMessageBox(const char16_t* wzText, const char* szTitle) noexcept {
    char szText[2048];
    WriteError(szTitle ? szTitle : "");
    WriteError(": ");
    WriteError(Utf16ToUtf8(wzText, szText, sizeof szText) ? szText : "");
    WriteError("\n");
}

} // namespace platform
