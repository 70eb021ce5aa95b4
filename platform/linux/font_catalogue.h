#pragma once
// Which files hold the glyphs for a face name, by a fontconfig that is linked into us and shared with nobody:
// a host may end its own at any time. The configuration is our own too; the host's is neither used nor
// changed.
#include "platform/types.h"

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

struct _FcCharSet;
struct _FcConfig;
struct _FcFontSet;
struct _FcPattern;

namespace platform {

/// One face of a font file.
struct stFaceFile {
    std::string m_path;
    i32 m_iIndex = 0;
    const _FcCharSet* m_pCodes = nullptr; ///< belongs to the list
};

/// Faces that may draw a text, the best first.
class CFaceList {
  public:
    /// Takes the pattern over, and its match, which may be missing.
    CFaceList(_FcConfig* pConfig, _FcPattern* pPattern);
    ~CFaceList();
    CFaceList(const CFaceList&) = delete;
    CFaceList& operator=(const CFaceList&) = delete;

    /// The match; without a path when there is no font at all.
    const stFaceFile& Main() const { return m_stMain; }
    /// Those that stand in where the match has no glyph, sorted at the first call.
    const std::vector<stFaceFile>& Others();
    static bool Covers(const stFaceFile& stFile, u32 uCode);

  private:
    _FcConfig* m_pConfig;
    _FcPattern* m_pPattern;
    _FcPattern* m_pMatch = nullptr;
    _FcFontSet* m_pSorted = nullptr;
    stFaceFile m_stMain;
    std::vector<stFaceFile> m_aOthers;
};

/// One configuration with the lists found in it. Callers see to it that one thread at a time is in here.
class CFontCatalogue {
  public:
    /// The one in use, or a new one: that reads the system's font caches. Null without a
    /// configuration.
    static std::shared_ptr<CFontCatalogue> Open();
    explicit CFontCatalogue(_FcConfig* pConfig) : m_pConfig(pConfig) {}
    ~CFontCatalogue();
    CFontCatalogue(const CFontCatalogue&) = delete;
    CFontCatalogue& operator=(const CFontCatalogue&) = delete;

    /// Faces for a family (UTF-8; empty: the default one, of fixed pitch) and a weight of 1 to 1000. Valid as
    /// long as the catalogue.
    CFaceList& Find(const std::string& family, i32 iWeight);

  private:
    _FcConfig* m_pConfig;
    std::map<std::pair<std::string, i32>, std::unique_ptr<CFaceList>> m_mapLists;
};

} // namespace platform
