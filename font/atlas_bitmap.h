#pragma once
// A font's atlas as a bitmap file, for people to look at.
#include <string>

class CFontUniCode;

/// Writes four equal bytes a pixel. False without an atlas, or if the file cannot be written.
bool g_fnSaveAtlasBitmap(const CFontUniCode& font, const std::string& szName);
/// The face name in UTF-8; empty if it is too long.
std::string g_fnNarrowFace(const CFontUniCode& font);
