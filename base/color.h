#pragma once
// A colour as profiles and records hand it on.
#include "platform/types.h"

struct stColor {
    u8 u8R = 0, u8G = 0, u8B = 0, u8A = 0;
};
