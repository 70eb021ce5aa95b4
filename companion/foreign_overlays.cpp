#include "companion/foreign_overlays.h"

#include "shared/foreign_overlays.h"
#include <algorithm>
#include <iterator>

namespace companion {
namespace {

char Folded(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; }

} // namespace

bool EqualFolded(std::string_view strA, std::string_view strB) {
    return std::equal(strA.begin(), strA.end(), strB.begin(), strB.end(),
                      [](char a, char b) { return Folded(a) == Folded(b); });
}

bool IsForeignOverlay(std::string_view strFile) {
    return std::any_of(std::begin(g_aszForeignOverlays), std::end(g_aszForeignOverlays),
                       [&](std::string_view strOverlay) { return EqualFolded(strOverlay, strFile); });
}

} // namespace companion
