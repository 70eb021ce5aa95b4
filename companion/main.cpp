#include "companion/commands.h"
#include "companion/utf.h"
#include "platform/tool.h"
#include <cstdio>
#include <exception>

int main(int argc, char** argv) {
    try {
        return companion::Main(platform::tool::Arguments(argc, argv));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "orvin-osd: %s\n", companion::Printable(error.what()).c_str());
        return companion::kFailed;
    }
}
