#include "companion/feed_state.h"
#include "companion/programs.h"
#include "companion/segment_view.h"
#include "companion/sensors/published.h"
#include "companion/sensors/publisher.h"
#include "platform/tool.h"
#include <cstdio>
#include <iterator>
#include <nlohmann/json.hpp>

namespace companion {
namespace {

constexpr u64 kSilence = 65000; ///< milliseconds: longer than the longest interval of a feed

constexpr const char* kLifeNames[] = {"none", "alive", "once", "killed", "unknown"};

FeedLife LifeOf(const sensors::Publication& st, bool (*fnIsGone)(u32, u32) noexcept) {
    if (st.uProcessId == 0) return FeedLife::Once;
    return fnIsGone(st.uProcessId, st.uStamp) ? FeedLife::Dead : FeedLife::Alive;
}

std::string Count(const FeedState& st) {
    return std::to_string(st.uValues) + (st.uValues == 1 ? " value" : " values");
}

std::string AliveText(const FeedState& st) {
    const std::string strFeed = "feed " + std::to_string(st.uProcessId);
    if (st.uAge > kSilence)
        return "The " + strFeed + " lives but has published nothing for " + AgeText(st.uAge) + ".\n";
    return "The " + strFeed + " publishes " + Count(st) + ", " + AgeText(st.uAge) + " old.\n";
}

std::string DeadText(const FeedState& st) {
    return "No feed is alive; " + Count(st) + " of one that was killed, " + AgeText(st.uAge) + " old, " +
           (st.bTakenBack ? "were taken back.\n" : "stand.\n");
}

} // namespace

FeedState LookAtFeed(const stSharedSegment& stSegment, u64 uNow, bool (*fnIsGone)(u32, u32) noexcept) {
    FeedState st;
    st.uValues = sensors::ReadPublished(stSegment).size();
    const auto stBy = sensors::ReadPublication(stSegment);
    if (!stBy) {
        st.eLife = st.uValues == 0 ? FeedLife::None : FeedLife::Unknown;
        return st;
    }
    st.eLife = LifeOf(*stBy, fnIsGone);
    if (st.eLife != FeedLife::Alive && st.uValues == 0) return {}; // it took its values back itself
    st.uProcessId = stBy->uProcessId;
    st.uAge = uNow > stBy->uTime ? uNow - stBy->uTime : 0;
    return st;
}

FeedState TakeBackDeadValues(const ControlLibrary& stLibrary) {
    FeedState st =
        LookAtFeed(*Snapshot(stLibrary.pSegment), sensors::TimeNow(), &platform::tool::IsProcessGone);
    if (st.eLife != FeedLife::Dead) return st;
    sensors::Publisher(sensors::TargetOf(stLibrary)).Publish(sensors::ValueMap{});
    ReloadAll(stLibrary);
    st.bTakenBack = true;
    return st;
}

std::string FeedText(const FeedState& st) {
    switch (st.eLife) {
    case FeedLife::Alive:
        return AliveText(st);
    case FeedLife::Dead:
        return DeadText(st);
    case FeedLife::Once:
        return "No feed is alive; " + Count(st) + " published once stand, " + AgeText(st.uAge) + " old.\n";
    case FeedLife::Unknown:
        return "No feed of this program is alive; " + Count(st) + " of somebody else stand.\n";
    case FeedLife::None:
        break;
    }
    return "No feed is alive; no values are published.\n";
}

std::string TakenBackText(const FeedState& st) { return st.bTakenBack ? DeadText(st) : std::string(); }

nlohmann::ordered_json FeedJson(const FeedState& st) {
    const bool bTold = st.eLife != FeedLife::None && st.eLife != FeedLife::Unknown;
    return {{"state", kLifeNames[static_cast<size_t>(st.eLife)]},
            {"pid", st.uProcessId != 0 ? nlohmann::ordered_json(st.uProcessId) : nullptr},
            {"ageMs", bTold ? nlohmann::ordered_json(st.uAge) : nullptr},
            {"values", st.uValues},
            {"takenBack", st.bTakenBack}};
}

std::string AgeText(u64 uMilliseconds) {
    struct Step {
        u64 uBelow, uUnit;
        const char* szUnit;
    };
    constexpr Step kSteps[] = {{180000, 1000, " s"}, {10800000, 60000, " min"}, {172800000, 3600000, " h"}};
    if (uMilliseconds < 10000) {
        char szText[32];
        std::snprintf(szText, sizeof(szText), "%.1f s", static_cast<f64>(uMilliseconds) / 1000.0);
        return szText;
    }
    for (const Step& st : kSteps)
        if (uMilliseconds < st.uBelow) return std::to_string(uMilliseconds / st.uUnit) + st.szUnit;
    return std::to_string(uMilliseconds / 86400000) + " days";
}

} // namespace companion
