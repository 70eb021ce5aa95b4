#pragma once
// What the files that a program has mapped tell about it.
#include <string>
#include <vector>

namespace companion {

struct ModuleFacts {
    bool bOpenGl = false;
    bool bGles = false;
    bool bVulkan = false;
    bool bDirect3D = false;
    bool bWine = false;    ///< a Windows program, seen from the system that runs it
    bool bPreload = false; ///< this system's own preload part
    /// Others that draw into the picture, record it or stand in its swap, by their names; each once.
    std::vector<std::string> listOverlays;
};

/// listPaths: paths or plain file names, with either separator.
ModuleFacts FactsOfModules(const std::vector<std::string>& listPaths);

/// The program that an overlay's file belongs to; null for any other file.
const char* OverlayName(const std::string& strFile);

} // namespace companion
