#include "base/layout_style.h"
#include "companion/table.h"
#include "companion/utf.h"
#include "config/make/profile_fonts.h"
#include "controls/osd_manager.h"
#include "draw/data_path.h"
#include "font/font_file.h"
#include "platform/tool.h"
#include "shared/process_records.h"
#include "tools/profile/check/font_cache.h"
#include "tools/profile/program.h"
#include "tools/profile/renderer.h"
#include "tools/profile/stage.h"
#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <string_view>
#include <system_error>

namespace fs = std::filesystem;

namespace companion {
namespace {

constexpr u32 kCustomStyle = 2;
/// Drawn before the fonts are written, so that what numbers and clocks show at first is in them.
constexpr u32 kFrames = 60;

/// Name of the file that a font is looked for under; empty for one that no file can serve.
fs::path FileNameOf(const CFontUniCode& font, u32 uFontId) {
    char16_t wzPath[g_uDataPathCapacity];
    const stFontFilePlace stPlace{g_wzProfileFolder, g_uLayoutStyle};
    const bool bNamed = g_uLayoutStyle == kCustomStyle
                            ? g_fnFontFilePath(wzPath, stPlace, font.m_wzFontName.c_str())
                            : uFontId < g_uFixedFonts && g_fnFontFilePath(wzPath, stPlace, uFontId);
    return bNamed ? fs::path(wzPath).filename() : fs::path();
}

Result WriteFont(CFontUniCode& font, const fs::path& path, std::vector<fs::path>& listWritten) {
    const fs::path pathNew = path.parent_path() / (path.filename().u16string() + u".new");
    std::error_code error;
    const bool bSaved = font.m_fnSaveToFile(pathNew.u16string().c_str());
    if (bSaved) fs::rename(pathNew, path, error);
    if (!bSaved || error) {
        fs::remove(pathNew, error);
        return Result::Fail("cannot write " + TextOfPath(path));
    }
    listWritten.push_back(path);
    return {};
}

Result WriteFonts(const fs::path& pathOut, std::vector<fs::path>& listWritten) {
    for (u32 u = 0; g_ppFont && u < g_uFontEntries; ++u) {
        const fs::path pathName = g_ppFont[u] ? FileNameOf(*g_ppFont[u], u) : fs::path();
        if (pathName.empty()) continue;
        // The font of a face that came first keeps its file.
        if (std::find(listWritten.begin(), listWritten.end(), pathOut / pathName) != listWritten.end())
            continue;
        const Result stWritten = WriteFont(*g_ppFont[u], pathOut / pathName, listWritten);
        if (!stWritten) return stWritten;
    }
    return {};
}

Result WriteFilesOf(const Options& stOptions, const ProfilePlace& stProfile, const fs::path& pathData,
                    std::vector<fs::path>& listWritten) {
    Stage stage;
    ValueSource values;
    Result stResult = stage.Prepare(pathData, stProfile, Stage::FontFiles::Left);
    if (stResult) stResult = values.Open("sample", "");
    if (!stResult) return stResult;
    fs::path pathOut = stProfile.pathFolder;
    if (!stOptions.stProfile.strOutput.empty()) pathOut = PathOfText(stOptions.stProfile.strOutput);
    std::error_code error;
    fs::create_directories(pathOut, error);
    RenderPlan stPlan;
    stPlan.pathCommon = stage.CommonFolder();
    stPlan.pathSettings = pathData;
    stPlan.bSettingsNamed = !stOptions.stProfile.strData.empty();
    stPlan.strProfile = stProfile.strName;
    stPlan.background = Picture(1920, 1080);
    stPlan.pValues = &values;
    stPlan.uFrames = kFrames;
    stPlan.bVerbose = stOptions.stProfile.bVerbose;
    return WithBuiltProfile(stPlan, [&] { return WriteFonts(pathOut, listWritten); });
}

std::string SizeText(u32 uWidth, u32 uHeight) {
    return std::to_string(uWidth) + "x" + std::to_string(uHeight);
}

struct ListedFont {
    std::string strProfile;
    FontFileFacts st;
};

std::string FontTable(const std::vector<ListedFont>& listFonts) {
    std::vector<std::vector<std::string>> listCells;
    for (const auto& [strProfile, st] : listFonts)
        listCells.push_back({strProfile, TextOfPath(st.path.filename()), st.strFace,
                             std::to_string(st.iWeight), std::to_string(st.uGlyphs),
                             std::to_string(st.uCells), SizeText(st.uWidth, st.uHeight),
                             std::to_string(st.uBytes), st.strFault.empty() ? "good" : st.strFault});
    return FormatTable({{"PROFILE"},
                        {"FILE"},
                        {"FACE"},
                        {"WEIGHT", Align::Right},
                        {"GLYPHS", Align::Right},
                        {"CELLS", Align::Right},
                        {"ATLAS", Align::Right},
                        {"BYTES", Align::Right},
                        {"STATE"}},
                       listCells);
}

std::string FontJson(const std::vector<ListedFont>& listFonts) {
    auto json = nlohmann::ordered_json::array();
    for (const auto& [strProfile, st] : listFonts)
        json.push_back({{"profile", strProfile},
                        {"file", TextOfPath(st.path)},
                        {"face", st.strFace},
                        {"weight", st.iWeight},
                        {"glyphs", st.uGlyphs},
                        {"cells", st.uCells},
                        {"width", st.uWidth},
                        {"height", st.uHeight},
                        {"bytes", st.uBytes},
                        {"good", st.strFault.empty()},
                        {"fault", st.strFault}});
    return PrintableJson(json.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace)) + "\n";
}

/// The profile asked for, or all.
Result ProfilesAsked(const ProfileOptions& st, const fs::path& pathData,
                     std::vector<ProfilePlace>& listPlaces) {
    if (st.strProfile.empty()) {
        for (const std::string& strName : ProfileNames(pathData))
            listPlaces.push_back({ProfileFolder(pathData, strName), strName});
        return {};
    }
    return FindProfile(pathData, st.strProfile, listPlaces.emplace_back());
}

} // namespace

Result WriteFontCache(const Options& stOptions, int&) {
    fs::path pathData;
    ProfilePlace stProfile;
    std::vector<fs::path> listWritten;
    platform::tool::CatchStop();
    Result stResult = FindDataFolder(stOptions.stProfile.strData, pathData);
    if (stResult) stResult = FindProfile(pathData, stOptions.stProfile.strProfile, stProfile);
    if (stResult) stResult = WriteFilesOf(stOptions, stProfile, pathData, listWritten);
    if (!stResult) return stResult;
    for (const fs::path& path : listWritten) std::printf("%s\n", Printable(TextOfPath(path)).c_str());
    if (listWritten.empty())
        return Result::NotFound("the profile " + stProfile.strName + " has no font that looks for a file");
    return {};
}

Result ListFontCache(const Options& stOptions, int&) {
    fs::path pathData;
    std::vector<ProfilePlace> listPlaces;
    Result stResult = FindDataFolder(stOptions.stProfile.strData, pathData);
    if (stResult) stResult = ProfilesAsked(stOptions.stProfile, pathData, listPlaces);
    if (!stResult) return stResult;
    std::vector<ListedFont> listFonts;
    for (const ProfilePlace& stPlace : listPlaces)
        for (FontFileFacts& st : FontFilesIn(stPlace.pathFolder))
            listFonts.push_back({stPlace.strName, std::move(st)});
    const bool bJson = stOptions.stProfile.bJson;
    if (bJson || !listFonts.empty())
        std::fputs((bJson ? FontJson(listFonts) : FontTable(listFonts)).c_str(), stdout);
    else
        std::puts("no font cache files");
    return {};
}

Result CheckFontCache(const Options& stOptions, int&) {
    FontFileFacts st;
    const std::string& strFile = stOptions.stProfile.strProfile;
    const Result stRead = InspectFontFile(PathOfText(strFile), st);
    if (!stRead) return stRead;
    if (!st.strFault.empty()) return Result::Fail(strFile + " " + st.strFault);
    std::printf("%s: good, face %s, weight %d, %u glyphs in %u cells, atlas %s\n", Printable(strFile).c_str(),
                Printable(st.strFace).c_str(), st.iWeight, st.uGlyphs, st.uCells,
                SizeText(st.uWidth, st.uHeight).c_str());
    return {};
}

} // namespace companion
