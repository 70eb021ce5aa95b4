#include "companion/commands.h"
#include "companion/os.h"
#include <cstdio>
#include <exception>

int main(int argc, char** argv) {
    try {
        return companion::Main(companion::os::Arguments(argc, argv));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "orvin-osd: %s\n", error.what());
        return companion::kFailed;
    }
}
