#include "companion/foreign_overlays.h"
#include <algorithm>
#include <iterator>

namespace companion {
namespace {

// The library's own table, repeated since the companion does not link the library; a test compares the two.
constexpr std::string_view kOverlays[] = {"IGO64.dll",
                                          "IGO32.dll",
                                          "DiscordHook.dll",
                                          "DiscordHook64.dll",
                                          "GameOverlayRenderer.dll",
                                          "GameOverlayRenderer64.dll",
                                          "steam_api64.dll",
                                          "steam_api.dll",
                                          "d3d9_smaa.dll",
                                          "DiscordOverlay.dll",
                                          "DiscordOverlay64.dll",
                                          "NahimicOSD.dll"};

char Folded(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; }

} // namespace

bool EqualFolded(std::string_view strA, std::string_view strB) {
    return std::equal(strA.begin(), strA.end(), strB.begin(), strB.end(),
                      [](char a, char b) { return Folded(a) == Folded(b); });
}

std::size_t ForeignOverlayCount() { return std::size(kOverlays); }

bool IsForeignOverlay(std::string_view strFile) {
    return std::any_of(std::begin(kOverlays), std::end(kOverlays),
                       [&](std::string_view strOverlay) { return EqualFolded(strOverlay, strFile); });
}

} // namespace companion
