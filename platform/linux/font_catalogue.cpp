#include "platform/linux/font_catalogue.h"

#include <dlfcn.h>
#include <fontconfig/fontconfig.h>

namespace platform {

/// The functions in use. They are looked up in the library itself: a host that brings its own copy under the
/// same names is left out of it.
struct stFontconfig {
    decltype(&FcInitLoadConfigAndFonts) InitLoadConfigAndFonts;
    decltype(&FcConfigDestroy) ConfigDestroy;
    decltype(&FcConfigSubstitute) ConfigSubstitute;
    decltype(&FcDefaultSubstitute) DefaultSubstitute;
    decltype(&FcPatternCreate) PatternCreate;
    decltype(&FcPatternDestroy) PatternDestroy;
    decltype(&FcPatternAddString) PatternAddString;
    decltype(&FcPatternAddInteger) PatternAddInteger;
    decltype(&FcPatternAddBool) PatternAddBool;
    decltype(&FcPatternGetString) PatternGetString;
    decltype(&FcPatternGetInteger) PatternGetInteger;
    decltype(&FcPatternGetCharSet) PatternGetCharSet;
    decltype(&FcCharSetHasChar) CharSetHasChar;
    decltype(&FcWeightFromOpenType) WeightFromOpenType;
    decltype(&FcFontMatch) FontMatch;
    decltype(&FcFontSort) FontSort;
    decltype(&FcFontSetDestroy) FontSetDestroy;
};

template <typename T> static bool Load(void* hLibrary, T& fn, const char* szName) {
    fn = reinterpret_cast<T>(dlsym(hLibrary, szName));
    return fn != nullptr;
}

static bool LoadAll(void* h, stFontconfig& st) {
    return h && Load(h, st.InitLoadConfigAndFonts, "FcInitLoadConfigAndFonts") &&
           Load(h, st.ConfigDestroy, "FcConfigDestroy") &&
           Load(h, st.ConfigSubstitute, "FcConfigSubstitute") &&
           Load(h, st.DefaultSubstitute, "FcDefaultSubstitute") &&
           Load(h, st.PatternCreate, "FcPatternCreate") && Load(h, st.PatternDestroy, "FcPatternDestroy") &&
           Load(h, st.PatternAddString, "FcPatternAddString") &&
           Load(h, st.PatternAddInteger, "FcPatternAddInteger") &&
           Load(h, st.PatternAddBool, "FcPatternAddBool") &&
           Load(h, st.PatternGetString, "FcPatternGetString") &&
           Load(h, st.PatternGetInteger, "FcPatternGetInteger") &&
           Load(h, st.PatternGetCharSet, "FcPatternGetCharSet") &&
           Load(h, st.CharSetHasChar, "FcCharSetHasChar") &&
           Load(h, st.WeightFromOpenType, "FcWeightFromOpenType") && Load(h, st.FontMatch, "FcFontMatch") &&
           Load(h, st.FontSort, "FcFontSort") && Load(h, st.FontSetDestroy, "FcFontSetDestroy");
}

/// Null without the library, which stays open for the life of the process.
static const stFontconfig* Fontconfig() {
    static stFontconfig st;
    static const bool bLoaded = LoadAll(dlopen("libfontconfig.so.1", RTLD_NOW | RTLD_LOCAL), st);
    return bLoaded ? &st : nullptr;
}

static stFaceFile FaceOf(FcPattern* pPattern) {
    stFaceFile st;
    FcChar8* szPath = nullptr;
    int iIndex = 0;
    FcCharSet* pCodes = nullptr;
    if (Fontconfig()->PatternGetString(pPattern, FC_FILE, 0, &szPath) != FcResultMatch) return st;
    Fontconfig()->PatternGetInteger(pPattern, FC_INDEX, 0, &iIndex);
    Fontconfig()->PatternGetCharSet(pPattern, FC_CHARSET, 0, &pCodes);
    st.m_path = reinterpret_cast<const char*>(szPath);
    st.m_iIndex = iIndex;
    st.m_pCodes = pCodes;
    return st;
}

CFaceList::CFaceList(FcConfig* pConfig, FcPattern* pPattern) {
    FcResult eResult = FcResultMatch;
    m_pMatch = Fontconfig()->FontMatch(pConfig, pPattern, &eResult);
    if (m_pMatch) m_stMain = FaceOf(m_pMatch);
    m_pSorted = Fontconfig()->FontSort(pConfig, pPattern, FcTrue, nullptr, &eResult);
    for (int i = 0; m_pSorted && i < m_pSorted->nfont; ++i) {
        stFaceFile st = FaceOf(m_pSorted->fonts[i]);
        const bool bMain = st.m_path == m_stMain.m_path && st.m_iIndex == m_stMain.m_iIndex;
        if (!st.m_path.empty() && !bMain) m_aOthers.push_back(std::move(st));
    }
}

CFaceList::~CFaceList() {
    if (m_pSorted) Fontconfig()->FontSetDestroy(m_pSorted);
    if (m_pMatch) Fontconfig()->PatternDestroy(m_pMatch);
}

bool CFaceList::Covers(const stFaceFile& stFile, u32 uCode) {
    return stFile.m_pCodes && Fontconfig()->CharSetHasChar(stFile.m_pCodes, uCode);
}

std::shared_ptr<CFontCatalogue> CFontCatalogue::Open() {
    // Never destroyed: the host may still draw while the process ends.
    static auto* const pCurrent = new std::weak_ptr<CFontCatalogue>;
    if (auto pOpen = pCurrent->lock()) return pOpen;
    FcConfig* const pConfig = Fontconfig() ? Fontconfig()->InitLoadConfigAndFonts() : nullptr;
    if (!pConfig) return nullptr;
    auto pNew = std::make_shared<CFontCatalogue>(pConfig);
    *pCurrent = pNew;
    return pNew;
}

CFontCatalogue::~CFontCatalogue() {
    m_mapLists.clear();
    Fontconfig()->ConfigDestroy(m_pConfig);
}

const CFaceList& CFontCatalogue::Find(const std::string& family, i32 iWeight) {
    std::unique_ptr<CFaceList>& pList = m_mapLists[{family, iWeight}];
    if (pList) return *pList;
    const auto text = [](const char* sz) { return reinterpret_cast<const FcChar8*>(sz); };
    FcPattern* const pPattern = Fontconfig()->PatternCreate();
    if (!family.empty()) Fontconfig()->PatternAddString(pPattern, FC_FAMILY, text(family.c_str()));
    Fontconfig()->PatternAddString(pPattern, FC_FAMILY, text("monospace"));
    Fontconfig()->PatternAddInteger(pPattern, FC_WEIGHT, Fontconfig()->WeightFromOpenType(iWeight));
    Fontconfig()->PatternAddInteger(pPattern, FC_SLANT, FC_SLANT_ROMAN);
    Fontconfig()->PatternAddBool(pPattern, FC_OUTLINE, FcTrue);
    Fontconfig()->ConfigSubstitute(m_pConfig, pPattern, FcMatchPattern);
    Fontconfig()->DefaultSubstitute(pPattern);
    pList = std::make_unique<CFaceList>(m_pConfig, pPattern);
    Fontconfig()->PatternDestroy(pPattern);
    return *pList;
}

} // namespace platform
