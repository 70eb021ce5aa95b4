#include "companion/setting_table.h"
#include "companion/keys/combination.h"
#include "companion/utf.h"
#include <algorithm>
#include <charconv>
#include <cstdio>
#include <iterator>
#include <sstream>
#include <vector>

namespace companion {
namespace {

constexpr size_t kMostUnits = 127; ///< of a text in the store
constexpr u32 kMostRate = 1000;

constexpr const char* kLimiter = "FPSLimiter";
constexpr const char* kInformation = "Information Option";
constexpr const char* kCamera = "Camera";
constexpr const char* kSuite = "\\OrvinDeck\\Setting";

using enum SettingPlace;
using enum SettingKind;

constexpr SettingRow Care(const char* szName, const char* szValue, const char* szHelp) {
    return {szName, Ini, "HostCare", szValue, Switch, "off", "on", szHelp};
}

constexpr SettingRow Shortcut(const char* szName, const char* szKeys, const char* szHelp) {
    return {szName, Companion, "", szName, Keys, szKeys, nullptr, szHelp};
}

constexpr SettingRow g_aRows[] = {
    {"limit", Store, kLimiter, "Enable", Switch, "off", nullptr, "holds programs to a frame rate"},
    {"limit-rate", Store, kLimiter, "FPSTarget", Number, "60", nullptr, "the rate", 1, kMostRate, "",
     "frames a second"},
    {"frame-interval", Store, kInformation, "UpdateFrameDataInterval", Number, "1000", "100",
     "time between two values of frame rate and frame time, and two steps of their graphs", 10, 10000, "",
     "ms"},
    {"value-interval", Store, kInformation, "UpdateStatisticInterval", Number, "1000", "500",
     "time between two values of sensors, and two steps of their graphs", 10, 10000, "", "ms"},
    {"language", Store, kInformation, "LanguageXMLFileName", Language, "none", nullptr,
     "language file of the captions, such as German"},
    {"language-captions", Ini, "Info", "UseLanguageXMLString", Switch, "off", nullptr,
     "captions come from the language file"},
    {"clock", Store, kSuite, "Monitor: 12H Flag", Words, "24", nullptr, "hours of the time of day", 0, 0,
     "12=0 24=1"},
    {"shot-folder", Store, kCamera, "DirPath", Folder, "none", nullptr,
     "folder of screenshots; none: the data folder"},
    {"shot-overlay", Store, kCamera, "CapMode", Words, "with", nullptr,
     "whether the overlay is on screenshots", 0, 0, "without=1 with=2"},
    {"shot-type", Store, kCamera, "CapType", Words, "png", nullptr,
     "file type of screenshots; all: bmp, jpg and png", 0, 0, "bmp=0 jpg=1 png=2 heic=3 all=4"},
    {"graphs", Store, "Graph", "Enable", Switch, "off", nullptr, "master switch of graphs"},
    {"video", Store, "Video", "Enable", Switch, "off", nullptr,
     "master switch of the video sources, which 'orvin-osd video' sets up"},
    {"photo", Store, kCamera, "IsShow", Switch, "off", nullptr,
     "shows a photo of yours in place of the profile's"},
    {"photo-file", Store, kCamera, "FilePath", File, "none", nullptr, "the photo; none: the profile's"},
    {"photo-width", Store, kCamera, "FrameSize: W", Number, "none", nullptr,
     "width of the photo; none: that of the profile's", 1, 8192, "", "pixels"},
    {"photo-height", Store, kCamera, "FrameSize: H", Number, "none", nullptr,
     "height of the photo; none: that of the profile's", 1, 8192, "", "pixels"},
    {"photo-anchor", Store, kCamera, "Anchor", Number, "1", nullptr,
     "corner or side that the photo hangs on, as on a telephone's keys; below 0 outside of it", -9, 9},
    {"photo-x", Store, kCamera, "Position: X", Number, "0", nullptr, "distance of the photo from its anchor",
     -8192, 8192, "", "pixels"},
    {"photo-y", Store, kCamera, "Position: Y", Number, "0", nullptr, "distance of the photo from its anchor",
     -8192, 8192, "", "pixels"},
    {"photo-opacity", Store, kCamera, "Alpha", Number, "255", nullptr, "255 covers what is behind it", 0,
     255},
    {"warning-blink", Ini, "Warning", "Twinkle", Switch, "on", nullptr,
     "notices of warnings change between two colours"},
    {"warning-time", Ini, "Warning", "TwinkleTime", Number, "1000", nullptr,
     "time between two changes of a warning's colour", 10, 60000, "", "ms"},
    {"warning-color-1", Ini, "Warning", "Status0Color", Color, "#000000", nullptr,
     "first colour of a warning"},
    {"warning-color-2", Ini, "Warning", "Status1Color", Color, "#FFC90E", nullptr,
     "second colour of a warning; the only one that does not blink"},
    {"failure-notices", Ini, "Info", "DebugMessageBox", Switch, "off", nullptr,
     "a message box tells when a layout cannot be built"},
    {"debug-rows", Ini, "Info", "DebugMode", Switch, "off", nullptr,
     "rows for debugging in the Classic and RV5 styles"},
    {"debug-time", Ini, "Info", "DebugTime", Switch, "off", nullptr,
     "running hundredths of a second in place of the time of day"},
    Care("care-state", "OuterGuard", "no OpenGL state of the program is lost"),
    Care("care-window", "StayWithSurface", "the overlay stays with one window of the program"),
    Care("care-limit", "LimiterRecovery", "a late frame does not end the frame limit"),
    Care("care-failure", "RestoreAfterFailure", "a profile that cannot be built leaves the picture alone"),
    Care("care-draw", "MergedDraw", "everything is drawn from few OpenGL calls"),
    Care("care-shots", "CarefulShots", "screenshots take what the window shows and hold no frame up"),
    Shortcut("key-overlay", "Ctrl+Shift+F10", "keys that switch the overlay on or off"),
    Shortcut("key-profile", "Ctrl+Shift+F7", "keys that show the next profile"),
    Shortcut("key-shot", "Ctrl+Shift+F8", "keys that take a screenshot"),
    Shortcut("key-record", "Ctrl+Shift+F9", "keys that begin or end a recording"),
    Shortcut("key-limit", "Ctrl+Shift+F6", "keys that switch the frame limit on or off"),
    {"feed-keys", Companion, "", "feed-keys", Switch, "off", nullptr, "'feed' listens to the keys too"},
    {"record-folder", Companion, "", "record-folder", Folder, "none", nullptr,
     "folder of recordings begun by a key; none: 'recordings' beside the companion's settings"},
};

struct Word {
    std::string strWord;
    u32 uNumber;
};

std::vector<Word> WordsOf(const SettingRow& row) {
    std::vector<Word> listWords;
    std::istringstream words(row.eKind == Switch ? "off=0 on=1" : row.szWords);
    for (std::string str; words >> str;) {
        const size_t uEqual = str.find('=');
        listWords.push_back({str.substr(0, uEqual), static_cast<u32>(std::stoul(str.substr(uEqual + 1)))});
    }
    return listWords;
}

Result Refuse(const SettingRow& row, const std::string& strText) {
    return Result::Usage("config: " + std::string(row.szName) + " cannot be " + strText + "; it takes " +
                         RangeText(row));
}

bool IsNone(const SettingRow& row, const std::string& strText) {
    return std::string_view(row.szMissing) == "none" && strText == "none";
}

Result ParseNumber(const SettingRow& row, const std::string& strText, StoredValue& st) {
    i64 iValue = 0;
    const char* const pEnd = strText.data() + strText.size();
    const auto [pStop, eError] = std::from_chars(strText.data(), pEnd, iValue);
    if (eError != std::errc() || pStop != pEnd || iValue < row.iMin || iValue > row.iMax)
        return Refuse(row, strText);
    st.uNumber = static_cast<u32>(iValue);
    return {};
}

Result ParseWord(const SettingRow& row, const std::string& strText, StoredValue& st) {
    for (const Word& word : WordsOf(row))
        if (word.strWord == strText) st.uNumber = word.uNumber;
    return st.uNumber ? Result{} : Refuse(row, strText);
}

Result ParseColor(const SettingRow& row, const std::string& strText, StoredValue& st) {
    u32 uColor = 0;
    const char* const pEnd = strText.data() + strText.size();
    if (strText.size() != 7 || strText[0] != '#') return Refuse(row, strText);
    const auto [pStop, eError] = std::from_chars(strText.data() + 1, pEnd, uColor, 16);
    if (eError != std::errc() || pStop != pEnd) return Refuse(row, strText);
    st.uNumber = uColor;
    return {};
}

Result ParseText(const SettingRow& row, const std::string& strText, StoredValue& st) {
    std::u16string wstr;
    if (strText.empty() || !UnitsFromUtf8(strText, wstr) || wstr.size() > kMostUnits ||
        strText.find('"') != std::string::npos)
        return Refuse(row, Printable(strText));
    st.strText = strText;
    return {};
}

Result ParseKeys(const SettingRow& row, const std::string& strText, StoredValue& st) {
    keys::KeyCombination stKeys;
    const bool bKeys = keys::ParseCombination(strText, stKeys);
    if (!bKeys && strText != "none") return Refuse(row, Printable(strText));
    st.strText = bKeys ? keys::CombinationText(stKeys) : strText;
    return {};
}

std::string NumberText(const SettingRow& row, u32 uNumber) {
    return row.iMin < 0 ? std::to_string(static_cast<i32>(uNumber)) : std::to_string(uNumber);
}

std::string WordText(const SettingRow& row, u32 uNumber) {
    if (row.eKind == Switch) return uNumber != 0 ? "on" : "off";
    for (const Word& word : WordsOf(row))
        if (word.uNumber == uNumber) return word.strWord;
    return std::to_string(uNumber);
}

std::string ColorText(u32 uColor) {
    char szText[16];
    std::snprintf(szText, sizeof(szText), "#%06X", uColor & 0xFFFFFF);
    return szText;
}

} // namespace

std::span<const SettingRow> SettingRows() { return g_aRows; }

const SettingRow* FindSetting(std::string_view strName) {
    const auto it = std::find_if(std::begin(g_aRows), std::end(g_aRows),
                                 [&](const SettingRow& row) { return strName == row.szName; });
    return it != std::end(g_aRows) ? it : nullptr;
}

std::string RangeText(const SettingRow& row) {
    const std::string strNone = std::string_view(row.szMissing) == "none" ? ", none" : "";
    std::string strWords;
    switch (row.eKind) {
    case Number:
        return std::to_string(row.iMin) + " to " + std::to_string(row.iMax) +
               (*row.szUnit ? std::string(" ") + row.szUnit : "") + strNone;
    case Color:
        return "#RRGGBB";
    case Text:
        return "up to 127 characters" + strNone;
    case Folder:
        return "a folder" + strNone;
    case File:
        return "a file" + strNone;
    case Language:
        return "a language file" + strNone;
    case Keys:
        return "keys such as Ctrl+Shift+F10, none";
    case Switch:
    case Words:
        break;
    }
    for (const Word& word : WordsOf(row)) strWords += (strWords.empty() ? "" : ", ") + word.strWord;
    return strWords;
}

Result ParseSetting(const SettingRow& row, const std::string& strText, StoredValue& stOut) {
    stOut = {};
    if (IsNone(row, strText)) return {}; // taken away
    switch (row.eKind) {
    case Switch:
    case Words:
        return ParseWord(row, strText, stOut);
    case Number:
        return ParseNumber(row, strText, stOut);
    case Color:
        return ParseColor(row, strText, stOut);
    case Keys:
        return ParseKeys(row, strText, stOut);
    default:
        return ParseText(row, strText, stOut);
    }
}

std::string SettingText(const SettingRow& row, const std::optional<StoredValue>& stValue) {
    const bool bNumber =
        row.eKind == Switch || row.eKind == Words || row.eKind == Number || row.eKind == Color;
    if (!stValue || (bNumber ? !stValue->uNumber : stValue->strText.empty())) return row.szMissing;
    if (!bNumber) return stValue->strText;
    if (row.eKind == Color) return ColorText(*stValue->uNumber);
    return row.eKind == Number ? NumberText(row, *stValue->uNumber) : WordText(row, *stValue->uNumber);
}

std::string SettingsHelp() {
    std::string strText = "Settings:\n";
    for (const SettingRow& row : g_aRows)
        strText += std::string("  ") + row.szName + ": " + row.szHelp + " (" + RangeText(row) + "; " +
                   row.Default() + ")\n";
    strText.pop_back();
    return strText;
}

} // namespace companion
