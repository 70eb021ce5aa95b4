#include "frame/api_claim.h"

#include "platform/named_mapping.h"
#include "platform/process.h"
#include "platform/types.h"

#include <cstdio>
#include <cstring>

bool g_bCheckApiMapping = true;
bool g_bOtherApiOwnsProcess = false;
void* g_hApiMapping = nullptr;
char* g_pApiView = nullptr;

static constexpr u32 g_uApiMappingBytes = 256;

/// Another flavour's tag is respected only if it reads "D3D"; any other is overwritten.
void g_fnClaimApi() noexcept {
    char szName[64];
    std::snprintf(szName, sizeof szName, "[RV5-OSD][PID:%d]", static_cast<i32>(platform::CurrentProcessId()));
    g_hApiMapping = platform::CreateNamedMapping(szName, g_uApiMappingBytes);
    if (!g_hApiMapping) return;
    g_pApiView = static_cast<char*>(platform::MapView(g_hApiMapping, g_uApiMappingBytes));
    if (!g_pApiView) {
        platform::CloseMapping(g_hApiMapping);
        g_hApiMapping = nullptr;
        return;
    }
    if (std::memcmp(g_pApiView, "D3D", 3) == 0) g_bOtherApiOwnsProcess = true;
    // KEEP(flavours): only "D3D" counts as an owner, the tag of the flavours for Direct3D.
    if (!g_bOtherApiOwnsProcess) std::memcpy(g_pApiView, "OGL", 4);
}

void g_fnCloseApiMapping() noexcept {
    if (g_pApiView) platform::UnmapView(g_pApiView);
    if (g_hApiMapping) platform::CloseMapping(g_hApiMapping);
    g_pApiView = nullptr;
    g_hApiMapping = nullptr;
}

void g_fnDropApiClaim() noexcept {
    if (g_hApiMapping) platform::CloseMapping(g_hApiMapping);
    g_hApiMapping = nullptr;
}
