#include "platform/linux/font_output.h"

#include <cstdio>

extern "C" {
/// Stand for the output streams of the C library in the linked libraries (cmake/third_party.cmake).
extern std::FILE *g_pFontOutput, *g_pFontErrors;
std::FILE *g_pFontOutput = nullptr, *g_pFontErrors = nullptr;
}

namespace platform {

static ssize_t Drop(void*, const char*, size_t uBytes) { return static_cast<ssize_t>(uBytes); }

bool OpenFontOutput() noexcept {
    if (!g_pFontOutput) g_pFontOutput = fopencookie(nullptr, "w", {nullptr, &Drop, nullptr, nullptr});
    g_pFontErrors = g_pFontOutput;
    return g_pFontOutput != nullptr;
}

} // namespace platform
