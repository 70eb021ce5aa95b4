#include "companion/profile_options.h"
#include "companion/options.h"
#include "companion/profile_folder.h"
#include <CLI/CLI.hpp>
#include <charconv>

namespace companion {
namespace {

/// One command of a group; the group's own verb is the same for all.
struct Command {
    ProfileVerb eVerb;
    const char* szName;
    const char* szHelp;
};

CLI::App* AddGroup(CLI::App& app, Options& st, const char* szName, const char* szHelp) {
    CLI::App* pGroup = app.add_subcommand(szName, szHelp);
    pGroup->require_subcommand(1);
    pGroup->callback([&st] { st.eVerb = Verb::Profile; });
    return pGroup;
}

CLI::App* AddCommand(CLI::App* pGroup, Options& st, const Command& stCommand) {
    CLI::App* pCommand = pGroup->add_subcommand(stCommand.szName, stCommand.szHelp);
    pCommand->callback([&st, eVerb = stCommand.eVerb] { st.stProfile.eVerb = eVerb; });
    pCommand
        ->add_option("--data", st.stProfile.strData,
                     "another data folder; default: the one that programs on this machine use")
        ->type_name("FOLDER");
    return pCommand;
}

void AddLibrary(CLI::App* pCommand, Options& st) {
    pCommand
        ->add_option("--library", st.strLibrary,
                     "the overlay's library; default: the one beside this program")
        ->type_name("PATH");
}

CLI::Option* AddProfile(CLI::App* pCommand, Options& st) {
    return pCommand
        ->add_option("profile", st.stProfile.strProfile,
                     "name of a profile in the data folder, or the path of its folder or OSD.xml")
        ->required()
        ->type_name("NAME|PATH");
}

CLI::Option* AddName(CLI::App* pCommand, Options& st) {
    return pCommand->add_option("name", st.stProfile.strProfile, "name of a profile in the data folder")
        ->type_name("NAME");
}

void AddForce(CLI::App* pCommand, Options& st) {
    pCommand->add_flag("--force", st.stProfile.bForce, "without checking the profile first");
}

void AddChoosing(CLI::App* pGroup, Options& st) {
    ProfileOptions& stProfile = st.stProfile;
    CLI::App* pList = AddCommand(
        pGroup, st,
        {ProfileVerb::List, "list", "list the profiles with their layout style, and which are in use"});
    pList->add_flag("--json", stProfile.bJson, "as JSON");
    AddLibrary(pList, st);
    CLI::App* pUse = AddCommand(
        pGroup, st,
        {ProfileVerb::Use, "use", "show a profile in all programs that have none of their own, from now on"});
    AddName(pUse, st)->required();
    AddForce(pUse, st);
    AddLibrary(pUse, st);
    CLI::App* pFor = AddCommand(
        pGroup, st,
        {ProfileVerb::For, "for",
         "show a profile in the running programs of that name, or in one by its id, until they end"});
    pFor->add_option("program", stProfile.strProgram, "process name or id")
        ->required()
        ->type_name("PROGRAM|PID");
    CLI::Option* pName = AddName(pFor, st);
    pFor->add_flag("--global", stProfile.bGlobal, "show the profile of all programs again")->excludes(pName);
    AddForce(pFor, st);
    AddLibrary(pFor, st);
    CLI::App* pNew =
        AddCommand(pGroup, st, {ProfileVerb::New, "new", "make a profile by copying another one's folder"});
    AddName(pNew, st)->required();
    CLI::Option* pFrom = pNew->add_option("--from", stProfile.strFrom, "the profile to copy");
    pFrom->type_name("NAME|PATH");
    pNew->add_option("--style", stProfile.strStyle, "copy the shipped profile of a style instead")
        ->type_name("classic|rv5|custom")
        ->check(CLI::IsMember({"classic", "rv5", "custom"}))
        ->excludes(pFrom);
}

void AddRender(CLI::App* pGroup, Options& st) {
    ProfileOptions& stProfile = st.stProfile;
    CLI::App* pRender = AddCommand(
        pGroup, st,
        {ProfileVerb::Render, "render", "draw a profile into a picture, without any program or display"});
    AddProfile(pRender, st);
    pRender->add_option("-o,--output", stProfile.strOutput, "the picture to write")
        ->required()
        ->type_name("PNG");
    const auto fnSize = [&stProfile](const std::string& str) {
        if (!ParseSize(str, stProfile.uWidth, stProfile.uHeight))
            throw CLI::ValidationError("--size", "is written as 1280x720, each side from 16 to 8192");
    };
    pRender->add_option_function<std::string>("--size", fnSize, "pixels; default 1920x1080")
        ->type_name("WxH");
    pRender->add_option("--background", stProfile.strBackground, "what lies behind; default dark")
        ->type_name("PICTURE|#RRGGBB|bright|dark|checker");
    pRender
        ->add_option("--values", stProfile.strValues,
                     "made-up values that move, those of this machine, or a file with a NAME VALUE on each "
                     "line; default sample")
        ->type_name("sample|live|FILE");
    CLI::Option* pFrames =
        pRender->add_option("--frames", stProfile.uFrames, "frames to draw before the picture is taken");
    pFrames->type_name("N")->check(CLI::Range(1u, g_uMostFrames));
    pRender
        ->add_option("--seconds", stProfile.fSeconds,
                     "simulated time before the picture is taken, so that graphs fill; default 60")
        ->type_name("S")
        ->check(CLI::Range(0.02, 600.0))
        ->excludes(pFrames);
    pRender->add_flag("--watch", stProfile.bWatch,
                      "draw again whenever a file of the profile changes, until Ctrl-C");
    pRender->add_flag("--times", stProfile.bTimes, "tell what the first frame cost");
    pRender->add_flag("-v,--verbose", stProfile.bVerbose, "print what the overlay logs");
    AddLibrary(pRender, st);
}

void AddCheck(CLI::App* pGroup, Options& st) {
    CLI::App* pCheck =
        AddCommand(pGroup, st,
                   {ProfileVerb::Check, "check",
                    "tell what is wrong with a profile; exit code 0 only if a program may use it"});
    AddProfile(pCheck, st);
    pCheck->add_flag("--json", st.stProfile.bJson, "as JSON");
    pCheck->add_flag("--quiet", st.stProfile.bQuiet, "errors and warnings only");
    pCheck->add_flag("--silent", st.stProfile.bSilent, "nothing at all; the exit code tells");
    AddLibrary(pCheck, st);
}

void AddRows(CLI::App& app, Options& st) {
    ProfileOptions& stProfile = st.stProfile;
    CLI::App* pRows = app.add_subcommand(
        "rows",
        "list the rows of a profile of the Classic or RV5 style: which are on, which this machine has, "
        "which have a value now, and where they stand");
    pRows->callback([&st] {
        st.eVerb = Verb::Profile;
        st.stProfile.eVerb = ProfileVerb::Rows;
    });
    pRows
        ->add_option("profile", stProfile.strProfile,
                     "name of a profile or path; default: that of all programs")
        ->type_name("NAME|PATH");
    pRows->add_option("--data", stProfile.strData, "another data folder; default: the one of this machine")
        ->type_name("FOLDER");
    const auto fnSize = [&stProfile](const std::string& str) {
        if (!ParseSize(str, stProfile.uWidth, stProfile.uHeight))
            throw CLI::ValidationError("--size", "is written as 1280x720, each side from 16 to 8192");
    };
    pRows
        ->add_option_function<std::string>("--size", fnSize,
                                           "picture that the boxes of --json are for; default 1920x1080")
        ->type_name("WxH");
    pRows->add_flag("--json", stProfile.bJson, "as JSON");
    AddLibrary(pRows, st);
}

void AddLanguage(CLI::App& app, Options& st) {
    ProfileOptions& stProfile = st.stProfile;
    CLI::App* pGroup =
        AddGroup(app, st, "language", "the language of captions in the Classic and RV5 styles");
    CLI::App* pList = AddCommand(pGroup, st,
                                 {ProfileVerb::LanguageList, "list",
                                  "list the languages, and whether their letters can be drawn here"});
    pList->add_flag("--json", stProfile.bJson, "as JSON");
    CLI::App* pUse = AddCommand(
        pGroup, st,
        {ProfileVerb::LanguageUse, "use", "show captions in a language, in all programs from now on"});
    pUse->add_option("name", stProfile.strProfile, "a language of the list")->required()->type_name("NAME");
    AddLibrary(pUse, st);
    CLI::App* pOff =
        AddCommand(pGroup, st, {ProfileVerb::LanguageOff, "off", "show the built-in captions again"});
    AddLibrary(pOff, st);
}

void AddFontCache(CLI::App& app, Options& st) {
    ProfileOptions& stProfile = st.stProfile;
    CLI::App* pGroup =
        AddGroup(app, st, "fontcache",
                 "font cache files (.fnt), with which a profile's first frame need not draw its glyphs");
    CLI::App* pWrite = AddCommand(
        pGroup, st, {ProfileVerb::FontWrite, "write", "write the files that a profile's fonts look for"});
    AddProfile(pWrite, st);
    pWrite->add_option("--out", stProfile.strOutput, "another folder; default: the profile's own")
        ->type_name("FOLDER");
    pWrite->add_flag("-v,--verbose", stProfile.bVerbose, "print what the overlay logs");
    CLI::App* pList = AddCommand(
        pGroup, st, {ProfileVerb::FontList, "list", "list the files of a profile, or of all profiles"});
    pList->add_option("profile", stProfile.strProfile, "name of a profile or path")->type_name("NAME|PATH");
    pList->add_flag("--json", stProfile.bJson, "as JSON");
    CLI::App* pCheck = AddCommand(
        pGroup, st, {ProfileVerb::FontCheck, "check", "tell whether a file can be loaded, and why not"});
    pCheck->add_option("file", stProfile.strProfile, "the file")->required()->type_name("FILE");
}

} // namespace

void AddProfileVerbs(CLI::App& app, Options& st) {
    CLI::App* pGroup =
        AddGroup(app, st, "profile", "the profiles of this machine: choose, make, check, draw");
    AddChoosing(pGroup, st);
    AddCheck(pGroup, st);
    AddRender(pGroup, st);
    AddRows(app, st);
    AddLanguage(app, st);
    AddFontCache(app, st);
}

bool ParseSize(const std::string& strText, u32& uWidth, u32& uHeight) {
    const size_t uCross = strText.find('x');
    if (uCross == std::string::npos) return false;
    const char* const pEnd = strText.data() + strText.size();
    const char* const pCross = strText.data() + uCross;
    u32 uW = 0, uH = 0;
    const auto stW = std::from_chars(strText.data(), pCross, uW);
    const auto stH = std::from_chars(pCross + 1, pEnd, uH);
    if (stW.ec != std::errc() || stW.ptr != pCross || stH.ec != std::errc() || stH.ptr != pEnd) return false;
    const auto fnFits = [](u32 u) { return u >= g_uSmallestPicture && u <= g_uLargestPicture; };
    if (!fnFits(uW) || !fnFits(uH)) return false;
    uWidth = uW;
    uHeight = uH;
    return true;
}

Result CheckProfileOptions(const ProfileOptions& st) {
    if (st.eVerb == ProfileVerb::New && st.strFrom.empty() && st.strStyle.empty())
        return Result::Usage("profile new: --from or --style is required");
    const bool bByName = st.eVerb == ProfileVerb::Use || st.eVerb == ProfileVerb::New ||
                         (st.eVerb == ProfileVerb::For && !st.bGlobal);
    if (st.eVerb == ProfileVerb::For && !st.bGlobal && st.strProfile.empty())
        return Result::Usage("profile for: NAME or --global is required");
    const std::string strFault = bByName ? ProfileNameFault(st.strProfile) : std::string();
    if (!strFault.empty()) return Result::Usage("the profile name " + st.strProfile + " " + strFault);
    return {};
}

bool IsToolVerb(ProfileVerb eVerb) {
    return eVerb != ProfileVerb::None && eVerb != ProfileVerb::Use && eVerb != ProfileVerb::For &&
           eVerb != ProfileVerb::New;
}

} // namespace companion
