#include "companion/keys/combination.h"
#include "platform/tool_bytes.h"
#include <algorithm>
#include <charconv>
#include <iterator>

namespace companion::keys {
namespace {

using namespace platform::tool;

struct Modifier {
    const char* szName;
    bool KeyCombination::*pbField;
};
constexpr Modifier c_astModifiers[] = {{"Ctrl", &KeyCombination::bCtrl},
                                       {"Alt", &KeyCombination::bAlt},
                                       {"Shift", &KeyCombination::bShift},
                                       {"Super", &KeyCombination::bSuper}};

struct NamedKey {
    const char* szName;
    u32 uKey;
};
constexpr NamedKey c_astNamed[] = {
    {"Home", kKeyHome},     {"End", kKeyEnd},       {"PageUp", kKeyPageUp}, {"PageDown", kKeyPageDown},
    {"Insert", kKeyInsert}, {"Delete", kKeyDelete}, {"Pause", kKeyPause},   {"ScrollLock", kKeyScrollLock},
    {"Print", kKeyPrint}};

bool IsLetterOrDigit(u32 uKey) { return uKey < kKeyF1; }

/// 0 for a word that is no key of that kind.
u32 FunctionKey(const std::string& strWord) {
    u32 uNumber = 0;
    if (strWord.size() < 2 || (strWord[0] != 'F' && strWord[0] != 'f') || strWord[1] == '0') return 0;
    const char* const pEnd = strWord.data() + strWord.size();
    const auto [pStop, eError] = std::from_chars(strWord.data() + 1, pEnd, uNumber);
    const bool bGood = eError == std::errc() && pStop == pEnd && uNumber <= g_uFunctionKeys;
    return bGood ? kKeyF1 + uNumber - 1 : 0;
}

u32 KeyOf(const std::string& strWord) {
    const char c = strWord.size() == 1 ? strWord[0] : '\0';
    if (c >= 'a' && c <= 'z') return static_cast<u32>(c - 'a' + 'A');
    if ((c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9')) return static_cast<u32>(c);
    for (const NamedKey& st : c_astNamed)
        if (EqualFolded(strWord, st.szName)) return st.uKey;
    return FunctionKey(strWord);
}

std::string KeyText(u32 uKey) {
    if (IsLetterOrDigit(uKey)) return std::string(1, static_cast<char>(uKey));
    for (const NamedKey& st : c_astNamed)
        if (uKey == st.uKey) return st.szName;
    return "F" + std::to_string(uKey - kKeyF1 + 1);
}

bool TakeModifier(const std::string& strWord, KeyCombination& st) {
    const auto it = std::find_if(std::begin(c_astModifiers), std::end(c_astModifiers),
                                 [&](const Modifier& m) { return EqualFolded(strWord, m.szName); });
    if (it == std::end(c_astModifiers) || st.*it->pbField) return false;
    st.*it->pbField = true;
    return true;
}

} // namespace

bool ParseCombination(const std::string& strText, KeyCombination& stOut) {
    KeyCombination st;
    size_t uAt = 0;
    for (size_t uPlus = strText.find('+'); uPlus != std::string::npos; uPlus = strText.find('+', uAt)) {
        if (!TakeModifier(strText.substr(uAt, uPlus - uAt), st)) return false;
        uAt = uPlus + 1;
    }
    st.uKey = KeyOf(strText.substr(uAt));
    if (st.uKey == 0 || (IsLetterOrDigit(st.uKey) && !st.bCtrl && !st.bAlt && !st.bSuper)) return false;
    stOut = st;
    return true;
}

std::string CombinationText(const KeyCombination& st) {
    std::string strText;
    for (const Modifier& m : c_astModifiers)
        if (st.*m.pbField) strText += std::string(m.szName) + "+";
    return strText + KeyText(st.uKey);
}

} // namespace companion::keys
