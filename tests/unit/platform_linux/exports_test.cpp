// What the two shared objects show to the host: the listed names and nothing else, and no GL or X library of
// their own.
#include <cstdio>
#include <fstream>
#include <gtest/gtest.h>
#include <memory>
#include <set>
#include <sstream>
#include <string>

namespace {

std::string Output(const std::string& strCommand) {
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> pPipe(popen(strCommand.c_str(), "r"), &pclose);
    std::string str;
    char sz[4096];
    while (pPipe && std::fgets(sz, sizeof sz, pPipe.get())) str += sz;
    return str;
}

std::string Product(const char* szName) { return std::string(ORVIN_BINARY_DIR) + "/bin/" + szName; }

std::set<std::string> Exported(const char* szProduct) {
    std::istringstream lines(Output("nm -D --defined-only --format=posix '" + Product(szProduct) + "'"));
    std::set<std::string> setNames;
    for (std::string strLine; std::getline(lines, strLine);)
        setNames.insert(strLine.substr(0, strLine.find(' ')));
    return setNames;
}

std::set<std::string> Listed(const char* szMap) {
    std::ifstream file(std::string(ORVIN_SOURCE_DIR) + "/platform/linux/" + szMap);
    std::set<std::string> setNames;
    for (std::string strLine; std::getline(file, strLine) && strLine.find("local:") == std::string::npos;)
        if (const auto uEnd = strLine.find(';'); uEnd != std::string::npos)
            setNames.insert(
                strLine.substr(strLine.find_first_not_of(' '), uEnd - strLine.find_first_not_of(' ')));
    return setNames;
}

/// Libraries that belong to the C library or, under a sanitizer, to the compiler.
bool NeedsOnlyTheSystem(const char* szProduct) {
    std::istringstream lines(Output("readelf -d '" + Product(szProduct) + "' | grep NEEDED"));
    for (std::string strLine; std::getline(lines, strLine);)
        for (const char* const szForeign :
             {"libGL", "libEGL", "libOpenGL", "libX", "libxcb", "libGLEW", "libfreetype", "libfontconfig"})
            if (strLine.find(szForeign) != std::string::npos) return false;
    return true;
}

TEST(LinuxProducts, LibraryExportsTheListedNamesOnly) {
    ASSERT_EQ(Listed("exports.map").size(), 23u);
    EXPECT_EQ(Exported("libORVIN-OSD64-GL.so"), Listed("exports.map"));
}

TEST(LinuxProducts, PreloadedPartExportsWhatItInterposesOnly) {
    ASSERT_EQ(Listed("preload.map").size(), 11u);
    EXPECT_EQ(Exported("libORVIN-OSD64-GL-preload.so"), Listed("preload.map"));
}

TEST(LinuxProducts, NeitherPullsAWindowSystemIn) {
    EXPECT_TRUE(NeedsOnlyTheSystem("libORVIN-OSD64-GL.so"));
    EXPECT_TRUE(NeedsOnlyTheSystem("libORVIN-OSD64-GL-preload.so"));
}

/// Names that a product looks for in other libraries.
std::set<std::string> Imported(const char* szProduct) {
    std::istringstream lines(Output("nm -D --undefined-only --format=posix '" + Product(szProduct) + "'"));
    std::set<std::string> setNames;
    for (std::string strLine; std::getline(lines, strLine);)
        setNames.insert(strLine.substr(0, strLine.find_first_of(" @")));
    return setNames;
}

// Other threads may swap while exit() runs what was registered.
TEST(LinuxProducts, NothingOfTheirsIsDestroyedAtTheEndOfAProcess) {
    for (const char* const szProduct : {"libORVIN-OSD64-GL.so", "libORVIN-OSD64-GL-preload.so"}) {
        const auto setNames = Imported(szProduct);
        EXPECT_TRUE(setNames.contains("dlopen"));
        for (const char* const szName :
             {"__cxa_atexit", "atexit", "on_exit", "__cxa_thread_atexit", "__cxa_thread_atexit_impl"})
            EXPECT_FALSE(setNames.contains(szName)) << szProduct << ' ' << szName;
    }
}

} // namespace
