#include "draw/draw_keys.h"

#include <array>
#include <utility>

/// A byte for each key: colour, texture, then one for each diameter.
static constexpr char g_acIdentity[2 + g_uBlurKeyCount] = {};

template <std::size_t... uIndexes> struct stBlurKeys {
    static constexpr DrawKey aKeys[] = {&g_acIdentity[2 + uIndexes]...};
};
template <std::size_t... uIndexes> constexpr auto& MakeBlurKeys(std::index_sequence<uIndexes...>) {
    return stBlurKeys<uIndexes...>::aKeys;
}

constinit const DrawKey g_keyColorList = &g_acIdentity[0];
constinit const DrawKey g_keyTextureList = &g_acIdentity[1];
constinit const DrawKey (&g_keyBlurByDiameter)[g_uBlurKeyCount] =
    MakeBlurKeys(std::make_index_sequence<g_uBlurKeyCount>());
constinit const DrawKey g_keyBlurList = &g_acIdentity[2 + g_uDefaultBlurDiameter];

std::map<u32, u32> g_mapBlurDiameters;
