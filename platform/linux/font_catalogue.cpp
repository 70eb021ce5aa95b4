#include "platform/linux/font_catalogue.h"
#include "platform/linux/font_stack.h"

#include <fontconfig/fontconfig.h>

namespace platform {

static stFaceFile FaceOf(FcPattern* pPattern) {
    stFaceFile st;
    FcChar8* szPath = nullptr;
    int iIndex = 0;
    FcCharSet* pCodes = nullptr;
    if (FcPatternGetString(pPattern, FC_FILE, 0, &szPath) != FcResultMatch) return st;
    FcPatternGetInteger(pPattern, FC_INDEX, 0, &iIndex);
    FcPatternGetCharSet(pPattern, FC_CHARSET, 0, &pCodes);
    st.m_path = reinterpret_cast<const char*>(szPath);
    st.m_iIndex = iIndex;
    st.m_pCodes = pCodes;
    return st;
}

CFaceList::CFaceList(FcConfig* pConfig, FcPattern* pPattern) : m_pConfig(pConfig), m_pPattern(pPattern) {
    FcResult eResult = FcResultMatch;
    m_pMatch = FcFontMatch(pConfig, pPattern, &eResult);
    if (m_pMatch) m_stMain = FaceOf(m_pMatch);
}

const std::vector<stFaceFile>& CFaceList::Others() {
    if (m_pSorted) return m_aOthers;
    FcResult eResult = FcResultMatch;
    m_pSorted = FcFontSort(m_pConfig, m_pPattern, FcTrue, nullptr, &eResult);
    for (int i = 0; m_pSorted && i < m_pSorted->nfont; ++i) {
        stFaceFile st = FaceOf(m_pSorted->fonts[i]);
        const bool bMain = st.m_path == m_stMain.m_path && st.m_iIndex == m_stMain.m_iIndex;
        if (!st.m_path.empty() && !bMain) m_aOthers.push_back(std::move(st));
    }
    return m_aOthers;
}

CFaceList::~CFaceList() {
    if (m_pSorted) FcFontSetDestroy(m_pSorted);
    if (m_pMatch) FcPatternDestroy(m_pMatch);
    FcPatternDestroy(m_pPattern);
}

bool CFaceList::Covers(const stFaceFile& stFile, u32 uCode) {
    return stFile.m_pCodes && FcCharSetHasChar(stFile.m_pCodes, uCode);
}

std::shared_ptr<CFontCatalogue> CFontCatalogue::Open() {
    // Never destroyed: the host may still draw while the process ends.
    static auto* const pCurrent = new std::weak_ptr<CFontCatalogue>;
    if (auto pOpen = pCurrent->lock()) return pOpen;
    FcConfig* pConfig = nullptr; // its reader nests, with big buffers at each step
    host::RunWithStack([](void* p) { *static_cast<FcConfig**>(p) = FcInitLoadConfigAndFonts(); }, &pConfig);
    if (!pConfig) return nullptr;
    auto pNew = std::make_shared<CFontCatalogue>(pConfig);
    *pCurrent = pNew;
    return pNew;
}

CFontCatalogue::~CFontCatalogue() {
    m_mapLists.clear();
    FcConfigDestroy(m_pConfig);
}

CFaceList& CFontCatalogue::Find(const std::string& family, i32 iWeight) {
    std::unique_ptr<CFaceList>& pList = m_mapLists[{family, iWeight}];
    if (pList) return *pList;
    const auto text = [](const char* sz) { return reinterpret_cast<const FcChar8*>(sz); };
    FcPattern* const pPattern = FcPatternCreate();
    if (!family.empty()) FcPatternAddString(pPattern, FC_FAMILY, text(family.c_str()));
    FcPatternAddString(pPattern, FC_FAMILY, text("monospace"));
    FcPatternAddInteger(pPattern, FC_WEIGHT, FcWeightFromOpenType(iWeight));
    FcPatternAddInteger(pPattern, FC_SLANT, FC_SLANT_ROMAN);
    FcPatternAddBool(pPattern, FC_OUTLINE, FcTrue);
    FcConfigSubstitute(m_pConfig, pPattern, FcMatchPattern);
    FcDefaultSubstitute(pPattern);
    pList = std::make_unique<CFaceList>(m_pConfig, pPattern);
    return *pList;
}

} // namespace platform
