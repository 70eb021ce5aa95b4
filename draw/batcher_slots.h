#pragma once
// The batchers of each manager slot and the pair of the current one; null while there are none.
#include "base/slots.h"

class CDrawBasic_Base;
class CDrawText_Base;

extern CDrawBasic_Base* g_apDrawBasic[g_uManagerSlots];
extern CDrawText_Base* g_apDrawText[g_uManagerSlots];
extern CDrawBasic_Base* g_pDrawBasic;
extern CDrawText_Base* g_pDrawText;
