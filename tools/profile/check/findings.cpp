#include "tools/profile/check/findings.h"
#include "companion/utf.h"

#include <algorithm>
#include <map>
#include <nlohmann/json.hpp>

namespace companion {
namespace {

/// Nobody reads more, and each is compared with all before it.
constexpr std::size_t g_uFindingsMost = 2000;

std::string Counted(unsigned uCount, const char* szOne) {
    return std::to_string(uCount) + ' ' + szOne + (uCount == 1 ? "" : "s");
}

std::string Line(const Finding& st) {
    std::string str = Printable(st.strFile) + ':';
    if (st.iLine > 0) str += std::to_string(st.iLine) + ':';
    return str + ' ' + SeverityName(st.eSeverity) + ": " + Printable(st.strText) + '\n';
}

bool IsLeftOut(const Finding& st, bool bQuiet) { return bQuiet && st.eSeverity == Severity::Note; }

} // namespace

const char* SeverityName(Severity eSeverity) {
    constexpr const char* aszNames[] = {"error", "warning", "note"};
    return aszNames[static_cast<unsigned>(eSeverity)];
}

void Findings::Add(Severity eSeverity, int iLine, std::string strText) {
    if (IsFull()) return;
    Finding st{m_strFile, iLine, eSeverity, std::move(strText)};
    if (m_list.size() == g_uFindingsMost)
        st = {m_strFile, 0, Severity::Error, "too much is wrong; the rest is left out"};
    if (std::find(m_list.begin(), m_list.end(), st) == m_list.end()) m_list.push_back(std::move(st));
}

bool Findings::IsFull() const { return m_list.size() > g_uFindingsMost; }

unsigned Findings::Count(Severity eSeverity) const {
    return static_cast<unsigned>(std::count_if(
        m_list.begin(), m_list.end(), [eSeverity](const Finding& st) { return st.eSeverity == eSeverity; }));
}

void Findings::Sort() {
    std::map<std::string, std::size_t> mapPlace;
    for (const Finding& st : m_list) mapPlace.emplace(st.strFile, mapPlace.size());
    std::stable_sort(m_list.begin(), m_list.end(), [&](const Finding& a, const Finding& b) {
        const std::size_t uA = mapPlace[a.strFile], uB = mapPlace[b.strFile];
        return uA != uB ? uA < uB : a.iLine < b.iLine;
    });
}

std::string FindingsAsText(const std::string& strProfile, const Findings& findings, bool bQuiet) {
    std::string str;
    for (const Finding& st : findings.All())
        if (!IsLeftOut(st, bQuiet)) str += Line(st);
    if (bQuiet) return str;
    str += Printable(strProfile) + (findings.Passes() ? ": passes" : ": does not pass");
    str += ", " + Counted(findings.Count(Severity::Error), "error");
    str += ", " + Counted(findings.Count(Severity::Warning), "warning");
    str += ", " + Counted(findings.Count(Severity::Note), "note") + '\n';
    return str;
}

std::string FindingsAsJson(const std::string& strProfile, const Findings& findings, bool bQuiet) {
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    for (const Finding& st : findings.All())
        if (!IsLeftOut(st, bQuiet))
            list.push_back({{"file", st.strFile},
                            {"line", st.iLine},
                            {"severity", SeverityName(st.eSeverity)},
                            {"text", st.strText}});
    const nlohmann::ordered_json object = {{"profile", strProfile},
                                           {"passes", findings.Passes()},
                                           {"errors", findings.Count(Severity::Error)},
                                           {"warnings", findings.Count(Severity::Warning)},
                                           {"notes", findings.Count(Severity::Note)},
                                           {"findings", std::move(list)}};
    // Names of files may hold bytes that are no UTF-8.
    return PrintableJson(object.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace)) + '\n';
}

} // namespace companion
