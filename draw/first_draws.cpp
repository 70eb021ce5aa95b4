#include "draw/first_draws.h"

#include <algorithm>
#include <span>

/// More than there are programs: one for each diameter of frosted panels, and a handful. What does not fit is
/// let in.
static constexpr u32 g_uMostFirstDraws = 128;

static struct stFirstDraws {
    bool bSpread = false;
    bool bPlaceFree = false; ///< this frame may let one in
    bool bTurnedAway = false;
    u32 uLetIn = 0;
    const void* apLetIn[g_uMostFirstDraws] = {};
} g_stFirstDraws;

void g_fnForgetFirstDraws() noexcept { g_stFirstDraws = {}; }

void g_fnSpreadFirstDraws() noexcept {
    g_fnForgetFirstDraws();
    g_stFirstDraws.bSpread = g_stFirstDraws.bTurnedAway = true;
}

void g_fnBeginDraws() noexcept {
    stFirstDraws& st = g_stFirstDraws;
    st.bSpread = st.bSpread && st.bTurnedAway;
    st.bPlaceFree = true;
    st.bTurnedAway = false;
}

static bool IsLetIn(const void* pWhat) {
    const std::span<const void* const> known(g_stFirstDraws.apLetIn, g_stFirstDraws.uLetIn);
    return std::ranges::find(known, pWhat) != known.end();
}

bool g_fnMayDraw(const void* pWhat) noexcept {
    stFirstDraws& st = g_stFirstDraws;
    if (!st.bSpread || st.uLetIn == g_uMostFirstDraws || IsLetIn(pWhat)) return true;
    const bool bMay = st.bPlaceFree;
    st.bPlaceFree = false;
    st.bTurnedAway = st.bTurnedAway || !bMay;
    if (bMay) st.apLetIn[st.uLetIn++] = pWhat;
    return bMay;
}

bool g_fnAreDrawsSpread() noexcept { return g_stFirstDraws.bSpread; }
