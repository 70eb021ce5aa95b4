#pragma once
// Modules of other overlays: the library waits for them before it lays its detour, and the companion names
// them.

inline constexpr const char* g_aszForeignOverlays[] = {
    "IGO64.dll",
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
    "NahimicOSD.dll",
};
