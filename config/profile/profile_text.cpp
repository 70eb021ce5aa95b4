// What keeps a document from the parser. The tree is many times as large as the text, and two of the parser's
// habits cost the square of the text's length: it looks for the end of each numbered character through all
// that follows, and for each attribute through all attributes before it.
#include "config/profile/profile_document.h"

#include <algorithm>

namespace {

/// Bytes that all searches for the ends of numbered characters may pass together.
constexpr std::size_t c_uEntityBytesMax = 64 * 1024 * 1024;

bool IsNarrowText(std::string_view text) {
    return !text.starts_with("\xFF\xFE") && !text.starts_with("\xFE\xFF") &&
           text.find('\0') == std::string_view::npos;
}

/// From the end to the start, so that the next ";" of every place is known.
bool IsEntityCostBounded(std::string_view text) {
    std::size_t uNextEnd = text.size(), uCost = 0;
    for (std::size_t u = text.size(); u-- > 0;) {
        if (text[u] == ';') uNextEnd = u;
        if (text[u] == '&' && u + 1 < text.size() && text[u + 1] == '#') uCost += uNextEnd - u;
        if (uCost > c_uEntityBytesMax) return false;
    }
    return true;
}

/// Walks the marks of a text as the parser would, up to where it would give up.
class CMarkWalk {
  public:
    explicit CMarkWalk(std::string_view text) : m_text(text) {}

    const char* Run() {
        while (Advance("<")) {
            if (m_text.starts_with("/"))
                Advance(">");
            else if (const char* szProblem = Mark())
                return szProblem;
        }
        return nullptr;
    }

  private:
    /// To behind the next such text, or to the end.
    bool Advance(std::string_view what) {
        const std::size_t u = m_text.find(what);
        m_text.remove_prefix(u == std::string_view::npos ? m_text.size() : u + what.size());
        return u != std::string_view::npos;
    }

    const char* Mark() {
        static constexpr std::string_view aaPairs[][2] = {
            {"?", "?>"}, {"!--", "-->"}, {"![CDATA[", "]]>"}, {"!", ">"}};
        if (++m_uNodes > g_uDocumentNodesMax) return "has too many elements";
        for (const auto& [begin, end] : aaPairs) {
            if (!m_text.starts_with(begin)) continue;
            m_text.remove_prefix(begin.size());
            Advance(end);
            return nullptr;
        }
        return Attributes();
    }

    /// Every value stands in quotes, which may hold any other mark.
    const char* Attributes() {
        std::size_t uAttributes = 0;
        for (std::size_t u = 0; (u = m_text.find_first_of(">\"'")) != std::string_view::npos;) {
            const char c = m_text[u];
            m_text.remove_prefix(u + 1);
            if (c == '>') return nullptr;
            if (++uAttributes > g_uElementAttributesMax) return "has an element with too many attributes";
            if (++m_uAttributes > g_uDocumentAttributesMax) return "has too many attributes";
            Advance({&c, 1});
        }
        m_text = {};
        return nullptr;
    }

    std::string_view m_text;
    std::size_t m_uNodes = 0, m_uAttributes = 0;
};

} // namespace

const char* g_fnDocumentProblem(std::string_view text) {
    if (text.size() > g_uDocumentBytesMax) return "is too large";
    if (!IsNarrowText(text)) return "is not UTF-8 text";
    if (!IsEntityCostBounded(text)) return "has too many unfinished numbered characters";
    return CMarkWalk(text).Run();
}
