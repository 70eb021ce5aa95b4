#include "tools/profile/check/document.h"

#include "config/profile/profile_document.h"
#include "platform/utf.h"
#include "tools/profile/check/fixed_style.h"
#include "tools/profile/check/nearest.h"

#include <cstring>
#include <map>
#include <tinyxml2.h>

namespace companion {
namespace {

/// Line of a byte of the text that is no UTF-8; 0 if all is well.
int LineOfBadByte(std::string_view text) {
    const std::string str(text);
    int iLine = 1;
    for (const char* sz = str.c_str(); *sz;) {
        if (*sz == '\n') ++iLine;
        const bool bReplacement = std::strncmp(sz, "\xEF\xBF\xBD", 3) == 0;
        if (platform::NextUtf8(sz) == 0xFFFD && !bReplacement) return iLine;
    }
    return 0;
}

struct stParserWords {
    tinyxml2::XMLError eError;
    const char* szWords;
};
constexpr stParserWords g_aParserWords[] = {
    {tinyxml2::XML_ERROR_MISMATCHED_ELEMENT, "the element that begins here is not closed by its own end tag"},
    {tinyxml2::XML_ERROR_PARSING_ATTRIBUTE, "an attribute lacks a quote or an equals sign, or stands twice"},
    {tinyxml2::XML_ERROR_PARSING_ELEMENT, "an element's tag is not complete"},
    {tinyxml2::XML_ERROR_PARSING_COMMENT, "a comment is not closed"},
    {tinyxml2::XML_ERROR_PARSING_TEXT, "an element is not closed before the end of the file"},
    {tinyxml2::XML_ERROR_EMPTY_DOCUMENT, "the file is empty"},
    {tinyxml2::XML_ELEMENT_DEPTH_EXCEEDED, "elements stand in each other too deep"},
};

std::string ParserWords(const tinyxml2::XMLDocument& document) {
    for (const stParserWords& st : g_aParserWords)
        if (st.eError == document.ErrorID()) return st.szWords;
    return tinyxml2::XMLDocument::ErrorIDToName(document.ErrorID());
}

const tinyxml2::XMLElement* Child(const tinyxml2::XMLElement* p, const char* szName) {
    return p ? p->FirstChildElement(szName) : nullptr;
}

std::string Quoted(const char* sz) { return '<' + std::string(sz) + '>'; }

void CheckElementName(const tinyxml2::XMLElement& element, const char* szParent, Findings& findings) {
    const std::string strNear = NearestElement(element.Name(), szParent);
    const bool bItemElsewhere = FindElement(element.Name(), "Info") && std::strcmp(szParent, "Info") != 0;
    std::string strText = "unknown element " + Quoted(element.Name()) + " in " + Quoted(szParent);
    if (bItemElsewhere)
        strText += "; items belong into <Info>";
    else if (!strNear.empty())
        strText += "; did you mean " + Quoted(strNear.c_str()) + '?';
    findings.Error(element.GetLineNum(), strText);
}

void CheckAttributes(const tinyxml2::XMLElement& element, const stElement& known, Findings& findings) {
    for (const tinyxml2::XMLAttribute* p = element.FirstAttribute(); p && !findings.IsFull(); p = p->Next()) {
        if (const stAttribute* pKnown = FindAttribute(known, p->Name())) {
            if (!IsJudgedWithItem(known, *pKnown)) CheckValue(*p, *pKnown, findings);
            continue;
        }
        findings.Warning(p->GetLineNum(), std::string("unknown attribute \"") + p->Name() + "\" of " +
                                              Quoted(known.szName) + AttributeHint(p->Name(), known));
    }
}

/// Only the first of an element that may stand once is read.
void CheckRepeated(const tinyxml2::XMLElement& element, const stElement& known,
                   std::map<std::string, int>& first, Findings& findings) {
    if (known.bRepeats) return;
    const auto [it, bFirst] = first.emplace(element.Name(), element.GetLineNum());
    if (!bFirst)
        findings.Warning(element.GetLineNum(), Quoted(element.Name()) + " stands in line " +
                                                   std::to_string(it->second) +
                                                   " already; only the first is read");
}

void CheckIgnored(const tinyxml2::XMLElement& element, Findings& findings) {
    findings.Note(element.GetLineNum(), Quoted(element.Name()) +
                                            " belongs to the built-in layouts; a custom layout "
                                            "does not show it");
}

void CheckElement(const tinyxml2::XMLElement& element, const stElement& known, Findings& findings) {
    CheckAttributes(element, known, findings);
    std::map<std::string, int> first;
    for (const tinyxml2::XMLElement* p = element.FirstChildElement(); p && !findings.IsFull();
         p = p->NextSiblingElement()) {
        const stElement* pKnown = FindElement(p->Name(), known.szName);
        if (known.eUse == ElementUse::Item || !pKnown) {
            CheckElementName(*p, known.szName, findings);
            continue;
        }
        CheckRepeated(*p, *pKnown, first, findings);
        if (pKnown->eUse == ElementUse::Ignored)
            CheckIgnored(*p, findings);
        else
            CheckElement(*p, *pKnown, findings);
    }
}

/// A style that isn't written counts as the first.
void CheckStyle(const tinyxml2::XMLElement& root, Findings& findings) {
    if (!root.Attribute("LayoutStyle"))
        findings.Warning(root.GetLineNum(), "LayoutStyle is missing and counts as 0 (ClassicLayout); custom "
                                            "layouts have LayoutStyle=\"2\"");
}

/// Two numbers above 0 with a colon between them.
bool IsRatio(const char* szText) {
    const auto Number = [&] {
        const char* const szBegin = szText;
        while ((*szText >= '0' && *szText <= '9') || *szText == '.') ++szText;
        return szText != szBegin && ReadNumber(szBegin, ValueKind::Number) > 0;
    };
    return Number() && *szText++ == ':' && Number() && !*szText;
}

/// One side alone counts as none.
void CheckPreview(const tinyxml2::XMLElement& settings, Findings& findings) {
    const tinyxml2::XMLElement* p = Child(&settings, "Preview");
    if (const char* szRatio = p ? p->Attribute("AspectRatio") : nullptr; szRatio && *szRatio) {
        if (!IsRatio(szRatio))
            findings.Warning(p->GetLineNum(),
                             std::string("AspectRatio \"") + szRatio +
                                 "\" is not two numbers with a colon, as 16:9; any text makes the "
                                 "canvas 1080 units high");
        return;
    }
    if (!p) return;
    const char *szWidth = p->Attribute("Width"), *szHeight = p->Attribute("Height");
    const bool bWidth = szWidth && ReadNumber(szWidth, ValueKind::Whole) != 0;
    const bool bHeight = szHeight && ReadNumber(szHeight, ValueKind::Whole) != 0;
    if (bWidth != bHeight)
        findings.Warning(p->GetLineNum(),
                         "Width and Height have an effect only together; the canvas is 1080 units high");
}

/// The chain of elements without which nothing is loaded.
const tinyxml2::XMLElement* FindSettings(const tinyxml2::XMLElement& root, const char* szLayout,
                                         Findings& findings) {
    const std::string strLayout = "<" + std::string(szLayout) + ">";
    const tinyxml2::XMLElement* pLayout = Child(&root, szLayout);
    if (!pLayout) {
        findings.Error(root.GetLineNum(), strLayout + " is missing in <OSD>: the profile is not loaded");
        return nullptr;
    }
    const tinyxml2::XMLElement* pSettings = Child(pLayout, "Settings");
    if (!pSettings)
        findings.Error(pLayout->GetLineNum(),
                       "<Settings> is missing in " + strLayout + ": the profile is not loaded");
    return pSettings;
}

} // namespace

bool ParseForCheck(std::string_view text, tinyxml2::XMLDocument& document, Findings& findings) {
    i32 iCode = PROFILE_OK;
    const bool bParsed = g_fnParseProfileDocument(text, document, &iCode);
    if (const char* szProblem = g_fnDocumentProblem(text)) {
        findings.Error(0, std::string("the file ") + szProblem);
    } else if (document.Error()) {
        findings.Error(document.ErrorLineNum(), std::string("not well formed: ") + ParserWords(document));
    } else if (!bParsed) {
        const tinyxml2::XMLElement* pRoot = document.RootElement();
        findings.Error(pRoot ? pRoot->GetLineNum() : 0, "the root element is not <OSD>");
    } else if (const int iLine = LineOfBadByte(text)) {
        findings.Error(iLine, "bytes that are no UTF-8; save the file as UTF-8");
    }
    return bParsed;
}

const tinyxml2::XMLElement* CheckDocument(const tinyxml2::XMLDocument& document, Findings& findings) {
    const tinyxml2::XMLElement* pRoot = document.FirstChildElement("OSD");
    if (!pRoot) return nullptr;
    if (const tinyxml2::XMLElement* pSecond = pRoot->NextSiblingElement())
        findings.Warning(pSecond->GetLineNum(), "a second root element, " + Quoted(pSecond->Name()) +
                                                    "; only the first <OSD> is read");
    const u32 uStyle = g_fnLayoutStyleOf(*pRoot);
    const stElement& known = *FindElement("OSD", "");
    uStyle == STYLE_CUSTOM ? CheckElement(*pRoot, known, findings) : CheckAttributes(*pRoot, known, findings);
    CheckStyle(*pRoot, findings);
    const tinyxml2::XMLElement* pSettings = FindSettings(*pRoot, g_fnLayoutElementName(uStyle), findings);
    if (!pSettings) return nullptr;
    CheckPreview(*pSettings, findings);
    if (uStyle != STYLE_CUSTOM) {
        CheckFixedSettings(*pSettings, findings);
        return nullptr;
    }
    const tinyxml2::XMLElement* pInfo = Child(pSettings, "Info");
    if (!pInfo)
        findings.Warning(pSettings->GetLineNum(), "<Info> is missing in <Settings>: nothing is shown");
    return pInfo;
}

} // namespace companion
