#include "companion/values.h"
#include "companion/choices.h"
#include "companion/own_names.h"
#include "companion/profile_commands.h"
#include "companion/segment_json.h"
#include "companion/segment_view.h"
#include "companion/sensors/collector.h"
#include "companion/table.h"
#include "platform/tool.h"
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <nlohmann/json.hpp>

namespace companion {
namespace {

using Json = nlohmann::ordered_json;
using sensors::PublishedValue;
using sensors::Reading;

constexpr u32 kFeedInterval = 500; ///< milliseconds
constexpr u32 kLoadPause = 250;    ///< milliseconds between the two looks that a load needs
constexpr std::chrono::seconds kProbeInterval{2};

void Print(const std::string& strText) {
    std::fwrite(strText.data(), 1, strText.size(), stdout);
    std::fflush(stdout);
}

/// Both looks of a single measurement.
void Measure(sensors::Collector& collector) {
    collector.Probe();
    collector.Read();
    platform::tool::WaitForStop(kLoadPause);
    collector.Read();
}

void Report(sensors::Publisher::Outcome eOutcome, const sensors::Publisher& publisher) {
    if (eOutcome == sensors::Publisher::Outcome::Names)
        Print(std::to_string(publisher.Values().size()) + " values under a new set of names\n");
}

void FeedUntilStopped(const ControlLibrary& stLibrary, sensors::Collector& collector,
                      sensors::Publisher& publisher, u32 uInterval) {
    using Clock = std::chrono::steady_clock;
    auto timeNextProbe = Clock::now() + kProbeInterval;
    while (!platform::tool::WaitForStop(uInterval)) {
        if (platform::tool::SegmentWasCut()) return;
        if (Clock::now() >= timeNextProbe) {
            ForgetDead(stLibrary);
            ApplyChoices(stLibrary);
            collector.Probe();
            timeNextProbe = Clock::now() + kProbeInterval;
        }
        collector.Read();
        Report(publisher.Publish(collector.Readings()), publisher);
    }
    publisher.Publish(sensors::ValueMap{});
}

/// The published value that strName leads to; null if there is none.
const PublishedValue* Find(const std::vector<PublishedValue>& listPublished, const std::string& strName) {
    const auto it = std::find_if(listPublished.begin(), listPublished.end(), [&](const PublishedValue& st) {
        return st.bInRoom && (st.bWhole ? st.strName == strName : sensors::FitsName(strName, st.strName));
    });
    return it != listPublished.end() ? &*it : nullptr;
}

void SetInPlace(const sensors::PublishTarget& stTarget, const stSharedSegment& stSegment, u32 uOffset,
                i32 iValue) {
    const u8* pBank = stSegment.RawData[sensors::CurrentBank(stSegment)];
    std::vector<u8> aRaw(pBank, pBank + g_uRawDataBytes);
    std::memcpy(aRaw.data() + uOffset, &iValue, sizeof(iValue));
    stTarget.fnSetData(aRaw.data(), static_cast<i32>(aRaw.size()));
}

sensors::ValueMap WholeNames(const std::vector<PublishedValue>& listPublished) {
    sensors::ValueMap mapValues;
    size_t uLost = 0;
    for (const PublishedValue& st : listPublished) {
        if (st.bWhole && st.bInRoom) mapValues.emplace(st.strName, st.iValue);
        if (!st.bWhole) ++uLost;
    }
    if (uLost != 0)
        std::fprintf(stderr, "orvin-osd: %zu published names are not known whole and are dropped\n", uLost);
    return mapValues;
}

} // namespace

Result Feed(const ControlLibrary& stLibrary, const Options& stOptions) {
    platform::tool::CatchStop();
    ForgetDead(stLibrary);
    ApplyChoices(stLibrary);
    sensors::Collector collector(sensors::SystemSources());
    sensors::Publisher publisher(sensors::TargetOf(stLibrary),
                                 stOptions.bOnce ? sensors::Publication{} : sensors::ThisFeed());
    Measure(collector);
    const auto eOutcome = publisher.Publish(collector.Readings());
    if (stOptions.bOnce) return {};
    const u32 uInterval = stOptions.uInterval != 0 ? stOptions.uInterval : kFeedInterval;
    Print("publishing every " + std::to_string(uInterval) + " ms; end with Ctrl-C\n");
    Report(eOutcome, publisher);
    FeedUntilStopped(stLibrary, collector, publisher, uInterval);
    return {};
}

Result SetValue(const sensors::PublishTarget& stTarget, const std::string& strName, i32 iValue) {
    const auto pSegment = Snapshot(stTarget.pSegment);
    const auto listPublished = sensors::ReadPublished(*pSegment);
    if (const PublishedValue* pFound = Find(listPublished, strName)) {
        SetInPlace(stTarget, *pSegment, pFound->uOffset, iValue);
        return {};
    }
    sensors::ValueMap mapValues = WholeNames(listPublished);
    mapValues[strName] = iValue;
    sensors::Publisher publisher(stTarget);
    publisher.Publish(mapValues);
    return publisher.Values().size() == mapValues.size()
               ? Result{}
               : Result::Fail("set: there is no room for more names");
}

std::string SensorTable(const std::vector<Reading>& listReadings) {
    std::vector<std::vector<std::string>> listRows;
    for (const Reading& st : listReadings) {
        listRows.push_back(
            {st.strName, st.iValue ? std::to_string(*st.iValue) : "-", st.szUnit, st.strSource});
    }
    return FormatTable({{"NAME"}, {"VALUE", Align::Right}, {"UNIT"}, {"SOURCE"}}, listRows);
}

std::string SensorJson(const std::vector<Reading>& listReadings) {
    Json jsRows = Json::array();
    for (const Reading& st : listReadings) {
        jsRows.push_back({{"name", st.strName},
                          {"value", st.iValue ? Json(*st.iValue) : Json(nullptr)},
                          {"unit", st.szUnit},
                          {"source", st.strSource}});
    }
    return JsonToText(jsRows);
}

std::string NameTable(const std::vector<PublishedValue>& listPublished) {
    std::vector<std::vector<std::string>> listRows;
    for (const std::string& strName : sensors::OwnNames()) {
        const OwnName* const pOwn = FindProgramName(strName);
        const bool bRemark = pOwn && *pOwn->szRemark;
        listRows.push_back(
            {strName, "-", bRemark ? std::string("each program; ") + pOwn->szRemark : "each program"});
    }
    for (const PublishedValue& st : listPublished) {
        listRows.push_back({st.strName, st.bInRoom ? std::to_string(st.iValue) : "-", "published"});
    }
    return FormatTable({{"NAME"}, {"VALUE", Align::Right}, {"FROM"}}, listRows);
}

std::string NameJson(const std::vector<PublishedValue>& listPublished) {
    Json jsRows = Json::array();
    for (const std::string& strName : sensors::OwnNames()) {
        const OwnName* const pOwn = FindProgramName(strName);
        jsRows.push_back({{"name", strName},
                          {"value", nullptr},
                          {"published", false},
                          {"remark", pOwn ? pOwn->szRemark : ""}});
    }
    for (const PublishedValue& st : listPublished) {
        jsRows.push_back({{"name", st.strName},
                          {"value", st.bInRoom ? Json(st.iValue) : Json(nullptr)},
                          {"published", true},
                          {"offset", st.uOffset}});
    }
    return JsonToText(jsRows);
}

void PrintSensors(const Options& stOptions) {
    sensors::Collector collector(sensors::SystemSources());
    Measure(collector);
    const auto& listReadings = collector.Readings();
    Print(stOptions.bJson ? SensorJson(listReadings) : SensorTable(listReadings));
}

void PrintNames(const ControlLibrary& stLibrary, const Options& stOptions) {
    const auto listPublished = sensors::ReadPublished(*Snapshot(stLibrary.pSegment));
    Print(stOptions.bJson ? NameJson(listPublished) : NameTable(listPublished));
}

} // namespace companion
