#include "config/settings/settings.h"

stSettings g_stSettings;
u32 g_uCapMode = 2;
u32 g_uCapType = 2;
char16_t g_wzShotFolder[g_uDataPathCapacity] = {};
