#pragma once
// The two documents of a layout: OSD.xml of the profile, which says what is shown and in which style, and
// OSD_Ref.xml of the data folder, which carries what the styles with fixed tables are made of. Both stay in
// memory until the next full read or a release. Render thread only, but for the operations that work on a
// document of the caller's.
#include "base/layout_style.h"
#include "draw/data_path.h"
#include "platform/types.h"

#include <cstddef>
#include <string_view>

namespace tinyxml2 {
class XMLDocument;
class XMLElement;
} // namespace tinyxml2

// --- one document ------------------------------------------------------------------------------------------

/// A document above these sizes is refused: no layout comes near, and the parser's tree is far larger than
/// the text.
constexpr std::size_t g_uDocumentBytesMax = 32 * 1024 * 1024;
constexpr std::size_t g_uDocumentNodesMax = 2000000;
constexpr std::size_t g_uDocumentAttributesMax = 4000000;
/// Attributes of one element; the parser compares each with all before it.
constexpr std::size_t g_uElementAttributesMax = 128;

/// What is wrong with a profile or with one of its documents. The first three are of one document.
enum eProfileError : i32 {
    PROFILE_OK = -1,
    PROFILE_NOT_OPENED = 0,  ///< no such file, or too large
    PROFILE_NOT_PARSED = 1,  ///< not well formed, or refused by g_fnDocumentProblem
    PROFILE_NO_ROOT = 2,     ///< no root "OSD"
    PROFILE_NO_LAYOUT = 4,   ///< no element of the active style
    PROFILE_NO_SETTINGS = 5, ///< the style's element has no "Settings"
    PROFILE_NO_GROUP = 6,    ///< styles with fixed tables: no "Group" in OSD_Ref.xml
    PROFILE_NO_TEMPLATE = 7  ///< styles with fixed tables: no "Template" there
};

/// Why a text is kept from the parser, in words for an author, or null: what is no narrow text (UTF-16, bytes
/// of 0), and what would cost the parser time or memory out of proportion. A null is no proof that it parses.
const char* g_fnDocumentProblem(std::string_view text);
/// Opens and parses a profile's document; it has a root "OSD" if the answer is true. Otherwise *piCode (or
/// null) gets one of the first three codes; the document keeps the parser's error, if it was one. wzPath is a
/// full path.
bool g_fnOpenProfileDocument(const char16_t* wzPath, tinyxml2::XMLDocument& document, i32* piCode);
constexpr char g_szProfileRoot[] = "OSD";
/// The same for a document with another root.
bool g_fnOpenRootedDocument(const char16_t* wzPath, const char* szRoot, tinyxml2::XMLDocument& document,
                            i32* piCode);
/// As g_fnOpenProfileDocument, for a text in memory.
bool g_fnParseProfileDocument(std::string_view text, tinyxml2::XMLDocument& document, i32* piCode);
/// Full path of a profile's OSD.xml, whether it exists or not. False, with an empty path, if the name is not
/// one plain folder name or the path does not fit. wzOut: g_uDataPathCapacity units.
bool g_fnResolveProfileDocument(const char16_t* wzName, char16_t* wzOut) noexcept;

/// Element of a layout style; that of Classic for any value that is no style.
const char* g_fnLayoutElementName(u32 uStyle);
/// Style that a root names, or the one that is forced; any 32-bit value.
u32 g_fnLayoutStyleOf(const tinyxml2::XMLElement& root);

// --- the active profile ------------------------------------------------------------------------------------

/// Makes the controls of a style. False if a step failed.
using stLayoutRoutine = bool (*)();
/// Routines by style; null where a style is not built in.
extern stLayoutRoutine g_apLayoutRoutine[g_uLayoutStyles];

/// What the last read found. The elements are null until a read has succeeded.
struct stProfile {
    const tinyxml2::XMLElement* pRoot = nullptr;      ///< "OSD" of OSD.xml
    const tinyxml2::XMLElement* pLayout = nullptr;    ///< element of the active style in OSD.xml
    const tinyxml2::XMLElement* pSettings = nullptr;  ///< its "Settings"
    const tinyxml2::XMLElement* pGroup = nullptr;     ///< OSD_Ref.xml; null for Custom
    const tinyxml2::XMLElement* pTemplate = nullptr;  ///< OSD_Ref.xml; null for Custom
    const tinyxml2::XMLElement* pExtension = nullptr; ///< OSD_Ref.xml, may be missing; read by nobody
    const tinyxml2::XMLElement* pPreset = nullptr;    ///< OSD_Ref.xml, may be missing
    stLayoutRoutine pRoutine = nullptr; ///< of the style; null until a read, and for one that is not built in
    i32 iError = PROFILE_OK;            ///< code of the last read's failure, PROFILE_OK after a success
};
extern stProfile g_stProfile;
/// Reads both documents of g_wzProfileName ("Default" where that is empty), sets the handles, g_uLayoutStyle
/// and the routine. False, with all handles null and the style untouched, if any step fails.
bool g_fnRead_OSD_Profile();
/// Parses OSD_Ref.xml for the next read, which takes it as it is, or drops it where the profile's own
/// document is at fault.
void g_fnReadReferenceAhead() noexcept;
/// Drops what no read has taken.
void g_fnDropReferenceAhead() noexcept;
/// Drops both documents and every handle.
void g_fnClearProfileDocuments();
/// "Group" of OSD_Ref.xml, whose rows take the profile's order; null for Custom.
tinyxml2::XMLElement* g_fnProfileGroup();
/// "Info" of the settings; null if missing.
const tinyxml2::XMLElement* g_fnProfileInfo();
/// A child of the settings; null if missing.
const tinyxml2::XMLElement* g_fnProfileSetting(const char* szName);
/// "IsShow" of a child of the settings, 0 if either is missing.
u32 g_fnReadIsShow(const char* szName);

/// Size that a preview of the profile has, in pixels; bFixedAspect if it comes from an aspect ratio. Reads
/// OSD.xml on its own, before the documents are held.
void g_fnReadPreviewSize(u32& uWidth, u32& uHeight, bool& bFixedAspect);

/// Tell the user, where message boxes are asked for: that the documents could not be read; that the load of
/// the profile stopped.
void g_fnReportProfileFailure();
void g_fnReportLoadFailure();
