#include "companion/os.h"
#include "companion/utf.h"
#include "tools/profile/program.h"
#include <cstdio>
#include <exception>

int main(int argc, char** argv) {
    try {
        return companion::ToolMain(companion::os::Arguments(argc, argv));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "orvin-profile: %s\n", companion::Printable(error.what()).c_str());
        return companion::kFailed;
    }
}
