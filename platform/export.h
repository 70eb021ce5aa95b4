#pragma once
// Marks what the library exports. On Win32 the .def file is the one list of exported names, so the mark is
// empty there; elsewhere everything else is hidden and the mark makes a name visible.
#ifdef _WIN32
#define ORVIN_EXPORT
#else
#define ORVIN_EXPORT __attribute__((visibility("default")))
#endif
