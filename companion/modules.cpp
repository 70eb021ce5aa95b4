#include "companion/modules.h"
#include "platform/tool_bytes.h"
#include <algorithm>
#include <iterator>
#include <string_view>

namespace companion {
namespace {

struct KnownFile {
    const char* szBegin; ///< of the file's name, without case
    bool ModuleFacts::*fnFact;
};

constexpr KnownFile kFiles[] = {
    {"libGL.so", &ModuleFacts::bOpenGl},       {"libGLX.so", &ModuleFacts::bOpenGl},
    {"libOpenGL.so", &ModuleFacts::bOpenGl},   {"opengl32.dll", &ModuleFacts::bOpenGl},
    {"libGLESv2", &ModuleFacts::bGles},        {"libGLESv1_CM", &ModuleFacts::bGles},
    {"libvulkan.so", &ModuleFacts::bVulkan},   {"vulkan-1.dll", &ModuleFacts::bVulkan},
    {"d3d9.dll", &ModuleFacts::bDirect3D},     {"d3d10", &ModuleFacts::bDirect3D},
    {"d3d11.dll", &ModuleFacts::bDirect3D},    {"d3d12.dll", &ModuleFacts::bDirect3D},
    {"ntdll.so", &ModuleFacts::bWine},         {"wine-preloader", &ModuleFacts::bWine},
    {"wine64-preloader", &ModuleFacts::bWine}, {"libORVIN-OSD64-GL-preload.so", &ModuleFacts::bPreload},
};

struct KnownOverlay {
    const char* szBegin;
    const char* szName;
};

/// Files of other overlays and recorders, and whose they are.
constexpr KnownOverlay kOverlays[] = {
    {"libMangoHud", "MangoHud"},
    {"gameoverlayrenderer", "the overlay of Steam"},
    {"steam_api", "Steam"},
    {"DiscordHook", "the overlay of Discord"},
    {"DiscordOverlay", "the overlay of Discord"},
    {"libdiscord_overlay", "the overlay of Discord"},
    {"graphics-hook64", "game capture of OBS"},
    {"libobs_glcapture", "game capture of OBS"},
    {"IGO64", "the overlay of EA"},
    {"IGO32", "the overlay of EA"},
    {"EOSOVH-", "the overlay of Epic"},
    {"nvspcap64", "recording of NVIDIA"},
    {"NahimicOSD", "Nahimic"},
    {"ReShade64", "ReShade"},
    {"d3d9_smaa", "the SMAA injector"},
    {"librenderdoc", "RenderDoc"},
    {"renderdoc.dll", "RenderDoc"},
    {"glxtrace", "apitrace"},
    {"egltrace", "apitrace"},
};

bool BeginsWith(std::string_view strFile, std::string_view strBegin) {
    return platform::tool::EqualFolded(strFile.substr(0, strBegin.size()), strBegin);
}

std::string FilePart(const std::string& strPath) { return strPath.substr(strPath.find_last_of("/\\") + 1); }

} // namespace

const char* OverlayName(const std::string& strFile) {
    const auto it = std::find_if(std::begin(kOverlays), std::end(kOverlays),
                                 [&](const KnownOverlay& st) { return BeginsWith(strFile, st.szBegin); });
    return it != std::end(kOverlays) ? it->szName : nullptr;
}

ModuleFacts FactsOfModules(const std::vector<std::string>& listPaths) {
    ModuleFacts st;
    for (const std::string& strPath : listPaths) {
        const std::string strFile = FilePart(strPath);
        for (const KnownFile& stKnown : kFiles)
            if (BeginsWith(strFile, stKnown.szBegin)) st.*stKnown.fnFact = true;
        const char* const szName = OverlayName(strFile);
        if (szName &&
            std::find(st.listOverlays.begin(), st.listOverlays.end(), szName) == st.listOverlays.end())
            st.listOverlays.emplace_back(szName);
    }
    return st;
}

} // namespace companion
