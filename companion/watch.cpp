#include "companion/watch.h"
#include "companion/choices.h"
#include "companion/config.h"
#include "companion/feed_state.h"
#include "companion/profile_folder.h"
#include "companion/programs.h"
#include "companion/readiness.h"
#include "companion/utf.h"
#include "platform/tool.h"
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <iterator>

namespace companion {
namespace {

constexpr u32 kTurn = 250;     ///< milliseconds
constexpr u64 kSilence = 5000; ///< milliseconds without a frame

u64 Now() {
    const auto sinceStart = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<u64>(std::chrono::duration_cast<std::chrono::milliseconds>(sinceStart).count());
}

void Log(const std::string& strText) {
    const std::time_t now = std::time(nullptr);
    char szTime[16] = {};
    if (const std::tm* const pLocal = std::localtime(&now))
        std::strftime(szTime, sizeof(szTime), "%H:%M:%S", pLocal);
    std::printf("%s %s\n", szTime, Printable(strText).c_str());
    std::fflush(stdout);
}

/// The profile's name, and when its document was written: the check runs again when either changes.
std::string StampOf(const std::string& strProfile) {
    std::filesystem::path pathData;
    std::error_code error;
    if (!FindDataFolder("", pathData)) return strProfile;
    const auto time =
        std::filesystem::last_write_time(ProfileFolder(pathData, strProfile) / "OSD.xml", error);
    return strProfile + "\n" + (error ? "none" : std::to_string(time.time_since_epoch().count()));
}

/// What a process shows: the profile of its own in the segment counts first.
std::string ShownProfile(const ControlLibrary& stLibrary, u32 uId, const std::string& strProgram) {
    const auto pSnapshot = Snapshot(stLibrary.pSegment);
    const stProcessProfile* const pOwn = FindProcessProfile(pSnapshot->ProcessProfile, uId, 0);
    if (!pOwn || pOwn->uProcessId != uId) return ProfileFor(stLibrary, strProgram);
    const std::string strName = Utf8FromUnits(pOwn->wzProfileName, std::size(pOwn->wzProfileName));
    return strName.empty() ? "Default" : strName;
}

} // namespace

Watcher::Watcher(const ControlLibrary& stLibrary) : m_stLibrary(stLibrary), m_report(stLibrary) {}

Watcher::~Watcher() {
    if (m_uLowered != 0) Restore(m_uLowered);
}

void Watcher::Tell(u32 uId, const std::string& strText) {
    const std::string& strName = m_mapPrograms[uId].strName;
    Log((strName.empty() ? "?" : strName) + " (" + std::to_string(uId) + ") " + strText);
}

void Watcher::Lower(u32 uId) {
    const LimiterNurse& nurse = m_mapPrograms[uId].nurse;
    auto pLowered = std::make_unique<platform::tool::TemporarySettings>();
    const u32 uRate = nurse.LowRate();
    const Result st = pLowered->Set({{"FPSLimiter", "FPSTarget", uRate, {}, false}});
    if (!st) return Tell(uId, "runs far above its frame limit, which cannot be helped: " + st.strError);
    m_pLowered = std::move(pLowered);
    m_uLowered = uId;
    ReloadProcess(m_stLibrary, uId);
    Tell(uId, "runs far above its frame limit of " + std::to_string(m_uRate) + ": held to " +
                  std::to_string(uRate) + " for a second (attempt " + std::to_string(nurse.Attempts()) + ")");
}

void Watcher::Restore(u32 uId) {
    m_uLowered = 0;
    const Result st = m_pLowered->Restore();
    m_pLowered.reset();
    ReloadProcess(m_stLibrary, uId);
    if (!st) return Tell(uId, "the frame limit could not be set back: " + st.strError);
    Tell(uId, "has its frame limit of " + std::to_string(m_uRate) + " again; the next look is in " +
                  std::to_string(m_mapPrograms[uId].nurse.Pause() / 1000) + " s");
}

void Watcher::LookAtLimiter(u32 uId, f32 fFrameTime, u64 uNow) {
    if (m_uLowered != 0 && m_uLowered != uId) return; // the settings are everybody's
    const LimiterStep eStep = m_mapPrograms[uId].nurse.Look({uNow, m_bLimited, m_uRate, fFrameTime});
    if (eStep == LimiterStep::Lower) Lower(uId);
    if (eStep == LimiterStep::Restore && m_uLowered == uId) Restore(uId);
}

/// The API code was reset at the last look; a frame writes it again.
void Watcher::LookAtFrames(u32 uId, const Instance& stInstance, u64 uNow) {
    Program& st = m_mapPrograms[uId];
    const bool bFrames = stInstance.uApiCode != g_uApiCodeUnseen;
    if (bFrames || st.uLastFrame == 0 || m_stLibrary.pSegment->bGlobalEnable == 0) st.uLastFrame = uNow;
    const bool bSilent = uNow - st.uLastFrame >= kSilence;
    if (bSilent && !st.bSilent) Tell(uId, "has presented no frame for 5 seconds");
    if (!bSilent && st.bSilent) Tell(uId, "presents frames again");
    st.bSilent = bSilent;
    LookAtLimiter(uId, bFrames ? stInstance.fFrameTime : 0.0f, uNow);
    if (stInstance.uStatusSlot) m_stLibrary.fnRearmApiCode(stInstance.uThreadId);
}

void Watcher::LookAtProfile(u32 uId) {
    Program& st = m_mapPrograms[uId];
    const std::string strProfile = ShownProfile(m_stLibrary, uId, st.strName);
    const std::string strStamp = StampOf(strProfile);
    if (strStamp == st.strProfile) return;
    st.strProfile = strStamp;
    const Result stGood = NeedGoodProfile(strProfile, "", true);
    if (platform::tool::WaitForStop(0)) return; // the stop ended the check, too
    if (stGood && !st.strFault.empty()) Tell(uId, "the profile " + strProfile + " loads now");
    if (!stGood && st.strFault != stGood.strError)
        Tell(uId, stGood.strError + "; 'orvin-osd profile check " + strProfile + "' tells why");
    st.strFault = stGood.strError;
}

void Watcher::Meet(u64 uNow) {
    for (auto& [uId, st] : m_mapPrograms) st.bSeen = false;
    for (const Instance& stInstance : Programs(m_stLibrary)) {
        const u32 uId = stInstance.uProcessId;
        Program& st = m_mapPrograms[uId];
        st.bSeen = true;
        if (st.strName.empty()) {
            st.strName = platform::tool::InspectProcess(uId).strName;
            Tell(uId, "carries the overlay");
        }
        LookAtProfile(uId);
        LookAtFrames(uId, stInstance, uNow);
    }
    for (auto it = m_mapPrograms.begin(); it != m_mapPrograms.end();) {
        const u32 uId = it->first;
        if (!it->second.bSeen)
            Tell(uId, platform::tool::IsProcessGone(uId, 0) ? "has ended" : "carries the overlay no more");
        if (!it->second.bSeen && m_uLowered == uId) Restore(uId);
        it = it->second.bSeen ? std::next(it) : m_mapPrograms.erase(it);
    }
}

void Watcher::Turn() {
    m_report.Keep();
    ForgetDead(m_stLibrary);
    if (FeedState st = TakeBackDeadValues(m_stLibrary); st.bTakenBack) {
        std::string strLine = TakenBackText(st);
        strLine.pop_back();
        Log(strLine);
    }
    if (m_uLowered == 0) { // else the store says what was set for a while
        m_bLimited = SwitchedOn("limit");
        m_uRate = static_cast<u32>(std::strtoul(SettingNow("limit-rate").c_str(), nullptr, 10));
    }
    Meet(Now());
}

void WatchPrograms(const ControlLibrary& stLibrary) {
    platform::tool::CatchStop();
    Log("watching programs with the overlay; end with Ctrl-C");
    Watcher watcher(stLibrary);
    do watcher.Turn();
    while (!platform::tool::WaitForStop(kTurn) && !platform::tool::SegmentWasCut());
}

} // namespace companion
