#include "platform/tool_shot.h"
#include <dlfcn.h>
#include <filesystem>
#include <unistd.h>

namespace platform::tool {

bool HasHeifEncoder() {
    void* const pLibrary = dlopen("libheif.so.1", RTLD_NOW | RTLD_LOCAL);
    const auto fnHas =
        reinterpret_cast<int (*)(int)>(pLibrary ? dlsym(pLibrary, "heif_have_encoder_for_format") : nullptr);
    constexpr int iHevc = 1;
    return fnHas && fnHas(iHevc) != 0;
}

bool IsFolder(const std::string& strPath) {
    std::error_code error;
    return std::filesystem::is_directory(strPath, error);
}

bool CanWriteTo(const std::string& strFolder) { return access(strFolder.c_str(), W_OK | X_OK) == 0; }

} // namespace platform::tool
