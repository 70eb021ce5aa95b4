#include "companion/os.h"
#include "companion/profile_tool/tool.h"
#include <cstdio>
#include <exception>

int main(int argc, char** argv) {
    try {
        return companion::ToolMain(companion::os::Arguments(argc, argv));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "orvin-profile: %s\n", error.what());
        return companion::kFailed;
    }
}
