#include "frame/parts.h"

stParts g_stParts;
