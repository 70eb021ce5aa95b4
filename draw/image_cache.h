#pragma once
// Raw pictures: 16 bytes (width, height, format code, frame count, each low byte first), then the pixels of
// the first frame, rows packed and from the top. Nothing here writes them.
#include "draw/texture.h"

#include <cstdio>

/// Work of CTexture_Base::m_fnLoadCache.
bool g_fnLoadImageCache(CTexture_Base& texture) noexcept;
/// g_fnLoadImageCache from any file, for those who have one open.
bool g_fnReadImageCache(CTexture_Base& texture, std::FILE* pFile);
