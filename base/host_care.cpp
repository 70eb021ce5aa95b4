#include "base/host_care.h"

stHostCare g_stHostCare;
