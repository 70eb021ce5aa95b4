#include "companion/manual.h"
#include <CLI/CLI.hpp>
#include <algorithm>
#include <sstream>
#include <vector>

namespace companion {
namespace {

using Apps = std::vector<const CLI::App*>;
using Options = std::vector<const CLI::Option*>;

Apps Commands(const CLI::App& app) {
    return app.get_subcommands([](const CLI::App*) { return true; });
}

Options OptionsOf(const CLI::App& app) {
    return app.get_options([](const CLI::Option* p) { return !p->get_group().empty(); });
}

bool IsFlag(const CLI::Option& option) { return option.get_expected_max() == 0; }

/// As typed: "-o, --output".
std::string Spellings(const CLI::Option& option, const char* szBetween) {
    std::string strAll;
    const auto fnAdd = [&](const std::string& str) { strAll += (strAll.empty() ? "" : szBetween) + str; };
    for (const std::string& str : option.get_snames()) fnAdd("-" + str);
    for (const std::string& str : option.get_lnames()) fnAdd("--" + str);
    return strAll;
}

/// What is special in a man page: a backslash everywhere, a dot or quote at the start of a line. A dash that
/// is typed is told from a hyphen.
std::string Roff(const std::string& str) {
    std::string strOut = !str.empty() && (str[0] == '.' || str[0] == '\'') ? "\\&" : "";
    for (const char c : str) {
        if (c == '\\')
            strOut += "\\e";
        else if (c == '-')
            strOut += "\\-";
        else
            strOut += c == '\n' ? ' ' : c;
    }
    return strOut;
}

std::string Bold(const std::string& str) { return "\\fB" + Roff(str) + "\\fR"; }
std::string Italic(const std::string& str) { return "\\fI" + Roff(str) + "\\fR"; }

void WriteOption(std::ostream& out, const CLI::Option& option) {
    out << ".TP\n";
    if (option.get_positional())
        out << Italic(option.get_type_name());
    else
        out << Bold(Spellings(option, ", "))
            << (IsFlag(option) ? std::string() : " " + Italic(option.get_type_name()));
    out << '\n' << Roff(option.get_description()) << '\n';
}

void WriteOptions(std::ostream& out, const CLI::App& app) {
    for (const CLI::Option* p : OptionsOf(app))
        if (p->get_positional()) WriteOption(out, *p);
    for (const CLI::Option* p : OptionsOf(app))
        if (!p->get_positional()) WriteOption(out, *p);
}

std::string Synopsis(const std::string& strCommand, const CLI::App& app) {
    std::string strLine = Bold(strCommand) + " [" + Italic("OPTION") + "]...";
    if (!Commands(app).empty()) return strLine + " " + Italic("COMMAND") + " ...";
    if (app.get_prefix_command()) return strLine + " [" + Bold("--") + "] " + Italic("PROGRAM ARGS");
    for (const CLI::Option* p : OptionsOf(app)) {
        if (!p->get_positional()) continue;
        const std::string strName = Italic(p->get_type_name());
        strLine += " " + (p->get_required() ? strName : "[" + strName + "]");
    }
    return strLine;
}

std::string Dashed(std::string str) {
    std::replace(str.begin(), str.end(), ' ', '-');
    return str;
}

std::string Capitals(std::string str) {
    std::transform(str.begin(), str.end(), str.begin(),
                   [](char c) { return c >= 'a' && c <= 'z' ? c - 32 : c; });
    return str;
}

std::string Head(const std::string& strCommand, const CLI::App& app, const std::string& strVersion) {
    std::ostringstream out;
    out << ".TH \"" << Capitals(Dashed(strCommand)) << "\" 1 \"\" \"ORVIN-OSD " << strVersion
        << "\" \"User Commands\"\n.SH NAME\n"
        << Roff(Dashed(strCommand)) << " \\- " << Roff(app.get_description()) << "\n.SH SYNOPSIS\n"
        << Synopsis(strCommand, app) << '\n';
    return out.str();
}

void WriteFooter(std::ostream& out, const CLI::App& app) {
    std::istringstream lines(app.get_footer());
    for (std::string strLine; std::getline(lines, strLine);) out << ".PP\n" << Roff(strLine) << '\n';
}

/// A command with its options, and below a group each of its commands.
std::string CommandPage(const CLI::App& app, const CLI::App& root, const std::string& strVersion) {
    const std::string strCommand = root.get_name() + " " + app.get_name();
    std::ostringstream out;
    out << Head(strCommand, app, strVersion) << ".SH OPTIONS\n";
    WriteOptions(out, app);
    if (!Commands(app).empty()) out << ".SH COMMANDS\n";
    for (const CLI::App* p : Commands(app)) {
        out << ".SS \"" << Roff(app.get_name() + " " + p->get_name()) << "\"\n"
            << Roff(p->get_description()) << "\n.PP\n"
            << Synopsis(strCommand + " " + p->get_name(), *p) << '\n';
        WriteOptions(out, *p);
    }
    if (app.get_footer() != root.get_footer()) WriteFooter(out, app);
    out << ".SH SEE ALSO\n.BR " << Roff(root.get_name()) << " (1)\n";
    return out.str();
}

std::string MainPage(const CLI::App& app, const std::string& strVersion) {
    std::ostringstream out;
    out << Head(app.get_name(), app, strVersion) << ".SH OPTIONS\n";
    WriteOptions(out, app);
    out << ".SH COMMANDS\nEach has a page of its own, such as\n.BR " << Roff(app.get_name() + "-run")
        << " (1).\n";
    for (const CLI::App* p : Commands(app))
        out << ".TP\n" << Bold(p->get_name()) << '\n' << Roff(p->get_description()) << '\n';
    out << ".SH NOTES\n";
    WriteFooter(out, app);
    return out.str();
}

/// The words of a type such as "on|off": what the option takes is written out in lower case.
std::vector<std::string> Choices(const std::string& strType) {
    std::vector<std::string> listWords;
    std::istringstream words(strType.substr(0, strType.find(':'))); // a check's own words follow
    for (std::string str; std::getline(words, str, '|');) {
        const bool bTyped = std::all_of(str.begin(), str.end(), [](char c) { return c >= 'a' && c <= 'z'; });
        if (bTyped && !str.empty()) listWords.push_back(str);
    }
    return listWords;
}

std::string BashWords(const CLI::App& app) {
    std::string strWords;
    for (const CLI::App* p : Commands(app)) strWords += p->get_name() + " ";
    for (const CLI::Option* p : OptionsOf(app)) {
        if (!p->get_positional()) strWords += Spellings(*p, " ") + " ";
        if (p->get_positional() || !IsFlag(*p))
            for (const std::string& str : Choices(p->get_type_name())) strWords += str + " ";
    }
    if (!strWords.empty()) strWords.pop_back();
    return strWords;
}

void WriteBashCases(std::ostream& out, const CLI::App& app, const std::string& strPath) {
    out << "        \"" << strPath << "\") words=\"" << BashWords(app) << "\" ;;\n";
    for (const CLI::App* p : Commands(app))
        WriteBashCases(out, *p, strPath.empty() ? p->get_name() : strPath + " " + p->get_name());
}

/// Commands that have commands of their own, as a pattern of the shell.
std::string DeepCommands(const CLI::App& app) {
    std::string strAll;
    for (const CLI::App* p : Commands(app))
        if (!Commands(*p).empty()) strAll += (strAll.empty() ? "" : " | ") + p->get_name();
    return strAll;
}

/// Words of the command that stands before the cursor; profiles are asked for, and "run" completes what any
/// shell would.
std::string Bash(const CLI::App& app) {
    std::ostringstream out;
    out << "# Completion of orvin-osd for bash; made from its own description of the command line.\n"
           "_orvin_osd() {\n"
           "    local cur=${COMP_WORDS[COMP_CWORD]} path=${COMP_WORDS[1]} words\n"
           "    ((COMP_CWORD > 1)) || path=\n"
           "    case $path in\n"
           "        run) if declare -F _command_offset >/dev/null; then _command_offset 2; return; fi ;;\n"
           "        "
        << DeepCommands(app)
        << ") ((COMP_CWORD < 3)) || path=\"$path ${COMP_WORDS[2]}\" ;;\n"
           "    esac\n"
           "    case $path in\n";
    WriteBashCases(out, app, "");
    out << "        *) words= ;;\n"
           "    esac\n"
           "    case $path in\n"
           "        \"profile \"[ucrn]* | profile-name | \"fontcache \"[wl]*)\n"
           "            words=\"$words $(orvin-osd profile list 2>/dev/null | awk 'NR > 1 {print $1}')\" ;;\n"
           "    esac\n"
           "    COMPREPLY=($(compgen -W \"$words\" -- \"$cur\"))\n"
           "    [[ $cur == -* || ${#COMPREPLY[@]} -gt 0 ]] || COMPREPLY=($(compgen -f -- \"$cur\"))\n"
           "}\n"
           "complete -o filenames -F _orvin_osd orvin-osd\n";
    return out.str();
}

std::string Quoted(const std::string& str) {
    std::string strOut = "'";
    for (const char c : str) strOut += c == '\'' || c == '\\' ? std::string("\\") + c : std::string(1, c);
    return strOut + "'";
}

void WriteFishOptions(std::ostream& out, const CLI::App& app, const std::string& strWhen) {
    for (const CLI::Option* p : OptionsOf(app)) {
        std::string strChoices;
        for (const std::string& str : Choices(p->get_type_name())) strChoices += str + " ";
        if (p->get_positional() && strChoices.empty()) continue;
        out << "complete -c orvin-osd" << strWhen;
        for (const std::string& str : p->get_snames()) out << " -s " << str;
        for (const std::string& str : p->get_lnames()) out << " -l " << str;
        if (!p->get_positional() && !IsFlag(*p)) out << " -r";
        if (!strChoices.empty() && !IsFlag(*p)) out << " -a " << Quoted(strChoices);
        out << " -d " << Quoted(p->get_description()) << '\n';
    }
}

std::string Fish(const CLI::App& app) {
    std::ostringstream out;
    out << "# Completion of orvin-osd for fish; made from its own description of the command line.\n";
    const std::string strFirst = " -n __fish_use_subcommand";
    WriteFishOptions(out, app, strFirst);
    for (const CLI::App* p : Commands(app)) {
        const std::string strSeen = "__fish_seen_subcommand_from " + p->get_name();
        out << "complete -c orvin-osd -f" << strFirst << " -a " << p->get_name() << " -d "
            << Quoted(p->get_description()) << '\n';
        std::string strDeeper;
        for (const CLI::App* pDeeper : Commands(*p)) strDeeper += " " + pDeeper->get_name();
        for (const CLI::App* pDeeper : Commands(*p)) {
            out << "complete -c orvin-osd -f -n "
                << Quoted(strSeen + "; and not __fish_seen_subcommand_from" + strDeeper) << " -a "
                << pDeeper->get_name() << " -d " << Quoted(pDeeper->get_description()) << '\n';
            WriteFishOptions(
                out, *pDeeper,
                " -n " + Quoted(strSeen + "; and __fish_seen_subcommand_from " + pDeeper->get_name()));
        }
        WriteFishOptions(out, *p, " -n " + Quoted(strSeen));
    }
    return out.str();
}

} // namespace

std::map<std::string, std::string> ManualFiles(const CLI::App& app, const std::string& strVersion) {
    std::map<std::string, std::string> mapFiles;
    mapFiles["man1/" + app.get_name() + ".1"] = MainPage(app, strVersion);
    for (const CLI::App* p : Commands(app))
        mapFiles["man1/" + app.get_name() + "-" + p->get_name() + ".1"] = CommandPage(*p, app, strVersion);
    mapFiles["bash/" + app.get_name()] = Bash(app);
    mapFiles["fish/" + app.get_name() + ".fish"] = Fish(app);
    return mapFiles;
}

} // namespace companion
