#include "companion/options.h"
#include "companion/keys/actions.h"
#include "companion/manual.h"
#include "companion/profile_folder.h"
#include "companion/result.h"
#include "companion/sensors/publisher.h"
#include "companion/setting_table.h"
#include "companion/shot.h"
#include "companion/utf.h"
#include "platform/segment.h"
#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace companion {
namespace {

constexpr const char* kDescription =
    "Brings the ORVIN-OSD overlay into OpenGL programs and talks to the ones that carry it.";
constexpr const char* kFooter =
    "Exit codes: 0 done, 1 failed, 2 wrong usage, 3 nothing found to act on. 'run' "
    "leaves with the program's own code.\nMore: orvin-osd COMMAND --help";

void AddLibrary(CLI::App* pVerb, Options& st) {
    pVerb
        ->add_option("--library", st.strLibrary,
                     "the overlay's library; default: the one beside this program")
        ->type_name("PATH");
}

CLI::App* AddVerb(CLI::App& app, Options& st, Verb eVerb, const char* szName, const char* szHelp) {
    CLI::App* pVerb = app.add_subcommand(szName, szHelp);
    AddLibrary(pVerb, st);
    pVerb->callback([&st, eVerb] { st.eVerb = eVerb; });
    return pVerb;
}

void AddVideo(CLI::App& app, Options& st) {
    const auto [pVideo, pControl] = AddVideoVerbs(app, st.stVideo);
    AddLibrary(pVideo, st); // which programs are told by
    pVideo->add_flag("--json", st.bJson, "with list: as JSON");
    pVideo->callback([&st] { st.eVerb = Verb::Video; });
    pControl->callback([&st] { st.eVerb = Verb::Control; });
}

void AddForce(CLI::App* pVerb, Options& st) {
    pVerb->add_flag("--force", st.bForce, "although the data folder or the profile cannot be used");
}

void AddEntering(CLI::App& app, Options& st) {
    CLI::App* pRun =
        AddVerb(app, st, Verb::Run, "run", "start a program with the overlay: run [--] PROGRAM ARGS");
    pRun->prefix_command();
    AddForce(pRun, st);
    CLI::App* pAttach =
        AddVerb(app, st, Verb::Attach, "attach",
                "let the overlay into a running program, by a message hook on its threads only "
                "(Windows); stays until the program ends or Ctrl-C");
    pAttach->add_option("target", st.strTarget, "process name or id")->required()->type_name("NAME|PID");
    pAttach->add_flag("!--no-stay", st.bStay, "leave as soon as the library is in the program");
    AddForce(pAttach, st);
    CLI::App* pHook =
        AddVerb(app, st, Verb::Hook, "hook",
                "let the overlay into EVERY program that handles messages (Windows); stays until "
                "Ctrl-C or 'unhook'");
    pHook->add_flag("--yes", st.bYes, "confirm that every program of this session is meant");
    pHook->add_flag("--init", st.bInit,
                    "reset the shared segment first; running instances lose their records");
    AddForce(pHook, st);
    AddVerb(app, st, Verb::Unhook, "unhook", "end the hook of another orvin-osd (Windows)");
    CLI::App* pInit = AddVerb(app, st, Verb::Init, "init",
                              "reset the shared segment; running instances lose their records");
    pInit->add_flag("--yes", st.bYes, "reset although instances are alive");
}

void AddReports(CLI::App& app, Options& st) {
    CLI::App* pStatus = AddVerb(app, st, Verb::Status, "status", "list the programs that carry the overlay");
    pStatus->add_flag("--json", st.bJson, "as JSON");
    pStatus->add_flag("--all", st.bAll, "companions too");
    CLI::App* pDump = AddVerb(app, st, Verb::Dump, "dump", "print the whole shared segment, decoded");
    auto* pJson = pDump->add_flag("--json", st.bJson, "as JSON");
    pDump->add_flag("--text", st.bText, "as indented text (the default)")->excludes(pJson);
    pDump->add_flag("--all", st.bAll, "free slots too");
    pDump->add_flag("--raw", st.bRaw, "the opaque areas as hexadecimal bytes");
    CLI::App* pDoctor = AddVerb(
        app, st, Verb::Doctor, "doctor",
        "tell what state the overlay is in inside a program, why, and what to do; without one, what is "
        "amiss on this machine and in each program that carries it; exit code 0 only if all is well");
    pDoctor->add_option("target", st.strTarget, "process id or name")->type_name("PID|NAME");
    pDoctor->add_flag("--json", st.bJson, "as JSON");
}

void AddControls(CLI::App& app, Options& st) {
    AddVerb(app, st, Verb::On, "on", "switch the overlay on in every program");
    AddVerb(app, st, Verb::Off, "off", "switch the overlay off in every program");
    CLI::App* pReload = AddVerb(app, st, Verb::Reload, "reload",
                                "release the overlay and build it anew from its files, in every program");
    pReload->add_option("--pid", st.uPid, "only in this process")->type_name("PID");
    CLI::App* pProfile =
        AddVerb(app, st, Verb::ProfileName, "profile-name",
                "the same as 'profile use' without its check of the profile; the name may be empty "
                "for the default");
    pProfile->add_option("name", st.strTarget, "name of a folder under Profiles; empty for the default")
        ->required()
        ->type_name("NAME");
    pProfile->add_flag("--force", st.stProfile.bForce, "although there is no profile of that name");
    CLI::App* pFrameTime =
        AddVerb(app, st, Verb::FrameTime, "frametime", "switch the report of frame times on or off");
    pFrameTime->add_option("state", st.strTarget, "on or off")
        ->required()
        ->type_name("on|off")
        ->check(CLI::IsMember({"on", "off"}));
}

void AddInterval(CLI::App* pVerb, Options& st, const char* szHelp) {
    pVerb->add_option("--interval", st.uInterval, szHelp)
        ->type_name("MS")
        ->check(CLI::Range(g_uShortestInterval, g_uLongestInterval));
}

void AddValues(CLI::App& app, Options& st) {
    CLI::App* pFeed =
        AddVerb(app, st, Verb::Feed, "feed",
                "publish this machine's sensors to every program that carries the overlay, until "
                "Ctrl-C; the values then vanish again");
    AddInterval(pFeed, st, "milliseconds between two publications; default 500");
    auto* pOnce = pFeed->add_flag("--once", st.bOnce, "publish once, leave the values and end");
    pFeed
        ->add_option(
            "--frames", st.strFrames,
            "publish lows and stutters of this program's frames too (AVG_FRAME#0, P1_FRAME#0, P01_FRAME#0, "
            "STUTTER_CNT#0)")
        ->type_name("PROGRAM|PID")
        ->excludes(pOnce);
    pFeed->add_flag("--watch", st.bWatch, "watch programs too, as 'watch' does");
    pFeed->add_flag("--keys", st.bKeys, "listen to keys too, as 'keys' does")->excludes(pOnce);
    AddVerb(app, st, Verb::Watch, "watch",
            "watch the programs that carry the overlay until Ctrl-C: frame limits that hold no more are "
            "revived; profiles that do not load, programs that stand still and feeds that died are told");
    CLI::App* pSensors =
        AddVerb(app, st, Verb::Sensors, "sensors", "list the sensors of this machine with their values");
    pSensors->add_flag("--json", st.bJson, "as JSON");
    CLI::App* pNames = AddVerb(app, st, Verb::Names, "names",
                               "list the data names that a layout may use, with current values");
    pNames->add_flag("--json", st.bJson, "as JSON");
    CLI::App* pSet = AddVerb(app, st, Verb::Set, "set",
                             "publish one value by hand, beside those that are published already");
    pSet->add_option("name", st.strTarget, "data name, such as GPU_CLK#0")->required()->type_name("NAME");
    const auto fnNotEmpty = [](const std::string& str) {
        return std::string(str.empty() ? "VALUE is empty" : "");
    };
    pSet->add_option("value", st.iValue, "whole number of 32 bits")
        ->required()
        ->type_name("VALUE")
        ->check(fnNotEmpty);
    CLI::App* pTop =
        AddVerb(app, st, Verb::Top, "top", "watch the programs that carry the overlay: frame time and rate");
    AddInterval(pTop, st, "milliseconds between two tables; default 1000");
    pTop->add_flag("--once", st.bOnce, "print one table and end");
}

void AddSend(CLI::App& app, Options& st) {
    CLI::App* pSend = AddVerb(
        app, st, Verb::Send, "send",
        "send a raw command: 0 enable (argument 0: disable), 3 release, 4 positions and status (argument: "
        "bits), 5 screenshot, 6 stopwatch, 7 release for everyone, 9 rebuild");
    pSend->add_option("command", st.uCommand, "command number")->required()->type_name("COMMAND");
    pSend->add_option("--pid", st.uPid, "write to the record of this process only")->type_name("PID");
    pSend->add_option("--tid", st.uTid, "write to the record of this thread only")->type_name("TID");
    pSend->add_option("--arg", st.iArgument, "the command's argument")->type_name("N");
    pSend->add_option("--filter-pid", st.uFilterPid, "only this process obeys")->type_name("PID");
    pSend->add_option("--filter-tid", st.uFilterTid, "only this thread obeys")->type_name("TID");
    pSend->add_option("--filter-profile", st.strFilterProfile, "only processes with this profile obey")
        ->type_name("NAME");
    pSend->add_option("--byte", st.uByte, "value byte of commands 5 and 6")
        ->type_name("N")
        ->check(CLI::Range(0, 255));
    pSend
        ->add_option("--positions", st.listPositions,
                     "words of command 4: X,Y,ALIGN of positions 0, 1, 2, then the status value")
        ->type_name("N,N,...")
        ->delimiter(',')
        ->expected(1, static_cast<int>(g_uMonitorPosWords));
}

void AddSetup(CLI::App& app, Options& st) {
    CLI::App* pSetup =
        AddVerb(app, st, Verb::Setup, "setup",
                "lay this user's data folder out over the installed one, as every command does "
                "by itself (installed packages on Linux)");
    pSetup->add_flag("--remove", st.bRemove, "take it back; files of your own stay");
}

void AddShot(CLI::App& app, Options& st) {
    CLI::App* pShot =
        AddVerb(app, st, Verb::Shot, "shot",
                "take a screenshot of a program that carries the overlay, wait until its file is "
                "whole and print the path; settings that it changes come back");
    auto* pTarget = pShot
                        ->add_option("target", st.strTarget,
                                     "file name or process id; not needed while one program "
                                     "carries the overlay")
                        ->type_name("PROGRAM|PID");
    pShot->add_flag("--all", st.bAll, "all programs that carry the overlay")->excludes(pTarget);
    pShot
        ->add_option("--folder", st.strFolder,
                     "where to; default: Camera\\DirPath of the settings, else the data folder")
        ->type_name("FOLDER");
    pShot
        ->add_option("--type", st.strShotType,
                     "png, jpg, bmp, heic, or all for the first three; default: that of the settings")
        ->type_name("TYPE")
        ->check(CLI::IsMember({"png", "jpg", "bmp", "heic", "all"}));
    pShot->add_flag("--without-overlay", st.bWithoutOverlay, "the program's own picture");
    pShot->add_option("--timeout", st.uTimeout, "seconds to wait for each step; default 30")
        ->type_name("S")
        ->check(CLI::Range(1, 3600));
}

void AddConfig(CLI::App& app, Options& st) {
    CLI::App* pConfig = AddVerb(app, st, Verb::Config, "config",
                                "show the settings of the overlay, or one of them, or change it; programs "
                                "that carry the overlay obey at once");
    pConfig->footer(SettingsHelp());
    pConfig->add_option("name", st.strTarget, "name of a setting")->type_name("NAME");
    auto* pValue = pConfig->add_option("value", st.strValue, "what it is to be")->type_name("VALUE");
    pConfig->add_flag("--default", st.bDefault, "what is shipped")->excludes(pValue);
    pConfig->add_flag("--json", st.bJson, "as JSON");
}

void AddKeys(CLI::App& app, Options& st) {
    CLI::App* pKeys =
        AddVerb(app, st, Verb::Keys, "keys",
                "listen to keys until Ctrl-C, whatever program has the keyboard: overlay, next profile, "
                "screenshot, recording and frame limit; 'config' has the combinations");
    auto* pList = pKeys->add_flag("--list", st.bList, "show the keys and the commands that do the same");
    pKeys->add_flag("--json", st.bJson, "with --list: as JSON")->needs(pList);
    CLI::App* pDo = pKeys->add_subcommand("do", "do what a key does, to be bound where a desktop has its own "
                                                "settings of keys");
    AddLibrary(pDo, st);
    const std::string strNames = keys::ActionNames();
    pDo->add_option("action", st.strTarget, "switches and 'record' go over to the other state")
        ->required()
        ->type_name(strNames)
        ->check([](const std::string& str) {
            return keys::FindAction(str) ? std::string() : "do: there is no action " + str;
        });
}

void AddRecording(CLI::App& app, Options& st) {
    CLI::App* pRecord = AddVerb(
        app, st, Verb::Record, "record",
        "write the frame times of a program that carries the overlay, and this machine's sensors, to a "
        "file, until Ctrl-C or the program's end");
    pRecord
        ->add_option("target", st.strTarget,
                     "file name or process id; not needed while one program carries the overlay")
        ->type_name("PROGRAM|PID");
    pRecord->add_option("--seconds", st.uSeconds, "end after so many")
        ->type_name("S")
        ->check(CLI::Range(1, 864000));
    pRecord->add_option("-o,--output", st.strOutput, "default: the program's name and the time, here")
        ->type_name("FILE");
    pRecord->add_option("--while", st.strWhile, "end when this file is taken away")->type_name("FILE");
    AddInterval(pRecord, st, "milliseconds between two looks at the sensors; default 500");
    pRecord->add_flag("--force", st.bForce, "write over a file that exists");
    CLI::App* pReport =
        AddVerb(app, st, Verb::Report, "report",
                "make a page, a text or JSON of recordings: averages, lows, stutters, sensors; several "
                "recordings are compared");
    pReport->add_option("files", st.listFiles, "recordings")
        ->required()
        ->type_name("FILE...")
        ->expected(1, 12);
    pReport->add_option("-o,--output", st.strOutput, "the page; default: report.html")->type_name("FILE");
    auto* pText = pReport->add_flag("--text", st.bText, "as text, on standard output unless -o is given");
    pReport->add_flag("--json", st.bJson, "as JSON, likewise")->excludes(pText);
    pReport->add_flag("--force", st.bForce, "write over a file that exists");
}

void AddReportProblem(CLI::App& app, Options& st) {
    CLI::App* pReport = AddVerb(app, st, Verb::ReportProblem, "report-problem",
                                "write down what is known of a program with a problem: versions, OpenGL, "
                                "doctor's findings, settings, "
                                "profile, cost; shown first, kept if you say so, sent nowhere");
    pReport->add_option("target", st.strTarget, "process name or id")->required()->type_name("PROGRAM|PID");
    pReport->add_flag("--yes", st.bYes, "keep it without showing it and asking");
    pReport->add_option("-o,--output", st.strOutput, "file; default: the program's name and the time, here")
        ->type_name("FILE");
    pReport->add_flag("--force", st.bForce, "write over a file that exists");
}

/// The words behind "--" of a run command belong to the program untouched; they leave listArguments.
std::optional<std::vector<std::string>> SplitProgram(std::vector<std::string>& listArguments) {
    if (listArguments.empty() || listArguments.front() != "run") return std::nullopt;
    const auto it = std::find(listArguments.begin(), listArguments.end(), "--");
    if (it == listArguments.end()) return std::nullopt;
    std::vector<std::string> listProgram(it + 1, listArguments.end());
    listArguments.erase(it, listArguments.end());
    return listProgram;
}

Result TakeProgram(const CLI::App& run, const std::optional<std::vector<std::string>>& listTail,
                   Options& st) {
    std::vector<std::string> listWords = run.remaining();
    if (listTail && !listWords.empty()) listWords.emplace_back("--"); // it belongs to the program
    if (listTail) listWords.insert(listWords.end(), listTail->begin(), listTail->end());
    if (listWords.empty()) return Result::Usage("run: PROGRAM is required");
    if (!listTail && listWords.front().starts_with("-")) {
        return Result::Usage("run: unknown option " + listWords.front() + " (write -- before the program)");
    }
    st.strTarget = listWords.front();
    st.listArguments.assign(listWords.begin() + 1, listWords.end());
    return {};
}

/// The filter's field is shorter than a profile's name may be.
Result CheckFilter(const std::string& strName) {
    if (strName.empty()) return {};
    std::u16string wzName;
    std::string strFault = ProfileNameFault(strName);
    if (strFault.empty() && UnitsFromUtf8(strName, wzName) && wzName.size() >= g_uTargetProfileUnits)
        strFault = "is longer than " + std::to_string(g_uTargetProfileUnits - 1) + " units";
    return strFault.empty() ? Result{} : Result::Usage("the filter's profile " + strFault);
}

Result CheckProfileName(const std::string& strName) {
    const std::string strFault = strName.empty() ? strName : ProfileNameFault(strName);
    return strFault.empty() ? Result{} : Result::Usage("the profile name " + strFault);
}

/// Name and value of a setting, as far as that needs no machine.
Result CheckConfigOptions(const Options& st) {
    if (st.strTarget.empty())
        return st.bDefault ? Result::Usage("config: --default needs the NAME of a setting") : Result{};
    const SettingRow* const pRow = FindSetting(st.strTarget);
    if (!pRow) return Result::Usage("config: there is no setting " + st.strTarget);
    StoredValue stValue;
    if (st.bJson && (st.strValue || st.bDefault)) return Result::Usage("config: --json is for showing");
    return st.strValue ? ParseSetting(*pRow, *st.strValue, stValue) : Result{};
}

Result CheckOptions(Options& st) {
    st.bEnable = st.strTarget == "on";
    if (st.eVerb == Verb::Hook && !st.bYes) {
        return Result::Usage(
            "hook: this puts the library into every program of this session that handles messages; "
            "confirm with --yes");
    }
    if (!st.strFrames.empty() && st.uInterval > g_uLongestFrameInterval)
        return Result::Usage("feed: with --frames the interval is at most " +
                             std::to_string(g_uLongestFrameInterval));
    if (st.eVerb == Verb::ProfileName) {
        return CheckProfileName(st.strTarget);
    }
    if (st.eVerb == Verb::Set) {
        const std::string strFault = sensors::NameFault(st.strTarget);
        if (!strFault.empty()) return Result::Usage("set: the name " + st.strTarget + " " + strFault);
    }
    if (st.eVerb == Verb::Shot) st.uShotType = ShotTypeOf(st.strShotType);
    if (st.eVerb == Verb::Config) return CheckConfigOptions(st);
    if (st.eVerb == Verb::Send) {
        return CheckFilter(st.strFilterProfile);
    }
    if (st.eVerb == Verb::Profile) return CheckProfileOptions(st.stProfile);
    if (st.eVerb == Verb::Video) return CheckVideoOptions(st.stVideo);
    if (st.eVerb == Verb::Control) return CheckControlOptions(st.stVideo);
    return {};
}

Parsed Leave(int iExitCode, std::string strText) {
    Parsed st;
    st.bLeave = true;
    st.iExitCode = iExitCode;
    st.strText = std::move(strText);
    return st;
}

bool IsCommand(const CLI::App& app, const std::string& strWord) {
    const auto listCommands = app.get_subcommands([](const CLI::App*) { return true; });
    return std::any_of(listCommands.begin(), listCommands.end(),
                       [&](const CLI::App* pCommand) { return pCommand->get_name() == strWord; });
}

/// The whole command line; what it is given goes into st.
void Describe(CLI::App& app, Options& st) {
    app.footer(kFooter);
    app.require_subcommand(1);
    app.set_version_flag("--version", std::string("orvin-osd ") + ORVIN_VERSION, "print the version and end");
    AddEntering(app, st);
    AddReports(app, st);
    AddControls(app, st);
    AddSend(app, st);
    AddShot(app, st);
    AddRecording(app, st);
    AddReportProblem(app, st);
    AddValues(app, st);
    AddProfileVerbs(app, st);
    AddVideo(app, st);
    AddConfig(app, st);
    AddKeys(app, st);
    AddSetup(app, st);
}

/// For the build, and left out of the help: man pages and completions, written below a folder.
Parsed Generate(const CLI::App& app, const std::string& strFolder) {
    for (const auto& [strName, strText] : ManualFiles(app, ORVIN_VERSION)) {
        const std::filesystem::path path = PathOfText(strFolder) / strName;
        std::error_code error;
        std::filesystem::create_directories(path.parent_path(), error);
        std::ofstream file(path, std::ios::binary);
        if (!(file << strText).flush()) return Leave(kFailed, "cannot write " + TextOfPath(path));
    }
    return Leave(kOk, "");
}

std::string FirstLine(const std::string& strText) { return strText.substr(0, strText.find('\n')); }

} // namespace

Parsed ParseArguments(std::vector<std::string> listArguments) {
    const auto listTail = SplitProgram(listArguments);
    Parsed stParsed;
    CLI::App app(kDescription, "orvin-osd");
    app.option_defaults()->disable_flag_override(); // no "--yes=5x"
    Describe(app, stParsed.stOptions);
    if (listArguments.size() == 2 && listArguments.front() == "--generate")
        return Generate(app, listArguments.back());
    if (listArguments.empty()) return Leave(kUsage, "a command is required");
    if (!listArguments.front().starts_with("-") && !IsCommand(app, listArguments.front())) {
        return Leave(kUsage, "unknown command " + listArguments.front());
    }
    std::reverse(listArguments.begin(), listArguments.end()); // the parser takes its words from the back
    try {
        app.parse(listArguments);
    } catch (const CLI::Success& success) {
        std::ostringstream out, err;
        app.exit(success, out, err);
        return Leave(kOk, out.str());
    } catch (const CLI::ParseError& error) {
        return Leave(kUsage, FirstLine(error.what()));
    }
    Result stResult = CheckOptions(stParsed.stOptions);
    if (stResult && stParsed.stOptions.eVerb == Verb::Run) {
        stResult = TakeProgram(*app.get_subcommand("run"), listTail, stParsed.stOptions);
    }
    if (!stResult) return Leave(stResult.iCode, stResult.strError);
    return stParsed;
}

} // namespace companion
