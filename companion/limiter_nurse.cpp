#include "companion/limiter_nurse.h"
#include <algorithm>
#include <iterator>

namespace companion {
namespace {

constexpr u64 kSecond = 1000;
constexpr f32 kFarBelow = 0.7f;           ///< of the time that a frame should take
constexpr u64 kFirstPause = 10 * kSecond; ///< after an attempt, doubled each time
constexpr u64 kLongestPause = 600 * kSecond;
constexpr u64 kHealed = 60 * kSecond;   ///< well for so long: the attempts begin anew
constexpr u32 kParts[] = {4, 16, 1000}; ///< of the rate, one attempt after the other; the last is 1

bool IsFarTooFast(const LimiterLook& st) {
    if (!st.bLimited || st.uRate == 0 || !(st.fFrameTime > 0.0f)) return false;
    return st.fFrameTime < kFarBelow * 1000.0f / static_cast<f32>(st.uRate);
}

} // namespace

u32 LimiterNurse::LowRate() const {
    const u32 uPart = kParts[std::min<size_t>(std::max(m_uAttempts, 1u) - 1, std::size(kParts) - 1)];
    return std::max(m_uRate / uPart, 1u);
}

u64 LimiterNurse::Pause() const {
    const u32 uDoublings = std::min(std::max(m_uAttempts, 1u) - 1, 10u);
    return std::min(kFirstPause << uDoublings, kLongestPause);
}

LimiterStep LimiterNurse::Suspect(const LimiterLook& st) {
    if (!IsFarTooFast(st)) {
        m_ePhase = Phase::Well;
        if (m_uWellSince == 0) m_uWellSince = st.uNow;
        if (st.uNow - m_uWellSince >= kHealed) m_uAttempts = 0;
        return LimiterStep::Nothing;
    }
    if (m_ePhase == Phase::Well) {
        m_ePhase = Phase::Suspect;
        m_uSince = st.uNow;
    }
    m_uWellSince = 0;
    if (st.uNow - m_uSince < kSecond) return LimiterStep::Nothing;
    m_ePhase = Phase::Lowered;
    m_uSince = st.uNow;
    m_uRate = st.uRate;
    ++m_uAttempts;
    return LimiterStep::Lower;
}

LimiterStep LimiterNurse::Look(const LimiterLook& st) {
    if (m_ePhase == Phase::Lowered) {
        if (st.uNow - m_uSince < kSecond) return LimiterStep::Nothing;
        m_ePhase = Phase::Resting;
        m_uSince = st.uNow;
        return LimiterStep::Restore;
    }
    if (m_ePhase == Phase::Resting) {
        if (st.uNow - m_uSince < Pause()) return LimiterStep::Nothing;
        m_ePhase = Phase::Well;
    }
    return Suspect(st);
}

} // namespace companion
