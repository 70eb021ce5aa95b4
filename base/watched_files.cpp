#include "base/watched_files.h"

#include "platform/file_stamp.h"
#include "platform/folders.h"

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace {

constexpr std::size_t c_uFilesMax = 256;
constexpr u32 c_uPathBytes = 4096;

struct stWatchedFile {
    std::string szPath;
    platform::FileStamp stStamp;
};
std::vector<stWatchedFile> g_vecWatched;

} // namespace

void g_fnWatchFile(const char* szPath) noexcept try {
    const platform::FileStamp stStamp = platform::StampOfFile(szPath);
    const auto it = std::find_if(g_vecWatched.begin(), g_vecWatched.end(),
                                 [&](const stWatchedFile& st) { return st.szPath == szPath; });
    if (it != g_vecWatched.end())
        it->stStamp = stStamp;
    else if (g_vecWatched.size() < c_uFilesMax)
        g_vecWatched.push_back({szPath, stStamp});
} catch (...) { // no memory: the pause ends by itself
}

void g_fnWatchFile(const char16_t* wzPath) noexcept try {
    const auto pPath = std::make_unique<char[]>(c_uPathBytes);
    if (platform::NarrowPath(wzPath, pPath.get(), c_uPathBytes)) g_fnWatchFile(pPath.get());
} catch (...) { // no memory
}

bool g_fnHaveWatchedFilesChanged() noexcept {
    return std::any_of(g_vecWatched.begin(), g_vecWatched.end(), [](const stWatchedFile& st) {
        return platform::StampOfFile(st.szPath.c_str()) != st.stStamp;
    });
}

void g_fnForgetWatchedFiles() noexcept { g_vecWatched.clear(); }
