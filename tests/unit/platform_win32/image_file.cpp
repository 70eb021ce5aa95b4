#include "tests/unit/platform_win32/image_file.h"

std::string LibraryPath() { return "Z:" ORVIN_BINARY_DIR "/bin/ORVIN-OSD64-GL.dll"; }
