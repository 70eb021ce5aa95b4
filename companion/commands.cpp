#include "companion/commands.h"
#include "companion/choices.h"
#include "companion/config.h"
#include "companion/feed_state.h"
#include "companion/keys/keys.h"
#include "companion/problem_report.h"
#include "companion/profile_commands.h"
#include "companion/readiness.h"
#include "companion/recording/record.h"
#include "companion/recording/report.h"
#include "companion/reports.h"
#include "companion/segment_view.h"
#include "companion/shot.h"
#include "companion/target.h"
#include "companion/top.h"
#include "companion/user_data.h"
#include "companion/utf.h"
#include "companion/values.h"
#include "companion/video.h"
#include "companion/watch.h"
#include "companion/whole_file.h"
#include "platform/tool.h"
#include "platform/tool_input.h"
#include "shared/commands.h"
#include <algorithm>
#include <cstdio>
#include <iterator>

namespace companion {
namespace {

struct Context {
    const Options& stOptions;
    const std::vector<std::string>& listWords; ///< as they were given
    ControlLibrary stLibrary;
    int iExitCode = kOk; ///< exit code of a successful command
};

/// Success if what a program would show is fit to use, or the user insists.
Result NeedReadyOrForce(const Context& st, const std::string& strProgram) {
    return st.stOptions.bForce ? Result{} : NeedReady(st.stLibrary, strProgram);
}

/// What a program is entered with: values of a feed that was killed are gone, choices in place.
void BringUpToDate(const ControlLibrary& stLibrary) {
    const std::string strLine = TakenBackText(TakeBackDeadValues(stLibrary));
    if (!strLine.empty()) std::fprintf(stderr, "orvin-osd: %s", strLine.c_str());
    ApplyChoices(stLibrary);
}

Result DoRun(Context& st) {
    const Result stLoaded = LoadControlLibrary(st.stOptions.strLibrary, st.stLibrary);
    if (!stLoaded && platform::tool::RunNeedsLibrary()) return stLoaded;
    if (stLoaded) BringUpToDate(st.stLibrary);
    const std::string& strProgram = st.stOptions.strTarget;
    const Result stReady = NeedReadyOrForce(st, strProgram);
    if (!stReady)
        std::fprintf(stderr, "orvin-osd: %s starts without the overlay: %s\n", Printable(strProgram).c_str(),
                     Printable(stReady.strError).c_str());
    const platform::tool::RunRequest stRequest{
        LibraryPath(st.stOptions.strLibrary), strProgram, st.stOptions.listArguments, !stReady,
        [&](u32 uId) { ApplyChoiceOf(st.stLibrary, strProgram, uId); }};
    return platform::tool::Run(stRequest, st.stLibrary.Entering(), st.iExitCode);
}

Result DoAttach(Context& st) {
    Result stResult = platform::tool::CanEnterRunningPrograms();
    if (!stResult) return stResult;
    u32 uProcessId = 0;
    stResult = ResolveTarget(st.stOptions.strTarget, uProcessId);
    if (stResult) stResult = LoadControlLibrary(st.stOptions.strLibrary, st.stLibrary);
    if (!stResult) return stResult;
    BringUpToDate(st.stLibrary);
    const std::string strProgram = platform::tool::InspectProcess(uProcessId).strName;
    stResult = NeedReadyOrForce(st, strProgram);
    if (!stResult) return stResult;
    ApplyChoiceOf(st.stLibrary, strProgram, uProcessId);
    return platform::tool::Attach(uProcessId, st.stOptions.bStay, st.stLibrary.Entering());
}

Result DoHook(Context& st) {
    Result stResult = platform::tool::CanEnterRunningPrograms();
    if (stResult) stResult = LoadControlLibrary(st.stOptions.strLibrary, st.stLibrary);
    if (!stResult) return stResult;
    if (st.stOptions.bInit) st.stLibrary.fnInitialise();
    BringUpToDate(st.stLibrary);
    stResult = NeedReadyOrForce(st, "");
    if (!stResult) return stResult;
    return platform::tool::Hook(st.stLibrary.Entering(), [&] { ApplyChoices(st.stLibrary); });
}

Result DoUnhook(Context&) {
    Result stResult = platform::tool::CanEnterRunningPrograms();
    return stResult ? platform::tool::Unhook() : stResult;
}

Result DoInit(Context& st) {
    ForgetDead(st.stLibrary);
    const size_t uPrograms = Programs(st.stLibrary).size();
    if (uPrograms != 0 && !st.stOptions.bYes) {
        return Result::Fail("init: " + std::to_string(uPrograms) +
                            " running programs would lose their records; confirm with --yes");
    }
    st.stLibrary.fnInitialise();
    return {};
}

Result DoEnable(Context& st) {
    const bool bOn = st.stOptions.eVerb == Verb::On;
    st.stLibrary.fnSendCommand(COMMAND_ENABLE, 0, 0, bOn ? 1 : 0);
    return NeedHolder(st.stLibrary);
}

Result DoReload(Context& st) {
    const u32 uPid = st.stOptions.uPid;
    if (uPid != 0) return ReloadProcess(st.stLibrary, uPid);
    ReloadAll(st.stLibrary);
    return NeedPrograms(st.stLibrary);
}

/// Thread id to write to: a thread id of 0 would reach everyone, so a process is addressed by its record's
/// thread.
Result SendTarget(const Context& st, u32& uTid) {
    uTid = st.stOptions.uTid;
    if (st.stOptions.uPid == 0 || uTid != 0) return {};
    const auto pSnapshot = Snapshot(st.stLibrary.pSegment);
    const auto uSlot = FindRecord(pSnapshot->CommandTable, st.stOptions.uPid);
    if (!uSlot) return Result::NotFound("process " + std::to_string(st.stOptions.uPid) + " holds no record");
    uTid = pSnapshot->CommandTable[*uSlot].uThreadId;
    return {};
}

void WriteSources(const Context& st) {
    const Options& stOptions = st.stOptions;
    WriteFilter(st.stLibrary, stOptions.uFilterPid, stOptions.uFilterTid, stOptions.strFilterProfile);
    if (stOptions.uByte) {
        st.stLibrary.fnSetScreenshot(&*stOptions.uByte);
        st.stLibrary.fnSetTimer(&*stOptions.uByte);
    }
    if (!stOptions.listPositions.empty()) {
        u32 auWords[g_uMonitorPosWords] = {};
        const size_t uWords = std::min<size_t>(stOptions.listPositions.size(), g_uMonitorPosWords);
        std::copy_n(stOptions.listPositions.begin(), uWords, auWords);
        st.stLibrary.fnSetPositions(auWords);
    }
}

Result DoSend(Context& st) {
    const Options& stOptions = st.stOptions;
    u32 uTid = 0;
    const Result stTarget = SendTarget(st, uTid);
    if (!stTarget) return stTarget;
    WriteSources(st);
    const u32 uAnswer =
        st.stLibrary.fnSendCommand(stOptions.uCommand, stOptions.uPid, uTid, stOptions.iArgument);
    const bool bDisables = stOptions.uCommand == COMMAND_ENABLE && stOptions.iArgument == 0;
    if (uAnswer == g_uSendCmdFailed && !bDisables) {
        return Result::Fail("the library does not know command " + std::to_string(stOptions.uCommand) +
                            (stOptions.uCommand <= g_uCommandLast ? " (not used)" : ""));
    }
    const bool bWritesNothing = stOptions.uCommand == COMMAND_NOTHING ||
                                (stOptions.uCommand == COMMAND_POSITIONS && stOptions.iArgument == 0);
    return bWritesNothing ? Result{} : NeedPrograms(st.stLibrary);
}

Result DoProfileName(Context& st) {
    const Result stThere = NeedProfileFolder(st.stOptions.strTarget, st.stOptions.stProfile.bForce);
    return stThere ? UseProfile(st.stLibrary, st.stOptions.strTarget) : stThere;
}

Result DoProfile(Context& st) { return PerformProfile(st.stOptions, st.listWords, st.iExitCode); }

Result DoFrameTime(Context& st) {
    st.stLibrary.fnEnableQueryFrameTime(st.stOptions.bEnable ? 1 : 0);
    return NeedHolder(st.stLibrary);
}

Result DoStatus(Context& st) {
    ForgetDead(st.stLibrary);
    PrintStatus(st.stLibrary, st.stOptions);
    return {};
}

Result DoDump(Context& st) {
    PrintDump(st.stLibrary, st.stOptions);
    return {};
}

Result DoDoctor(Context& st) {
    u32 uProcessId = 0;
    if (st.stOptions.strTarget.empty()) {
        st.iExitCode = PrintCheckup(st.stLibrary, st.stOptions);
        return {};
    }
    const Result stResult = ResolveTarget(st.stOptions.strTarget, uProcessId);
    if (!stResult) return stResult;
    st.iExitCode = PrintDiagnosis(st.stLibrary, uProcessId, st.stOptions);
    return {};
}

Result DoFeed(Context& st) {
    const Result stFed = Feed(st.stLibrary, st.stOptions);
    // Numbers go blank with their values; gauges and graphs would stand at the last ones.
    if (stFed && !st.stOptions.bOnce) ReloadAll(st.stLibrary);
    return stFed && st.stOptions.bOnce ? NeedHolder(st.stLibrary) : stFed;
}

Result DoSensors(Context& st) {
    PrintSensors(st.stOptions);
    return {};
}

Result DoNames(Context& st) {
    PrintNames(st.stLibrary, st.stOptions);
    return {};
}

Result DoSet(Context& st) {
    TakeBackDeadValues(st.stLibrary); // or the next companion took this value back with the dead ones
    const Result stSet =
        SetValue(sensors::TargetOf(st.stLibrary), st.stOptions.strTarget, st.stOptions.iValue);
    return stSet ? NeedHolder(st.stLibrary) : stSet;
}

Result DoTop(Context& st) {
    Watch(st.stLibrary, st.stOptions);
    return {};
}

Result DoSetup(Context& st) {
    if (InstalledData().empty())
        return Result::NotFound("no installed data belongs to this program; the data folder is yours alone");
    return st.stOptions.bRemove ? RemoveUserData() : LayOutUserData();
}

Result DoRecord(Context& st) {
    ForgetDead(st.stLibrary);
    return RecordFrames(st.stLibrary, st.stOptions);
}

Result DoReport(Context& st) { return WriteReport(st.stOptions); }

Result DoReportProblem(Context& st) { return ReportProblem(st.stLibrary, st.stOptions); }

Result DoShot(Context& st) { return TakeShots(st.stLibrary, st.stOptions); }

/// Settings are read when a layout is built. Programs that were not told see them with their next one.
void ReloadIfPossible(Context& st) {
    if (LoadControlLibrary(st.stOptions.strLibrary, st.stLibrary)) ReloadAll(st.stLibrary);
}

Result DoVideo(Context& st) {
    const VideoOptions& stVideo = st.stOptions.stVideo;
    if (stVideo.bList) {
        PrintVideoSources(st.stOptions.bJson);
        return {};
    }
    if (stVideo.bSetup || stVideo.bDisable) {
        const Result stSet = stVideo.bDisable ? DisableVideo(stVideo.uSource) : SetUpVideo(stVideo);
        if (!stSet) return stSet;
        ReloadIfPossible(st);
    }
    const bool bOnlySettings = stVideo.bSetup && !stVideo.bTestPattern &&
                               platform::tool::IsInputTerminal(); // nothing comes from there
    return stVideo.bDisable || bOnlySettings ? Result{} : WriteVideo(stVideo);
}

Result DoControl(Context& st) { return SendControl(st.stOptions.stVideo); }

Result DoWatch(Context& st) {
    WatchPrograms(st.stLibrary);
    return {};
}

Result DoConfig(Context& st) {
    return Config(st.stOptions, [&] { ReloadIfPossible(st); });
}

/// The list needs no library.
Result DoKeys(Context& st) {
    if (st.stOptions.bList) return keys::PrintKeys(st.stOptions.bJson);
    if (st.stOptions.strTarget.empty() && !keys::CanListen()) return keys::TellWhyNot();
    const Result stLoaded = LoadControlLibrary(st.stOptions.strLibrary, st.stLibrary);
    if (!stLoaded) return stLoaded;
    BringUpToDate(st.stLibrary);
    return st.stOptions.strTarget.empty() ? keys::Listen(st.stOptions.strLibrary)
                                          : keys::Do(st.stLibrary, st.stOptions);
}

struct Action {
    Verb eVerb;
    bool bLoadsLibrary; ///< the library is loaded before the action runs
    Result (*fnDo)(Context&);
};

constexpr Action kActions[] = {
    {Verb::Run, false, DoRun},
    {Verb::Attach, false, DoAttach},
    {Verb::Hook, false, DoHook},
    {Verb::Unhook, false, DoUnhook},
    {Verb::Init, true, DoInit},
    {Verb::Status, true, DoStatus},
    {Verb::On, true, DoEnable},
    {Verb::Off, true, DoEnable},
    {Verb::Reload, true, DoReload},
    {Verb::Send, true, DoSend},
    {Verb::FrameTime, true, DoFrameTime},
    {Verb::ProfileName, true, DoProfileName},
    {Verb::Dump, true, DoDump},
    {Verb::Doctor, true, DoDoctor},
    {Verb::Feed, true, DoFeed},
    {Verb::Sensors, false, DoSensors},
    {Verb::Names, true, DoNames},
    {Verb::Set, true, DoSet},
    {Verb::Top, true, DoTop},
    {Verb::Profile, false, DoProfile},
    {Verb::Setup, false, DoSetup},
    {Verb::Shot, true, DoShot},
    {Verb::Video, false, DoVideo},
    {Verb::Control, false, DoControl},
    {Verb::Config, false, DoConfig},
    {Verb::Watch, true, DoWatch},
    {Verb::Record, true, DoRecord},
    {Verb::Report, false, DoReport},
    {Verb::Keys, false, DoKeys},
    {Verb::ReportProblem, true, DoReportProblem},
};

Result Perform(Context& st) {
    const auto it = std::find_if(std::begin(kActions), std::end(kActions), [&](const Action& stAction) {
        return stAction.eVerb == st.stOptions.eVerb;
    });
    if (it == std::end(kActions)) return Result::Usage("a command is required");
    if (it->bLoadsLibrary) {
        Result stLoaded = LoadControlLibrary(st.stOptions.strLibrary, st.stLibrary);
        if (!stLoaded) return stLoaded;
    }
    return it->fnDo(st);
}

int Tell(const Result& st, int iExitCode) {
    if (st) return iExitCode;
    std::fprintf(stderr, "orvin-osd: %s\n", Printable(st.strError).c_str());
    return st.iCode;
}

} // namespace

int Main(const std::vector<std::string>& listArguments) {
    const Parsed stParsed = ParseArguments(listArguments);
    if (stParsed.bLeave && stParsed.iExitCode == kOk) {
        std::fputs(stParsed.strText.c_str(), stdout);
        return Tell(NeedWholeOutput(), kOk);
    }
    if (stParsed.bLeave) {
        std::fprintf(stderr, "orvin-osd: %s (see orvin-osd --help)\n", Printable(stParsed.strText).c_str());
        return stParsed.iExitCode;
    }
    if (stParsed.stOptions.eVerb != Verb::Setup) {
        const Result stLaid = LayOutUserData(); // what is asked for may do without it
        if (!stLaid) std::fprintf(stderr, "orvin-osd: %s\n", Printable(stLaid.strError).c_str());
    }
    Context st{stParsed.stOptions, listArguments, {}, kOk};
    Result stResult = Perform(st);
    if (platform::tool::SegmentWasCut())
        stResult = Result::Fail("somebody has shortened " + st.stLibrary.strSegmentPlace);
    if (stResult) stResult = NeedWholeOutput();
    return Tell(stResult, st.iExitCode);
}

} // namespace companion
