#include "draw/left_names.h"

#include "draw/own_context.h"
#include "platform/gl_api.h"

#include <algorithm>
#include <atomic>
#include <vector>

namespace {

using Names = std::vector<u32>[NAMES_KINDS];

/// The handle is written last and taken first: whoever notes the end of a context takes it too, on any
/// thread, and the lists are touched by the thread that draws alone.
struct stLeft {
    std::atomic<platform::ContextHandle> hContext = nullptr;
    Names names;
};

/// More contexts than a program presents from in turn; the oldest are forgotten.
constexpr u32 g_uContextsMost = 16;

struct stLeftNames {
    Names open; ///< of the context that is being left
    stLeft left[g_uContextsMost];
    u32 uNext = 0;
};

/// Never destroyed: the host may still draw while the process ends.
stLeftNames& All() {
    static auto* const p = new stLeftNames;
    return *p;
}

void Clear(Names& names) {
    for (auto& list : names) list.clear();
}

bool IsEmpty(const Names& names) {
    return std::ranges::all_of(names, [](const auto& list) { return list.empty(); });
}

void Delete(eNames eKind, GLsizei iCount, const u32* pu) {
    switch (eKind) {
    case NAMES_TEXTURES:
        return glDeleteTextures(iCount, pu);
    case NAMES_BUFFERS:
        return glDeleteBuffers(iCount, pu);
    case NAMES_VERTEX_ARRAYS:
        return glDeleteVertexArrays(iCount, pu);
    default:
        for (GLsizei i = 0; i < iCount; ++i) glDeleteProgram(pu[i]);
    }
}

/// Some ends of contexts are seen by nobody, and a new context may have the handle of an old one. So programs
/// vouch for the rest: those of another context have neither these names nor this uniform.
bool AreOurs(const Names& names) {
    const auto isOurs = [](u32 u) { return glIsProgram(u) && glGetUniformLocation(u, "mProj") >= 0; };
    return !names[NAMES_PROGRAMS].empty() && std::ranges::all_of(names[NAMES_PROGRAMS], isOurs);
}

void DeleteAll(Names& names) {
    for (u32 u = 0; u < NAMES_KINDS; ++u)
        if (!names[u].empty())
            Delete(static_cast<eNames>(u), static_cast<GLsizei>(names[u].size()), names[u].data());
}

} // namespace

void g_fnDeleteNames(eNames eKind, u32 uCount, const u32* puNames) noexcept {
    if (g_fnMayDeleteNames()) return Delete(eKind, static_cast<GLsizei>(uCount), puNames);
    if (!g_hGLRC || g_fnIsContextGone()) return;
    try {
        std::copy_if(puNames, puNames + uCount, std::back_inserter(All().open[eKind]),
                     [](u32 u) { return u != 0; });
    } catch (...) { // out of memory
    }
}

void g_fnGiveLeftNames(platform::ContextHandle hContext) noexcept {
    stLeftNames& all = All();
    if (IsEmpty(all.open)) return;
    if (hContext) {
        stLeft& st = all.left[all.uNext++ % g_uContextsMost];
        st.hContext = nullptr;
        std::ranges::swap(st.names, all.open);
        st.hContext = hContext;
        // Its end may have come meanwhile.
        if (g_fnIsContextGone()) st.hContext = nullptr;
    }
    Clear(all.open);
}

void g_fnDeleteLeftNames() noexcept {
    platform::ContextHandle const hCurrent = platform::CurrentContext();
    for (stLeft& st : All().left) {
        platform::ContextHandle hContext = hCurrent;
        if (!hCurrent || !st.hContext.compare_exchange_strong(hContext, nullptr)) continue;
        if (AreOurs(st.names)) DeleteAll(st.names);
        Clear(st.names);
    }
}

void g_fnForgetLeftNames(platform::ContextHandle hContext) noexcept {
    for (stLeft& st : All().left) {
        platform::ContextHandle hExpected = hContext;
        if (hContext)
            st.hContext.compare_exchange_strong(hExpected, nullptr);
        else
            st.hContext = nullptr;
    }
}
