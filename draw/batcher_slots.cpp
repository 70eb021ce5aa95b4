#include "draw/batcher_slots.h"

CDrawBasic_Base* g_apDrawBasic[g_uManagerSlots] = {};
CDrawText_Base* g_apDrawText[g_uManagerSlots] = {};
CDrawBasic_Base* g_pDrawBasic = nullptr;
CDrawText_Base* g_pDrawText = nullptr;
