#include "draw/draw_keys.h"

static const char g_cColorIdentity = 0;
static const char g_cTextureIdentity = 0;
static const char g_acBlurIdentity[g_uMaxBlurDiameter + 1] = {};

static constexpr auto BlurKeys() {
    std::array<DrawKey, g_uMaxBlurDiameter + 1> aKeys{};
    for (u32 i = 0; i <= g_uMaxBlurDiameter; ++i) aKeys[i] = &g_acBlurIdentity[i];
    return aKeys;
}

constinit const DrawKey g_keyColorList = &g_cColorIdentity;
constinit const DrawKey g_keyTextureList = &g_cTextureIdentity;
constinit const std::array<DrawKey, g_uMaxBlurDiameter + 1> g_keyBlurByDiameter = BlurKeys();
constinit const DrawKey g_keyBlurList = &g_acBlurIdentity[g_uDefaultBlurDiameter];

std::map<u32, u32> g_mapBlurDiameters;
