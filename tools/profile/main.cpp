#include "companion/utf.h"
#include "platform/tool.h"
#include "tools/profile/program.h"
#include <cstdio>
#include <exception>

int main(int argc, char** argv) {
    try {
        return companion::ToolMain(platform::tool::Arguments(argc, argv));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "orvin-profile: %s\n", companion::Printable(error.what()).c_str());
        return companion::kFailed;
    }
}
