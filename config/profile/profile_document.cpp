#include "config/profile/profile_document.h"

#include "base/layout_style.h"
#include "base/log.h"
#include "base/watched_files.h"
#include "config/settings/setting_binding.h"
#include "config/settings/settings.h"
#include "platform/folders.h"
#include "platform/input_file.h"
#include "platform/log.h"
#include "platform/surface.h"
#include "shared/process_records.h"

#include <algorithm>
#include <memory>
#include <string>

#include <tinyxml2.h>

using tinyxml2::XMLDocument;
using tinyxml2::XMLElement;

stLayoutRoutine g_apLayoutRoutine[g_uLayoutStyles] = {};
stProfile g_stProfile;

namespace {

constexpr const char* c_aszLayouts[g_uLayoutStyles] = {"ClassicLayout", "ORVINLayout", "CustomLayout"};

std::unique_ptr<XMLDocument> g_pProfileDocument, g_pReferenceDocument;
std::unique_ptr<XMLDocument> g_pReferenceAhead; ///< parsed for the next read

void SetCode(i32* piCode, i32 iCode) {
    if (piCode) *piCode = iCode;
}

bool Parse(std::string_view text, const char* szRoot, XMLDocument& document, i32* piCode) {
    document.Clear();
    SetCode(piCode, PROFILE_NOT_PARSED);
    if (const char* szProblem = g_fnDocumentProblem(text)) {
        g_fnLog("profile document refused: %s", szProblem);
        return false;
    }
    if (document.Parse(text.data(), text.size()) != tinyxml2::XML_SUCCESS) return false;
    const bool bRoot = document.FirstChildElement(szRoot) != nullptr;
    SetCode(piCode, bRoot ? PROFILE_OK : PROFILE_NO_ROOT);
    return bRoot;
}

const XMLElement* Child(const XMLElement* pParent, const char* szName) {
    return pParent ? pParent->FirstChildElement(szName) : nullptr;
}

const XMLElement* Demand(const XMLElement* pElement, i32 iCode) {
    if (!pElement) throw iCode;
    return pElement;
}

std::unique_ptr<XMLDocument> OpenOrThrow(const char16_t* wzPath) {
    auto pDocument = std::make_unique<XMLDocument>();
    i32 iCode = PROFILE_OK;
    if (!g_fnOpenProfileDocument(wzPath, *pDocument, &iCode)) throw iCode;
    return pDocument;
}

/// Those children of a root that a layout of the style looks at, as a document.
std::string KeptText(const XMLElement& root, u32 uStyle) {
    tinyxml2::XMLPrinter printer(nullptr, true);
    printer.OpenElement(g_szProfileRoot, true);
    const char* const szFixed = uStyle == STYLE_CUSTOM ? "" : g_fnLayoutElementName(uStyle);
    for (const char* szKept : {szFixed, "Extension", "Preset"})
        if (const XMLElement* const pKept = root.FirstChildElement(szKept)) pKept->Accept(&printer);
    printer.CloseElement(true);
    return {printer.CStr(), static_cast<std::size_t>(printer.CStrSize()) - 1};
}

/// A style uses half of OSD_Ref.xml at most. The rest goes ahead of all that the layout takes memory for, or
/// the program would keep its room.
void ShrinkReference() {
    const XMLElement& root = *g_pReferenceDocument->FirstChildElement(g_szProfileRoot);
    const u32 uStyle = g_fnLayoutStyleOf(*g_pProfileDocument->FirstChildElement(g_szProfileRoot));
    const std::string strText = KeptText(root, uStyle);
    if (strText.find('\r') != strText.npos) return; // one that was spelled out would be read as a line end
    g_pReferenceDocument = std::make_unique<XMLDocument>();
    if (g_pReferenceDocument->Parse(strText.data(), strText.size()) != tinyxml2::XML_SUCCESS)
        throw i32{PROFILE_NOT_PARSED};
}

std::unique_ptr<XMLDocument> OpenReference() {
    char16_t wzPath[g_uDataPathCapacity];
    g_fnResolveDataPath(wzPath, u"OSD_Ref.xml");
    if (!g_pReferenceAhead) return OpenOrThrow(wzPath);
    g_fnWatchFile(wzPath);
    return std::move(g_pReferenceAhead);
}

void OpenBoth() {
    char16_t wzPath[g_uDataPathCapacity];
    if (!g_wzProfileName[0]) g_fnSetProfileName(u"Default");
    g_fnResolveProfileDocument(g_wzProfileName, wzPath);
    g_pProfileDocument = OpenOrThrow(wzPath);
    g_pReferenceDocument = OpenReference();
    ShrinkReference();
}

/// The style comes last: a read that fails leaves it as it was.
void TakeHandles() {
    g_stProfile.pRoot = g_pProfileDocument->FirstChildElement("OSD");
    const XMLElement* const pReference = g_pReferenceDocument->FirstChildElement("OSD");
    const u32 uStyle = g_fnLayoutStyleOf(*g_stProfile.pRoot);
    const char* const szLayout = g_fnLayoutElementName(uStyle);
    g_stProfile.pExtension = Child(pReference, "Extension");
    g_stProfile.pPreset = Child(pReference, "Preset");
    g_stProfile.pLayout = Demand(Child(g_stProfile.pRoot, szLayout), PROFILE_NO_LAYOUT);
    // Custom is its own reference.
    const XMLElement* const pFixed =
        uStyle == STYLE_CUSTOM ? nullptr : Demand(Child(pReference, szLayout), PROFILE_NO_LAYOUT);
    g_stProfile.pSettings = Demand(Child(g_stProfile.pLayout, "Settings"), PROFILE_NO_SETTINGS);
    if (pFixed) {
        g_stProfile.pGroup = Demand(Child(pFixed, "Group"), PROFILE_NO_GROUP);
        g_stProfile.pTemplate = Demand(Child(pFixed, "Template"), PROFILE_NO_TEMPLATE);
    }
    g_stProfile.pRoutine = g_apLayoutRoutine[uStyle < g_uLayoutStyles ? uStyle : 0];
    g_uLayoutStyle = uStyle;
}

} // namespace

bool g_fnOpenRootedDocument(const char16_t* wzPath, const char* szRoot, XMLDocument& document,
                            i32* piCode) try {
    std::string strBytes;
    document.Clear();
    SetCode(piCode, PROFILE_NOT_OPENED);
    g_fnWatchFile(wzPath);
    return platform::ReadWholeFile(platform::OpenInput(wzPath), g_uDocumentBytesMax, strBytes) &&
           Parse(strBytes, szRoot, document, piCode);
} catch (...) { // no memory
    return false;
}

bool g_fnOpenProfileDocument(const char16_t* wzPath, XMLDocument& document, i32* piCode) {
    return g_fnOpenRootedDocument(wzPath, g_szProfileRoot, document, piCode);
}

bool g_fnParseProfileDocument(std::string_view text, XMLDocument& document, i32* piCode) try {
    return Parse(text, g_szProfileRoot, document, piCode);
} catch (...) { // no memory
    document.Clear();
    return false;
}

bool g_fnResolveProfileDocument(const char16_t* wzName, char16_t* wzOut) noexcept {
    static constexpr char16_t wzProfiles[] = u"Profiles", wzFile[] = u"OSD.xml";
    char16_t wzRelative[g_uProfileNameUnits + std::size(wzProfiles) + std::size(wzFile)];
    wzOut[0] = 0;
    if (!g_fnIsPlainFolderName(wzName, g_uProfileNameUnits)) return false;
    char16_t* pEnd = std::copy_n(wzProfiles, std::size(wzProfiles) - 1, wzRelative);
    *pEnd++ = platform::g_cPathSeparator;
    for (u32 u = 0; wzName[u]; ++u)
        if (u < g_uProfileNameUnits - 1)
            *pEnd++ = wzName[u];
        else
            return false;
    *pEnd++ = platform::g_cPathSeparator;
    std::copy_n(wzFile, std::size(wzFile), pEnd);
    return g_fnResolveDataPath(wzOut, wzRelative);
}

const char* g_fnLayoutElementName(u32 uStyle) { return c_aszLayouts[uStyle < g_uLayoutStyles ? uStyle : 0]; }

u32 g_fnLayoutStyleOf(const XMLElement& root) {
    if (g_iLayoutStyleOverride != -1) return static_cast<u32>(g_iLayoutStyleOverride);
    return g_fnReadXmlDecimal(&root, "LayoutStyle");
}

bool g_fnRead_OSD_Profile() {
    g_fnClearProfileDocuments();
    try {
        OpenBoth();
        TakeHandles();
        g_stProfile.iError = PROFILE_OK;
        return true;
    } catch (i32 iCode) {
        g_fnClearProfileDocuments();
        g_fnDropReferenceAhead(); // the next try comes after a repair
        g_stProfile.iError = iCode;
        return false;
    }
}

void g_fnReadReferenceAhead() noexcept try {
    g_pReferenceAhead = OpenReference();
} catch (...) { // the next read meets it again and says so
}

void g_fnDropReferenceAhead() noexcept { g_pReferenceAhead.reset(); }

void g_fnClearProfileDocuments() {
    g_stProfile.pRoot = g_stProfile.pLayout = g_stProfile.pSettings = nullptr;
    g_stProfile.pGroup = g_stProfile.pTemplate = g_stProfile.pExtension = g_stProfile.pPreset = nullptr;
    g_stProfile.pRoutine = nullptr;
    g_pProfileDocument.reset();
    g_pReferenceDocument.reset();
}

// The document that the element belongs to is this file's own.
XMLElement* g_fnProfileGroup() { return const_cast<XMLElement*>(g_stProfile.pGroup); }

const XMLElement* g_fnProfileInfo() { return g_fnProfileSetting("Info"); }

const XMLElement* g_fnProfileSetting(const char* szName) { return Child(g_stProfile.pSettings, szName); }

u32 g_fnReadIsShow(const char* szName) { return g_fnReadXmlDecimal(g_fnProfileSetting(szName), "IsShow"); }

void g_fnReportProfileFailure() {
    if (g_stSettings.bDebugMessageBox) platform::ShowMessageBox(u"g_fnRead_OSD_Profile fail", "Error");
}

void g_fnReportLoadFailure() {
    if (g_stSettings.bDebugMessageBox) platform::ShowMessageBox(g_wzProfileName, "g_wzProfileName");
}
