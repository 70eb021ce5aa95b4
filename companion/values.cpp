#include "companion/values.h"
#include "companion/choices.h"
#include "companion/config.h"
#include "companion/hardware_settings.h"
#include "companion/keys/keys.h"
#include "companion/lent_settings.h"
#include "companion/own_names.h"
#include "companion/programs.h"
#include "companion/recording/frame_source.h"
#include "companion/segment_json.h"
#include "companion/segment_view.h"
#include "companion/sensors/collector.h"
#include "companion/table.h"
#include "companion/user_data.h"
#include "companion/utf.h"
#include "companion/watch.h"
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

bool IsFeeding(u32 uProcessId) { return IsAlive(uProcessId) && IsCompanion(uProcessId); }

/// Makes the hardware that is there known in the settings, for as long as the feed runs. Where that is not
/// allowed, it is said once.
class HardwareLoan {
  public:
    explicit HardwareLoan(const ControlLibrary& stLibrary) : m_stLibrary(stLibrary) {}

    void Renew(const sensors::Collector& collector) {
        auto listWanted = HardwareSettings(collector.Readings(), collector.Machine());
        if (m_bRefused || (Same(listWanted, m_listLast) && m_lent.IsOwner())) return;
        bool bChanged = false;
        Tell(m_lent.Lend(listWanted, bChanged));
        if (bChanged) ReloadAll(m_stLibrary);
        m_listLast = std::move(listWanted);
    }
    void TakeBack() {
        bool bChanged = false; // the programs are told anyway
        if (!m_bRefused) Tell(m_lent.TakeBack(bChanged));
        RelinkUserSettings();
    }

  private:
    static bool Same(const std::vector<platform::tool::Setting>& a,
                     const std::vector<platform::tool::Setting>& b) {
        return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const auto& stA, const auto& stB) {
            return stA.strKey == stB.strKey && stA.strName == stB.strName && stA.uNumber == stB.uNumber &&
                   stA.strText == stB.strText;
        });
    }
    void Tell(const Result& st) {
        m_bRefused = !st;
        if (m_bRefused)
            std::fprintf(stderr, "orvin-osd: the rows of this machine stay as the settings have them: %s\n",
                         Printable(st.strError).c_str());
    }

    const ControlLibrary& m_stLibrary;
    LentSettings m_lent{LendingJournal(), platform::tool::OwnProcessId(), IsFeeding};
    std::vector<platform::tool::Setting> m_listLast;
    bool m_bRefused = false;
};

void FeedUntilStopped(const ControlLibrary& stLibrary, sensors::Collector& collector,
                      sensors::Publisher& publisher, HardwareLoan& loan, u32 uInterval, bool bWatch) {
    const auto pWatcher = bWatch ? std::make_unique<Watcher>(stLibrary) : nullptr;
    using Clock = std::chrono::steady_clock;
    auto timeNextProbe = Clock::now() + kProbeInterval;
    while (!platform::tool::WaitForStop(uInterval)) {
        if (platform::tool::SegmentWasCut()) return loan.TakeBack();
        if (pWatcher) pWatcher->Turn();
        if (Clock::now() >= timeNextProbe) {
            ForgetDead(stLibrary);
            ApplyChoices(stLibrary);
            collector.Probe();
            loan.Renew(collector);
            timeNextProbe = Clock::now() + kProbeInterval;
        }
        collector.Read();
        Report(publisher.Publish(collector.Readings()), publisher);
    }
    publisher.Publish(sensors::ValueMap{});
    loan.TakeBack();
}

/// Keys beside a feed that was asked for them; one that cannot have them feeds all the same.
std::unique_ptr<keys::KeyService> KeysBeside(const Options& stOptions) {
    if (!stOptions.bKeys && !SwitchedOn("feed-keys")) return nullptr;
    auto pService = std::make_unique<keys::KeyService>(stOptions.strLibrary, true);
    const Result st = pService->Start();
    if (!st)
        std::fprintf(stderr, "orvin-osd: %s ('orvin-osd keys --list' shows commands to bind instead)\n",
                     Printable(st.strError).c_str());
    return st ? std::move(pService) : nullptr;
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
    sensors::Sources listSources = sensors::SystemSources();
    if (!stOptions.strFrames.empty())
        listSources.push_back(std::make_unique<recording::FrameSource>(stLibrary, stOptions.strFrames));
    platform::tool::CatchStop();
    ForgetDead(stLibrary);
    ApplyChoices(stLibrary);
    sensors::Collector collector(std::move(listSources));
    sensors::Publisher publisher(sensors::TargetOf(stLibrary),
                                 stOptions.bOnce ? sensors::Publication{} : sensors::ThisFeed());
    HardwareLoan loan(stLibrary);
    Measure(collector);
    loan.Renew(collector);
    const auto eOutcome = publisher.Publish(collector.Readings());
    if (stOptions.bOnce) return {};
    const u32 uInterval = stOptions.uInterval != 0 ? stOptions.uInterval : kFeedInterval;
    Print("publishing every " + std::to_string(uInterval) + " ms; end with Ctrl-C\n");
    Report(eOutcome, publisher);
    const auto pKeys = KeysBeside(stOptions);
    FeedUntilStopped(stLibrary, collector, publisher, loan, uInterval, stOptions.bWatch);
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
