#include "tools/profile/values.h"
#include "companion/control_library.h"
#include "companion/profile_folder.h"
#include "companion/segment_view.h"
#include "companion/sensors/collector.h"
#include "companion/sensors/published.h"
#include "platform/tool.h"
#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>
#include <string_view>

namespace companion {
namespace {

/// How a value moves: between two bounds, once to and fro in a period.
struct Movement {
    std::string_view strBase;
    double dLow, dHigh;
    double dSeconds;
};

constexpr Movement kMovements[] = {
    {"CPU_USAGE", 22, 74, 9},           {"CPU_CLK", 4150, 4850, 6},       {"CPU_TEMP", 54, 71, 26},
    {"RAM_USAGE_MB", 11800, 14200, 40}, {"RAM_USAGE_P", 36, 44, 40},      {"GPU_CLK", 1860, 2010, 8},
    {"VRAM_CLK", 9450, 9502, 30},       {"GPU_TEMP", 58, 69, 30},         {"GPU_USAGE", 68, 98, 7},
    {"VRAM_USAGE_MB", 5600, 7300, 36},  {"VRAM_USAGE_P", 47, 61, 36},     {"FAN1_RPM", 1320, 1710, 22},
    {"FAN2_RPM", 1300, 1690, 22},       {"FAN3_RPM", 1310, 1700, 22},     {"FAN4_RPM", 1290, 1680, 22},
    {"FAN1_DUTY", 38, 52, 22},          {"FAN2_DUTY", 38, 52, 22},        {"FAN3_DUTY", 38, 52, 22},
    {"FAN4_DUTY", 38, 52, 22},          {"GPU_VOLTAGE", 925, 1050, 8},    {"GPU_POWER", 168, 231, 7},
    {"POWER_TARGET", 96, 100, 50},      {"GPU_HOTSPOT_TEMP", 69, 82, 30}, {"VRAM_TEMP", 70, 80, 34},
    {"SYS_FAN_RPM", 780, 1040, 28},     {"SYS_FAN_DUTY", 34, 46, 28},     {"SYS_TEMP", 37, 42, 45},
    {"DRIVE_TEMP", 41, 47, 60},         {"POWER_DETECTOR", 0, 1, 20},     {"AVG_FRAME", 1180, 1240, 40},
    {"P1_FRAME", 860, 930, 35},         {"P01_FRAME", 610, 690, 35},      {"STUTTER_CNT", 2, 9, 60},
};

u32 Hash(std::string_view strText) {
    u32 uHash = 2166136261u;
    for (const char c : strText) uHash = (uHash ^ static_cast<u8>(c)) * 16777619u;
    return uHash;
}

/// 0 to 1 and back over one turn, soft at both ends. Nothing here may differ between machines, so there is no
/// sine.
double Swing(double dTurns) {
    const double dAt = dTurns - std::floor(dTurns);
    const double dRise = dAt < 0.5 ? 2 * dAt : 2 - 2 * dAt;
    return dRise * dRise * (3 - 2 * dRise);
}

/// A slow swing with a faster one on it.
double Level(u32 uHash, double dSeconds, double dPeriod) {
    const double dStart = (uHash % 1000) / 1000.0;
    return 0.7 * Swing(dSeconds / dPeriod + dStart) + 0.3 * Swing(dSeconds * 3.7 / dPeriod + dStart * 2);
}

i32 Rounded(double dValue) { return static_cast<i32>(std::floor(dValue + 0.5)); }

Movement MovementOf(const std::string& strName) {
    const std::string_view strBase = std::string_view(strName).substr(0, strName.find('#'));
    const auto it = std::find_if(std::begin(kMovements), std::end(kMovements),
                                 [&](const Movement& st) { return st.strBase == strBase; });
    if (it != std::end(kMovements)) return *it;
    const u32 uHash = Hash(strBase);
    const double dLow = 5 + uHash % 50;
    return {strBase, dLow, dLow + 15 + uHash / 64 % 30, 6.0 + uHash / 4096 % 20};
}

sensors::ValueMap SensorValues() {
    sensors::Collector collector(sensors::SystemSources());
    collector.Probe();
    collector.Read();
    platform::tool::SleepMilliseconds(250); // loads are counted between two looks
    collector.Read();
    sensors::ValueMap mapValues;
    for (const sensors::Reading& st : collector.Readings())
        if (st.iValue) mapValues.emplace(st.strName, *st.iValue);
    return mapValues;
}

} // namespace

i32 SampleValue(const std::string& strName, double dSeconds) {
    const Movement st = MovementOf(strName);
    return Rounded(st.dLow + (st.dHigh - st.dLow) * Level(Hash(strName), dSeconds, st.dSeconds));
}

const std::set<std::string>& SampleNames() {
    static const std::set<std::string> setNames = [] {
        std::set<std::string> set;
        for (const Movement& st : kMovements) set.insert(std::string(st.strBase) + "#0");
        return set;
    }();
    return setNames;
}

double SampleFrameSeconds(double dSeconds) {
    const double dTime = 0.0118 + 0.0045 * Level(7, dSeconds, 17.0) + 0.0009 * Swing(dSeconds * 2.3);
    const double dTurn = dSeconds / 2.7 - std::floor(dSeconds / 2.7);
    return dTurn < 0.012 ? dTime * 1.6 : dTime; // now and then a frame that takes long
}

Result ParseValues(const std::string& strText, sensors::ValueMap& mapValues) {
    std::istringstream text(strText);
    std::string strLine;
    for (u32 uLine = 1; std::getline(text, strLine); ++uLine) {
        std::replace_if(
            strLine.begin(), strLine.end(), [](char c) { return c == '=' || c == '\r' || c == '\t'; }, ' ');
        std::istringstream line(strLine);
        std::string strName, strValue, strMore;
        line >> strName >> strValue >> strMore;
        if (strName.empty() || strName.front() == ';') continue;
        i32 iValue = 0;
        const char* const pEnd = strValue.data() + strValue.size();
        const auto [pStop, eError] = std::from_chars(strValue.data(), pEnd, iValue);
        if (eError != std::errc() || pStop != pEnd || !strMore.empty())
            return Result::Fail("line " + std::to_string(uLine) + " is not a name and a whole number");
        const std::string strFault = sensors::NameFault(strName);
        if (!strFault.empty())
            return Result::Fail("line " + std::to_string(uLine) + ": the name " + strName + " " + strFault);
        mapValues[strName] = iValue;
    }
    return {};
}

sensors::ValueMap LiveValues(const std::string& strLibrary) {
    ControlLibrary stLibrary;
    sensors::ValueMap mapValues;
    if (LoadControlLibrary(strLibrary, stLibrary)) {
        for (const sensors::PublishedValue& st : sensors::ReadPublished(*Snapshot(stLibrary.pSegment)))
            if (st.bWhole && st.bInRoom) mapValues.emplace(st.strName, st.iValue);
    }
    return mapValues.empty() ? SensorValues() : mapValues;
}

Result ValueSource::Open(const std::string& strWish, const std::string& strLibrary) {
    m_mapValues.clear();
    m_bSample = strWish == "sample";
    if (m_bSample) return {};
    if (strWish == "live") {
        m_mapValues = LiveValues(strLibrary);
        return {};
    }
    std::string strText;
    constexpr u64 uMostBytes = 16 * 1024 * 1024;
    if (!ReadFile(PathOfText(strWish), uMostBytes, strText))
        return Result::NotFound("cannot open " + strWish);
    Result stResult = ParseValues(strText, m_mapValues);
    if (!stResult) stResult.strError = strWish + ": " + stResult.strError;
    return stResult;
}

sensors::ValueMap ValueSource::At(double dSeconds, const std::set<std::string>& setShown) const {
    if (!m_bSample) return m_mapValues;
    sensors::ValueMap mapValues;
    for (const auto* pNames : {&SampleNames(), &setShown})
        for (const std::string& strName : *pNames) mapValues.emplace(strName, SampleValue(strName, dSeconds));
    return mapValues;
}

} // namespace companion
