#include "platform/tool_shot.h"
#include "platform/win32/image_com.h"
#include "platform/win32/tool.h"

namespace platform::tool {

bool HasHeifEncoder() {
    const com::CCom stCom;
    com::CRef<IWICImagingFactory> factory;
    com::CRef<IWICBitmapEncoder> encoder;
    return SUCCEEDED(com::MakeFactory(factory)) &&
           SUCCEEDED(factory->CreateEncoder(GUID_ContainerFormatHeif, nullptr, encoder.Out()));
}

bool IsFolder(const std::string& strPath) {
    const DWORD uWhat = GetFileAttributesW(ToWide(strPath).c_str());
    return uWhat != INVALID_FILE_ATTRIBUTES && (uWhat & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

/// Whether a file can be made there only a trial tells.
bool CanWriteTo(const std::string& strFolder) {
    const std::wstring wstrFile =
        ToWide(strFolder) + L"\\orvin-osd." + std::to_wstring(GetCurrentProcessId()) + L".try";
    const HANDLE hFile = CreateFileW(wstrFile.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                     FILE_FLAG_DELETE_ON_CLOSE, nullptr);
    if (hFile == INVALID_HANDLE_VALUE) return false;
    CloseHandle(hFile);
    return true;
}

} // namespace platform::tool
