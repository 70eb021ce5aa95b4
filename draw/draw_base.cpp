#include "draw/draw_base.h"

bool CDraw_Base::m_fnInitialize() { return true; }

void CDraw_Base::m_fnOnResize() {}

void CDraw_Base::m_fnBindVertexLayout(void*) {}

void CDraw_Base::m_fnSetDrawConstants(const stDrawConstants*) {}

void CDraw_Base::m_fnOnTextureBound(void*) {}

void CDraw_Base::m_fnSetWorld(const stDrawConstants*) {}

void CDraw_Base::m_fnSetColor(const stDrawConstants*) {}

void CDraw_Base::m_fnRender() {}

void CDraw_Base::m_fnReserved8() {}

void CDraw_Base::m_fnRelease() {}
