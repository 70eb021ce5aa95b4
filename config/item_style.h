#pragma once
// The colours that text-like items share.
#include "platform/types.h"

/// Text and shadow colour; a byte alpha is kept through whole percent, so 128 becomes 127 and 1 becomes 0.
struct stItemColors {
    u8 m_u8TextR = 0, m_u8TextG = 0, m_u8TextB = 0;
    u8 m_u8TextOpacity = 0; ///< percent
    u8 m_u8TextA = 0;
    u8 m_u8ShadowR = 0, m_u8ShadowG = 0, m_u8ShadowB = 0;
    u8 m_u8ShadowOpacity = 0; ///< percent
    u8 m_u8ShadowA = 0;
};
