#include "base/slots.h"

u32 g_uManagerSlot = 0;
