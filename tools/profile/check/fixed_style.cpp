#include "tools/profile/check/fixed_style.h"

#include "config/fixed/style_rows.h"
#include "config/profile/profile_cards.h"
#include "config/profile/profile_document.h"
#include "config/settings/settings_sensors.h"

#include <algorithm>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include <tinyxml2.h>

namespace companion {
namespace {

using tinyxml2::XMLElement;

std::string Quoted(std::string_view szName) { return "<" + std::string(szName) + ">"; }

// --- names -------------------------------------------------------------------------------------------------

constexpr std::string_view c_aSettings[] = {"Preview",    "Info",  "Memo",   "Watermark",
                                            "SystemInfo", "Photo", "Camera", "StopWatch"};
constexpr std::string_view c_aInfo[] = {"Card", "CPU", "Sensor", "DisplayIndex", "CustomSettings"};
constexpr std::string_view c_aCustom[] = {"Variable", "TextColor", "TextAlign"};

bool IsOneOf(std::span<const std::string_view> names, std::string_view szName) {
    return std::find(names.begin(), names.end(), szName) != names.end();
}

bool IsProgramRow(std::string_view szName) {
    for (u32 u = 0; u < ROW_COUNT; ++u)
        if (szName == g_fnProgramRowElement(u)) return true;
    return false;
}

/// A row of an owner by one of its two names.
bool IsRowOf(eRowOf eOf, std::string_view szName) {
    for (const stDisplayRow& row : g_fnDisplayRows())
        if (row.eOf == eOf &&
            (szName == row.szElement || (row.szOtherElement && szName == row.szOtherElement)))
            return true;
    return false;
}

/// In a card only the common fan is called otherwise than in the table.
bool IsCardRow(std::string_view szName) { return szName != "GPUTemp" && IsRowOf(eRowOf::Card, szName); }
bool IsCpuRow(std::string_view szName) { return szName != "CPUTemp" && IsRowOf(eRowOf::Cpu, szName); }
bool IsOrdered(std::string_view szName) {
    constexpr eRowOf c_aeAll[] = {eRowOf::Program, eRowOf::Card, eRowOf::Cpu, eRowOf::Debug};
    return std::any_of(std::begin(c_aeAll), std::end(c_aeAll),
                       [szName](eRowOf eOf) { return IsRowOf(eOf, szName); });
}

/// Warns of children that nothing reads.
template <class Known>
void CheckChildren(const XMLElement* pParent, const char* szWhat, Findings& findings, Known fnKnown) {
    const XMLElement* p = pParent ? pParent->FirstChildElement() : nullptr;
    for (; p && !findings.IsFull(); p = p->NextSiblingElement())
        if (!fnKnown(std::string_view(p->Name())))
            findings.Warning(p->GetLineNum(), Quoted(p->Name()) + " is no " + szWhat + " of " +
                                                  Quoted(pParent->Name()) + "; it is ignored");
}

template <class Do> void ForEach(const XMLElement& parent, const char* szName, Do fnDo) {
    for (auto* p = parent.FirstChildElement(szName); p; p = p->NextSiblingElement(szName)) fnDo(*p);
}

/// Sensors come and go with the machine, so an unknown one is no fault.
void CheckSensors(const XMLElement& sensor, Findings& findings) {
    for (auto* p = sensor.FirstChildElement(); p && !findings.IsFull(); p = p->NextSiblingElement())
        if (!g_stSensors.mapTag.contains(std::string_view(p->Name())))
            findings.Note(p->GetLineNum(), Quoted(p->Name()) + " is no sensor of this machine");
}

void CheckNames(const XMLElement& info, Findings& findings) {
    CheckChildren(&info, "part", findings, [](std::string_view szName) {
        return IsOneOf(c_aInfo, szName) || IsProgramRow(szName) || IsRowOf(eRowOf::Debug, szName);
    });
    ForEach(info, "Card", [&](const XMLElement& p) { CheckChildren(&p, "row", findings, IsCardRow); });
    ForEach(info, "CPU", [&](const XMLElement& p) { CheckChildren(&p, "row", findings, IsCpuRow); });
    CheckChildren(info.FirstChildElement("DisplayIndex"), "row", findings, IsOrdered);
    CheckChildren(info.FirstChildElement("CustomSettings"), "part", findings,
                  [](std::string_view szName) { return IsOneOf(c_aCustom, szName); });
    ForEach(info, "Sensor", [&](const XMLElement& sensor) { CheckSensors(sensor, findings); });
}

// --- what makes a load fail --------------------------------------------------------------------------------

void CheckDemandedRows(const XMLElement& info, Findings& findings) {
    for (const u32 uRow : {ROW_FPS, ROW_SYSTEM_TIME, ROW_RESOLUTION})
        if (const char* szName = g_fnProgramRowElement(uRow); !info.FirstChildElement(szName))
            findings.Error(info.GetLineNum(), Quoted(szName) + " is missing in <Info>: the profile is not "
                                                               "loaded. IsShow=\"0\" hides it");
}

std::string WordsOf(const char* szBlock, i32 iCode) {
    const std::string strBlock(szBlock);
    if (iCode == INFO_EMPTY) return "a " + Quoted(strBlock) + " without rows";
    if (iCode == INFO_POSITION) return "CardDisplayIndex is above 19";
    if (iCode == INFO_POSITION_TAKEN) return "two cards have the same CardDisplayIndex";
    return "the Title of a " + Quoted(strBlock) + " is not \"" + strBlock + "#\" and a number below 20";
}

void SayCode(const XMLElement& info, const char* szBlock, i32 iCode, Findings& findings) {
    const XMLElement* const p = info.FirstChildElement(szBlock);
    findings.Error((p ? p : &info)->GetLineNum(), WordsOf(szBlock, iCode) + ": the profile is not loaded");
}

/// The readers themselves say whether they take the blocks; the machine's own cards do not matter here.
void CheckBlocks(const XMLElement& info, Findings& findings) {
    const auto pCards = std::make_unique<stCardBlock>();
    const auto pCpu = std::make_unique<stCpuBlock>();
    i32 iCode = 0;
    if (!g_fnReadCardOrder(&info, g_uDisplayMax, *pCards, &iCode) ||
        !g_fnReadCardFlags(&info, *pCards, &iCode))
        SayCode(info, "Card", iCode, findings);
    if (!g_fnReadCpuBlock(&info, *pCpu, &iCode)) SayCode(info, "CPU", iCode, findings);
}

// --- what is shown -----------------------------------------------------------------------------------------

bool IsShown(const XMLElement& element) { return g_fnReadXmlDecimal(&element, "IsShow") != 0; }

bool HasShownRow(const XMLElement& parent) {
    for (auto* p = parent.FirstChildElement(); p; p = p->NextSiblingElement())
        if (IsShown(*p)) return true;
    return false;
}

bool ShowsAnything(const XMLElement& info) {
    u32 auShow[ROW_COUNT];
    g_fnReadProgramRows(&info, auShow);
    bool bShown = std::any_of(std::begin(auShow), std::end(auShow), [](u32 u) { return u != 0; });
    for (const char* szBlock : {"Card", "CPU", "Sensor"})
        ForEach(info, szBlock, [&](const XMLElement& p) { bShown = bShown || HasShownRow(p); });
    return bShown && IsShown(info);
}

} // namespace

void CheckFixedSettings(const XMLElement& settings, Findings& findings) {
    CheckChildren(&settings, "part", findings,
                  [](std::string_view szName) { return IsOneOf(c_aSettings, szName); });
    const XMLElement* const pInfo = settings.FirstChildElement("Info");
    if (!pInfo) {
        findings.Error(settings.GetLineNum(), "<Info> is missing in <Settings>: the profile is not loaded");
        return;
    }
    CheckDemandedRows(*pInfo, findings);
    CheckBlocks(*pInfo, findings);
    CheckNames(*pInfo, findings);
    if (!ShowsAnything(*pInfo))
        findings.Warning(pInfo->GetLineNum(), "no row of <Info> is shown: the block is empty");
}

void CheckFixedReference(const XMLElement& root, u32 uStyle, Findings& findings) {
    const char* const szLayout = g_fnLayoutElementName(uStyle);
    const XMLElement* const pLayout = root.FirstChildElement(szLayout);
    if (!pLayout) {
        findings.Error(root.GetLineNum(),
                       Quoted(szLayout) + " is missing: profiles of this style are not loaded");
        return;
    }
    for (const char* szPart : {"Group", "Template"})
        if (!pLayout->FirstChildElement(szPart))
            findings.Error(pLayout->GetLineNum(), Quoted(szPart) + " is missing in " + Quoted(szLayout) +
                                                      ": profiles of this style are not loaded");
}

} // namespace companion
