#include "companion/lent_settings.h"
#include "companion/profile_folder.h"
#include "platform/tool.h"
#include <algorithm>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <set>
#include <system_error>

namespace fs = std::filesystem;

namespace companion {
namespace {

using platform::tool::CurrentSetting;
using platform::tool::Setting;
using platform::tool::SettingKeys;
using Json = nlohmann::json;

constexpr u64 kMostBytes = 1024 * 1024;
/// Values that keys of hardware may have; a key with one of them is not empty.
constexpr const char* kKnownNames[] = {"Title",
                                       "Unit",
                                       "Title LanguageXML TagName",
                                       "Unit LanguageXML TagName",
                                       "OSDProfileXML TagName",
                                       "DataName",
                                       "Display Digit After Decimal Point",
                                       "Divisor",
                                       "IsSupport",
                                       "Name",
                                       "Card Num",
                                       "LanguageXMLTagName"};

bool SamePlace(const Setting& a, const Setting& b) { return a.strKey == b.strKey && a.strName == b.strName; }

bool Equal(const Setting& a, const Setting& b) {
    return SamePlace(a, b) && a.bRemoved == b.bRemoved && a.uNumber == b.uNumber && a.strText == b.strText;
}

bool Has(const std::vector<Setting>& list, const Setting& st) {
    return std::any_of(list.begin(), list.end(), [&](const Setting& stOther) { return Equal(st, stOther); });
}

bool IsStored(const Setting& st) { return Equal(CurrentSetting(st.strKey, st.strName), st); }

Setting Removed(Setting st) {
    st.bRemoved = true;
    return st;
}

/// Keys in which a value stands that is none of the lent ones.
std::set<std::string> PersonsKeys(const std::vector<Setting>& listWanted,
                                  const std::vector<Setting>& listLent) {
    std::set<std::string> setKeys;
    for (const Setting& st : listWanted) {
        const Setting stNow = CurrentSetting(st.strKey, st.strName);
        if (!stNow.bRemoved && !Has(listLent, stNow)) setKeys.insert(st.strKey);
    }
    return setKeys;
}

bool IsThere(const std::string& strKey) {
    const size_t uMark = strKey.rfind('\\');
    if (uMark == std::string::npos) return true; // nobody takes those on top away
    const auto listKeys = SettingKeys(strKey.substr(0, uMark));
    return std::find(listKeys.begin(), listKeys.end(), strKey.substr(uMark + 1)) != listKeys.end();
}

/// Keys, and those above them, that are not there.
void AddMissing(const std::vector<Setting>& listNew, std::vector<std::string>& listKeys) {
    std::set<std::string> setSeen(listKeys.begin(), listKeys.end());
    for (const Setting& st : listNew) {
        for (std::string strKey = st.strKey; setSeen.insert(strKey).second && !IsThere(strKey);
             strKey.resize(std::min(strKey.rfind('\\'), strKey.size())))
            listKeys.push_back(strKey);
    }
}

bool HasValue(const std::string& strKey) {
    return std::any_of(std::begin(kKnownNames), std::end(kKnownNames),
                       [&](const char* szName) { return !CurrentSetting(strKey, szName).bRemoved; });
}

/// Takes the keys away that nothing is left in; those that stay remain in the list.
Result RemoveEmpty(std::vector<std::string>& listKeys) {
    std::sort(listKeys.begin(), listKeys.end(),
              [](const std::string& a, const std::string& b) { return a.size() > b.size(); });
    std::vector<std::string> listGone, listStay;
    for (const std::string& strKey : listKeys) {
        auto listBelow = SettingKeys(strKey);
        std::erase_if(listBelow, [&](const std::string& strName) {
            return std::find(listGone.begin(), listGone.end(), strKey + "\\" + strName) != listGone.end();
        });
        (listBelow.empty() && !HasValue(strKey) ? listGone : listStay).push_back(strKey);
    }
    listKeys = std::move(listStay);
    return platform::tool::RemoveSettingKeys(listGone);
}

Json JsonOf(const Setting& st) {
    Json js = {{"key", st.strKey}, {"name", st.strName}};
    if (st.uNumber)
        js["number"] = *st.uNumber;
    else
        js["text"] = st.strText;
    return js;
}

/// Throws for what no lender writes.
Setting SettingOf(const Json& js) {
    Setting st{js.at("key").get<std::string>(), js.at("name").get<std::string>(), std::nullopt, {}, false};
    if (js.contains("number"))
        st.uNumber = js["number"].get<u32>();
    else
        st.strText = js.at("text").get<std::string>();
    return st;
}

} // namespace

fs::path LendingJournal() {
    fs::path pathData;
    return FindDataFolder("", pathData) ? pathData.parent_path() / "Settings" / "feed.json" : fs::path();
}

LentSettings::Journal LentSettings::Read() const try {
    Journal st;
    std::string strText;
    if (!ReadFile(m_pathJournal, kMostBytes, strText)) return st;
    const Json js = Json::parse(strText);
    st.uOwner = js.at("owner").get<u32>();
    for (const Json& jsValue : js.at("values")) st.listValues.push_back(SettingOf(jsValue));
    st.listKeys = js.at("keys").get<std::vector<std::string>>();
    return st;
} catch (const Json::exception&) { // not one of ours: nothing is taken away by it
    return {};
}

Result LentSettings::Write(const Journal& st) const {
    std::error_code error;
    if (st.listValues.empty() && st.listKeys.empty()) {
        fs::remove(m_pathJournal, error);
        return {};
    }
    Json js = {{"owner", st.uOwner}, {"keys", st.listKeys}, {"values", Json::array()}};
    for (const Setting& stValue : st.listValues) js["values"].push_back(JsonOf(stValue));
    fs::create_directories(m_pathJournal.parent_path(), error);
    fs::path pathNew = m_pathJournal;
    pathNew += "." + std::to_string(m_uOwner);
    {
        std::ofstream file(pathNew, std::ios::binary | std::ios::trunc);
        file << js.dump(1, ' ', false, Json::error_handler_t::replace) << "\n";
        file.close();
        if (!file) error = std::make_error_code(std::errc::io_error);
    }
    if (!error) fs::rename(pathNew, m_pathJournal, error);
    if (!error) return {};
    const std::string strWhy = error.message();
    fs::remove(pathNew, error);
    return Result::Fail("cannot write " + TextOfPath(m_pathJournal) + ": " + strWhy);
}

/// The journal knows of everything at every moment: it is ahead of what is written, and behind what goes.
Result LentSettings::Change(Journal& stFrom, Journal& stTo, std::vector<Setting> listChanges) {
    Journal stBoth = stTo;
    for (const Setting& st : stFrom.listValues)
        if (!Has(stBoth.listValues, st)) stBoth.listValues.push_back(st);
    Result stResult = Write(stBoth);
    if (!stResult) return stResult;
    stResult = platform::tool::StoreSettings(listChanges);
    if (!stResult) {
        Write(stFrom);
        return stResult;
    }
    stResult = RemoveEmpty(stTo.listKeys);
    return stResult ? Write(stTo) : stResult;
}

Result LentSettings::Lend(const std::vector<Setting>& listWanted, bool& bChanged) {
    bChanged = false;
    Journal stNow = Read(), stNext;
    std::erase_if(stNow.listValues, [](const Setting& st) { return !IsStored(st); });
    const std::set<std::string> setPersons = PersonsKeys(listWanted, stNow.listValues);
    std::vector<Setting> listChanges, listNew;
    for (const Setting& st : stNow.listValues)
        if (!Has(listWanted, st)) listChanges.push_back(Removed(st));
    for (const Setting& st : listWanted) {
        const bool bLent = Has(stNow.listValues, st);
        if (!bLent && !setPersons.contains(st.strKey)) listNew.push_back(st);
        if (bLent || !setPersons.contains(st.strKey)) stNext.listValues.push_back(st);
    }
    listChanges.insert(listChanges.end(), listNew.begin(), listNew.end());
    bChanged = !listChanges.empty();
    stNext.uOwner = m_uOwner;
    stNext.listKeys = stNow.listKeys;
    AddMissing(listNew, stNext.listKeys);
    if (!bChanged) return stNow.uOwner == m_uOwner ? Result{} : Write(stNext);
    const Result stResult = Change(stNow, stNext, std::move(listChanges));
    bChanged = bool(stResult);
    return stResult;
}

Result LentSettings::TakeBack(bool& bChanged) {
    bChanged = false;
    Journal stNow = Read(), stNext;
    if (stNow.uOwner == 0 || (stNow.uOwner != m_uOwner && m_fnIsAlive(stNow.uOwner))) return {};
    std::vector<Setting> listChanges;
    for (const Setting& st : stNow.listValues)
        if (IsStored(st)) listChanges.push_back(Removed(st));
    bChanged = !listChanges.empty();
    stNext.listKeys = stNow.listKeys;
    const Result stResult = Change(stNow, stNext, std::move(listChanges));
    // What is left has something of the person's in it.
    return stResult ? Write({}) : stResult;
}

bool LentSettings::IsOwner() const { return Read().uOwner == m_uOwner; }

} // namespace companion
