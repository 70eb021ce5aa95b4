#include "config/fixed/info_place.h"

stInfoPlace g_stInfoPlace;
