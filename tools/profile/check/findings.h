#pragma once
// What a check of a profile found, and how it is told.
#include <string>
#include <vector>

namespace companion {

/// An error keeps a profile from passing; a warning and a note don't.
enum class Severity { Error, Warning, Note };

struct Finding {
    std::string strFile; ///< as the user knows it
    int iLine = 0;       ///< counted from 1; 0 if it belongs to the file as a whole
    Severity eSeverity = Severity::Error;
    std::string strText; ///< one line, no end mark

    bool operator==(const Finding&) const = default;
};

/// Findings in the order of their discovery; one that is there already is not entered again.
class Findings {
  public:
    void Add(Severity eSeverity, int iLine, std::string strText);
    void Error(int iLine, std::string strText) { Add(Severity::Error, iLine, std::move(strText)); }
    void Warning(int iLine, std::string strText) { Add(Severity::Warning, iLine, std::move(strText)); }
    void Note(int iLine, std::string strText) { Add(Severity::Note, iLine, std::move(strText)); }

    /// The file that the following findings belong to.
    void SetFile(std::string strFile) { m_strFile = std::move(strFile); }
    const std::string& File() const { return m_strFile; }

    /// No more are taken: what is left to look at need not be.
    bool IsFull() const;
    unsigned Count(Severity eSeverity) const;
    bool Passes() const { return Count(Severity::Error) == 0; }
    const std::vector<Finding>& All() const { return m_list; }
    /// By file, in the order in which files appeared, then by line; ties as they were found.
    void Sort();

  private:
    std::string m_strFile;
    std::vector<Finding> m_list;
};

const char* SeverityName(Severity eSeverity);

/// "file:line: error: text" for each, and a closing line with the counts. bQuiet leaves notes and that line
/// out.
std::string FindingsAsText(const std::string& strProfile, const Findings& findings, bool bQuiet);
/// One object: profile, passes, errors, warnings, notes, findings.
std::string FindingsAsJson(const std::string& strProfile, const Findings& findings, bool bQuiet);

} // namespace companion
