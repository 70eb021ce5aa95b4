#include "shared/api_code.h"

u32 g_uApiCode = 0;
char16_t g_wzApiName[32] = u"";
