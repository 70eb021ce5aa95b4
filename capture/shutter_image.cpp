#include "capture/shutter.h"

void g_fnShowShutter(const stShutterView&) {}
