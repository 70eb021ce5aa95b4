#include "tools/profile/temp_folder.h"
#include "companion/profile_folder.h"
#include "platform/tool.h"
#include <system_error>

namespace fs = std::filesystem;

namespace companion {

TempFolder::~TempFolder() {
    std::error_code error;
    if (!m_path.empty()) fs::remove_all(m_path, error);
}

Result TempFolder::Make() {
    const fs::path pathTemp = PathOfText(platform::tool::TempFolder());
    std::error_code error;
    for (u32 u = 0; u < 100; ++u) {
        m_path =
            pathTemp / ("orvin-" + std::to_string(platform::tool::OwnProcessId()) + "-" + std::to_string(u));
        if (fs::create_directory(m_path, error)) return {};
    }
    m_path.clear();
    return Result::Fail("cannot make a folder in " + TextOfPath(pathTemp) + ": " + error.message());
}

} // namespace companion
