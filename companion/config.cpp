#include "companion/config.h"
#include "companion/choices.h"
#include "companion/profile_folder.h"
#include "companion/segment_json.h"
#include "companion/table.h"
#include "companion/utf.h"
#include "companion/whole_file.h"
#include "platform/tool.h"
#include "platform/tool_settings.h"
#include <cstdio>
#include <cstdlib>
#include <nlohmann/json.hpp>

namespace fs = std::filesystem;

namespace companion {
namespace {

using Json = nlohmann::ordered_json;
using platform::tool::Setting;

constexpr u64 kMostIniBytes = 1024 * 1024;
constexpr const char* kColorParts[] = {"R", "G", "B"};
constexpr const char* kCaptions = "language-captions";

/// OSD.ini of a data folder; of this machine's where none is named.
Result IniFile(const std::string& strData, fs::path& path) {
    const Result stFound = FindDataFolder(strData, path);
    path /= "OSD.ini";
    return stFound;
}

/// No file is an empty one. One of UTF-16 is told apart by its mark.
Result ReadIni(const fs::path& path, std::string& strText) {
    std::error_code error;
    if (!fs::exists(path, error)) return {};
    if (!ReadFile(path, kMostIniBytes, strText)) return Result::Fail("cannot read " + TextOfPath(path));
    if (strText.starts_with("\xFF\xFE") || strText.starts_with("\xFE\xFF"))
        return Result::Fail(TextOfPath(path) + " is UTF-16; save it as UTF-8 first");
    return {};
}

/// As the overlay reads numbers: digits from the front, none is 0.
u32 IniNumber(const std::string& strText) {
    return static_cast<u32>(std::strtol(strText.c_str(), nullptr, 10));
}

std::optional<StoredValue> ReadStore(const SettingRow& row) {
    const Setting st = platform::tool::CurrentSetting(row.szKey, row.szValue);
    if (st.bRemoved) return std::nullopt;
    return StoredValue{st.uNumber, st.strText};
}

Result WriteIni(const fs::path& path, const SettingRow& row, const StoredValue& stValue) {
    std::string strText;
    const Result st = ReadIni(path, strText);
    if (!st) return st;
    const std::string strNew = IniWith(strText, row, stValue);
    const auto stSeen = ValueOfIni(strNew, row);
    const bool bTaken = stSeen ? stSeen->uNumber == stValue.uNumber : !stValue.uNumber;
    if (!bTaken)
        return Result::Fail(TextOfPath(path) + " has the section [" + row.szKey +
                            "] twice, of which only the first counts; join them");
    return strNew == strText ? Result{} : WriteWhole(path, strNew);
}

Result WriteStore(const SettingRow& row, const StoredValue& stValue) {
    const bool bRemoved = !stValue.uNumber && stValue.strText.empty();
    return platform::tool::StoreSettings(
        {{row.szKey, row.szValue, stValue.uNumber, stValue.strText, bRemoved}});
}

/// Two actions cannot have the same keys.
Result CheckKeys(const SettingRow& row, const StoredValue& st) {
    if (st.strText == "none") return {};
    for (const SettingRow& other : SettingRows())
        if (&other != &row && other.eKind == SettingKind::Keys && SettingNow(other.szName) == st.strText)
            return Result::Usage("config: " + st.strText + " belongs to " + other.szName);
    return {};
}

/// What a text means on this machine: folders and files by their whole path, a language by its file.
Result Complete(const SettingRow& row, StoredValue& st) {
    if (st.strText.empty()) return {};
    if (row.eKind == SettingKind::Keys) return CheckKeys(row, st);
    std::error_code error;
    if (row.eKind == SettingKind::Folder || row.eKind == SettingKind::File) {
        const fs::path path = fs::absolute(PathOfText(st.strText), error).lexically_normal();
        const bool bFolder = row.eKind == SettingKind::Folder;
        if (bFolder ? !fs::is_directory(path, error) : !fs::is_regular_file(path, error))
            return Result::NotFound(std::string("there is no ") + (bFolder ? "folder " : "file ") +
                                    TextOfPath(path));
        StoredValue stWhole;
        const Result stFits = ParseSetting(row, TextOfPath(path), stWhole);
        st = stWhole;
        return stFits;
    }
    if (row.eKind != SettingKind::Language) return {};
    if (!PathOfText(st.strText).has_extension()) st.strText += ".xml";
    fs::path pathData;
    const Result stFound = FindDataFolder("", pathData);
    if (!stFound) return stFound;
    const fs::path path = pathData / "Languages" / PathOfText(st.strText);
    return fs::exists(path, error) ? Result{} : Result::NotFound("there is no language " + TextOfPath(path));
}

/// A language shows only while captions come from its file.
Result SetCaptions(const SettingRow& row, const StoredValue& st) {
    if (row.eKind != SettingKind::Language) return {};
    const SettingRow& captions = *FindSetting(kCaptions);
    return WriteSetting(captions, {st.strText.empty() ? 0u : 1u, {}});
}

Result Change(const SettingRow& row, const std::string& strText) {
    StoredValue st;
    Result stDone = ParseSetting(row, strText, st);
    if (stDone) stDone = Complete(row, st);
    if (stDone) stDone = WriteSetting(row, st);
    return stDone ? SetCaptions(row, st) : stDone;
}

std::string PlaceText(const SettingRow& row) {
    if (row.ePlace == SettingPlace::Companion) return "choices.json";
    const std::string strIn = row.ePlace == SettingPlace::Ini ? "OSD.ini, " : "settings store, ";
    return strIn + row.szKey + ", " + row.szValue + (row.eKind == SettingKind::Color ? "R, G and B" : "");
}

Json RowJson(const SettingRow& row, const std::string& strValue) {
    return {{"name", row.szName},      {"value", strValue},       {"default", row.Default()},
            {"range", RangeText(row)}, {"place", PlaceText(row)}, {"help", row.szHelp}};
}

void Print(const std::string& strText) { std::fwrite(strText.data(), 1, strText.size(), stdout); }

Result ShowAll(bool bJson) {
    Json jsRows = Json::array();
    std::vector<std::vector<std::string>> listCells;
    for (const SettingRow& row : SettingRows()) {
        std::optional<StoredValue> stValue;
        const Result stRead = ReadSetting(row, stValue);
        if (!stRead) return stRead;
        const std::string strValue = SettingText(row, stValue);
        jsRows.push_back(RowJson(row, strValue));
        listCells.push_back({row.szName, strValue, row.Default(), RangeText(row), row.szHelp});
    }
    Print(bJson ? JsonToText(jsRows)
                : FormatTable({{"NAME"}, {"VALUE"}, {"DEFAULT"}, {"TAKES"}, {"WHAT IT IS"}}, listCells));
    return {};
}

Result ShowOne(const SettingRow& row, bool bJson) {
    std::optional<StoredValue> stValue;
    const Result stRead = ReadSetting(row, stValue);
    if (!stRead) return stRead;
    const std::string strValue = SettingText(row, stValue);
    if (bJson) Print(JsonToText(RowJson(row, strValue)));
    if (!bJson)
        Print(Printable(strValue) + "\n" + "  " + row.szHelp + "\n  takes    " + RangeText(row) +
              "\n  default  " + row.Default() + "\n  stands   " + PlaceText(row) + "\n");
    return {};
}

} // namespace

Result ReadSetting(const SettingRow& row, std::optional<StoredValue>& stOut, const std::string& strData) {
    stOut.reset();
    if (row.ePlace == SettingPlace::Store) {
        stOut = ReadStore(row);
        return {};
    }
    if (row.ePlace == SettingPlace::Companion) {
        Choices stChoices;
        const Result stRead = ReadChoices(stChoices);
        const auto it = stChoices.mapSettings.find(row.szName);
        StoredValue st;
        if (it != stChoices.mapSettings.end() && ParseSetting(row, it->second, st)) stOut = st;
        return stRead;
    }
    fs::path path;
    std::string strText;
    Result st = IniFile(strData, path);
    if (st) st = ReadIni(path, strText);
    if (st) stOut = ValueOfIni(strText, row);
    return st;
}

Result WriteSetting(const SettingRow& row, const StoredValue& stValue, const std::string& strData) {
    if (row.ePlace == SettingPlace::Store) return WriteStore(row, stValue);
    if (row.ePlace == SettingPlace::Ini) {
        fs::path path;
        const Result stFound = IniFile(strData, path);
        return stFound ? WriteIni(path, row, stValue) : stFound;
    }
    const bool bRemoved = !stValue.uNumber && stValue.strText.empty();
    return RememberSetting(row.szName, bRemoved ? std::string() : SettingText(row, stValue));
}

std::string SettingNow(const char* szName) {
    const SettingRow& row = *FindSetting(szName);
    std::optional<StoredValue> stValue;
    ReadSetting(row, stValue);
    return SettingText(row, stValue);
}

bool SwitchedOn(const char* szName) { return SettingNow(szName) == "on"; }

Result SetSetting(const char* szName, const std::string& strText) {
    return Change(*FindSetting(szName), strText);
}

std::string IniWith(std::string strFile, const SettingRow& row, const StoredValue& stValue) {
    const auto fnSet = [&](const std::string& strName, std::optional<u32> uNumber) {
        const bool bRemoved = !uNumber && stValue.strText.empty();
        strFile = platform::tool::WithSetting(std::move(strFile), row.szKey,
                                              {row.szKey, strName, uNumber, stValue.strText, bRemoved});
    };
    if (row.eKind != SettingKind::Color) {
        fnSet(row.szValue, stValue.uNumber);
        return strFile;
    }
    for (u32 u = 0; u < 3; ++u) {
        const u32 uShift = 16 - 8 * u;
        fnSet(std::string(row.szValue) + kColorParts[u],
              stValue.uNumber ? std::optional((*stValue.uNumber >> uShift) & 0xFF) : std::nullopt);
    }
    return strFile;
}

std::optional<StoredValue> ValueOfIni(const std::string& strFile, const SettingRow& row) {
    StoredValue st;
    if (row.eKind != SettingKind::Color) {
        const auto strValue = platform::tool::ValueInFile(strFile, row.szKey, row.szValue);
        if (!strValue) return std::nullopt;
        st.uNumber = IniNumber(*strValue);
        return st;
    }
    StoredValue stMissing;
    ParseSetting(row, row.szMissing, stMissing);
    u32 uColor = 0;
    bool bAny = false;
    for (u32 u = 0; u < 3; ++u) {
        const u32 uShift = 16 - 8 * u;
        const auto strValue =
            platform::tool::ValueInFile(strFile, row.szKey, std::string(row.szValue) + kColorParts[u]);
        const u32 uPart =
            strValue ? std::min(IniNumber(*strValue), 255u) : (*stMissing.uNumber >> uShift) & 0xFF;
        uColor |= uPart << uShift;
        bAny = bAny || strValue.has_value();
    }
    if (!bAny) return std::nullopt;
    st.uNumber = uColor;
    return st;
}

Result Config(const Options& st, const std::function<void()>& fnReload) {
    if (st.strTarget.empty()) return ShowAll(st.bJson);
    const SettingRow& row = *FindSetting(st.strTarget);
    if (!st.strValue && !st.bDefault) return ShowOne(row, st.bJson);
    const Result stDone = Change(row, st.bDefault ? row.Default() : *st.strValue);
    if (stDone && row.ePlace != SettingPlace::Companion) fnReload();
    if (stDone) Print(std::string(row.szName) + " = " + Printable(SettingNow(row.szName)) + "\n");
    return stDone;
}

} // namespace companion
