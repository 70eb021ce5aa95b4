#include "tools/profile/program.h"
#include "companion/utf.h"
#include "companion/whole_file.h"
#include <algorithm>
#include <cstdio>
#include <iterator>

namespace companion {
namespace {

struct Action {
    ProfileVerb eVerb;
    Result (*fnDo)(const Options& stOptions, int& iExitCode);
};

constexpr Action kActions[] = {
    {ProfileVerb::List, ListProfiles},       {ProfileVerb::Check, CheckProfileCommand},
    {ProfileVerb::Render, RenderCommand},    {ProfileVerb::FontWrite, WriteFontCache},
    {ProfileVerb::FontList, ListFontCache},  {ProfileVerb::FontCheck, CheckFontCache},
    {ProfileVerb::Rows, ListRows},           {ProfileVerb::LanguageList, ListLanguages},
    {ProfileVerb::LanguageUse, UseLanguage}, {ProfileVerb::LanguageOff, LeaveLanguage},
};

Result Perform(const Options& stOptions, int& iExitCode) {
    const auto it = std::find_if(std::begin(kActions), std::end(kActions), [&](const Action& st) {
        return stOptions.eVerb == Verb::Profile && st.eVerb == stOptions.stProfile.eVerb;
    });
    if (it == std::end(kActions)) return Result::Usage("that is a command of orvin-osd");
    return it->fnDo(stOptions, iExitCode);
}

} // namespace

int ToolMain(const std::vector<std::string>& listArguments) {
    const Parsed stParsed = ParseArguments(listArguments);
    if (stParsed.bLeave && stParsed.iExitCode == kOk) {
        std::fputs(stParsed.strText.c_str(), stdout);
        return kOk;
    }
    int iExitCode = kOk;
    Result stResult = stParsed.bLeave ? Result{stParsed.iExitCode, stParsed.strText}
                                      : Perform(stParsed.stOptions, iExitCode);
    if (stResult) stResult = NeedWholeOutput();
    if (stResult) return iExitCode;
    // Named after the program that people run.
    if (!stResult.strError.empty())
        std::fprintf(stderr, "orvin-osd: %s\n", Printable(stResult.strError).c_str());
    return stResult.iCode;
}

} // namespace companion
