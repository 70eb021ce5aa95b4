#pragma once
// What may stand in a file's place and is none that should be read: for the tests of readers.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>

/// Puts each kind in turn at a path (UTF-8), calls the function with its name, and takes it away again.
inline void ForEachOddFile(const std::string& strPath, const std::function<void(const char*)>& fnTest) {
    namespace fs = std::filesystem;
    const fs::path path(std::u8string(strPath.begin(), strPath.end()));
    const auto run = [&](const char* szKind) {
        fnTest(szKind);
        fs::remove_all(path);
    };
    fs::remove_all(path);
    fs::create_directories(path);
    run("folder");
    if (fs::path::preferred_separator != '/') return; // the others have no like under Windows
    if (std::system(("mkfifo '" + strPath + "'").c_str()) == 0) run("pipe that nobody writes to");
    fs::create_symlink("/dev/zero", path);
    run("device without an end");
    std::ofstream{path}.flush();
    fs::resize_file(path, 4ull << 30);
    run("file of 4 GiB that takes no room");
}
