#include "platform/log.h"
#include "platform/win32/windows_api.h"

namespace platform {

void WriteLogLine(const char* szLine) noexcept { OutputDebugStringA(szLine); }

void ShowMessageBox(const char16_t* wzText, const char* szTitle) noexcept {
    wchar_t wzTitle[260] = {};
    MultiByteToWideChar(CP_ACP, 0, szTitle, -1, wzTitle, 259);
    MessageBoxW(nullptr, reinterpret_cast<const wchar_t*>(wzText), wzTitle, MB_OK | MB_ICONERROR);
}

} // namespace platform
