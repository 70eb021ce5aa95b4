#include "tools/profile/check/images.h"

#include "draw/texture.h"
#include "platform/input_file.h"
#include "tools/profile/check/item_values.h"
#include "tools/profile/log_catcher.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <string>

namespace companion {
namespace {

namespace fs = std::filesystem;

/// What is said of one picture, at the lines of its item's attributes.
class PictureReport {
  public:
    PictureReport(const ProfileItem& item, Findings& findings) : m_item(item), m_findings(findings) {}
    void Add(Severity eSeverity, const char* szAttribute, const std::string& strText) const {
        m_findings.Add(eSeverity, AttributeLine(*m_item.pElement, szAttribute),
                       ItemTitle(m_item) + ": \"" + AttributeText(m_item, "ImageFileName") + "\" " + strText);
    }

  private:
    const ProfileItem& m_item;
    Findings& m_findings;
};

struct stSize {
    double fWidth, fHeight;
};

std::string SizeText(const stSize& st) { return WholeText(st.fWidth) + " by " + WholeText(st.fHeight); }

/// The library's reason for refusing a file.
std::string RefusalOf(LogCatcher& log) {
    constexpr std::string_view c_szMark = "refused: ";
    std::string strReason;
    for (const std::string& strLine : log.Take())
        if (const std::size_t u = strLine.find(c_szMark); u != strLine.npos)
            strReason = ": " + strLine.substr(u + c_szMark.size());
    return strReason;
}

/// Bounds of the picture once it is turned.
stSize TurnedSize(const stSize& st, double fDegrees) {
    const double fTurn = fDegrees * std::numbers::pi / 180;
    const double fSin = std::fabs(std::sin(fTurn)), fCos = std::fabs(std::cos(fTurn));
    return {st.fWidth * fCos + st.fHeight * fSin, st.fHeight * fCos + st.fWidth * fSin};
}

/// The picture keeps its proportion, and what is left of its box stays empty. A turned one always leaves
/// something.
void CheckFit(const ProfileItem& item, const stSize& stPicture, const PictureReport& report) {
    constexpr double c_fUnit = 1; // less is rounding
    const stSize stBox{AttributeNumber(item, "ContentSizeW"), AttributeNumber(item, "ContentSizeH")};
    if (!(stBox.fWidth > 0) || !(stBox.fHeight > 0)) return; // told by another check
    const double fTilt = AttributeNumber(item, "TiltDegree");
    const stSize stTurned = TurnedSize(stPicture, fTilt);
    const double fScale = std::min(stBox.fWidth / stTurned.fWidth, stBox.fHeight / stTurned.fHeight);
    const double fFreeW = stBox.fWidth - stTurned.fWidth * fScale,
                 fFreeH = stBox.fHeight - stTurned.fHeight * fScale;
    if (std::fmod(fTilt, 90) == 0 && std::max(fFreeW, fFreeH) > c_fUnit)
        report.Add(Severity::Note, "ContentSizeW",
                   "is " + SizeText(stPicture) + (std::fmod(fTilt, 180) != 0 ? ", turned," : "") +
                       " and leaves bars in its box of " + SizeText(stBox) + ": " +
                       WholeText(std::max(fFreeW, fFreeH)) + " units of its " +
                       (fFreeW > fFreeH ? "width" : "height") + " stay empty");
    if (fScale > 1 + c_fUnit / std::max(stTurned.fWidth, stTurned.fHeight))
        report.Add(Severity::Note, "ContentSizeW",
                   "is " + SizeText(stPicture) + " and is enlarged to its box of " + SizeText(stBox) +
                       ", which gives it a dark rim; a larger picture has none");
}

void CheckFrames(const CTexture_Base& texture, const PictureReport& report) {
    constexpr double c_fManyMiB = 64, c_fMiB = 1024 * 1024;
    if (texture.m_uFileFrames > g_uMaxTextureFrames)
        report.Add(Severity::Warning, "ImageFileName",
                   "is an animation of " + std::to_string(texture.m_uFileFrames) +
                       " frames, of which the first " + std::to_string(g_uMaxTextureFrames) + " are shown");
    const double fMiB = static_cast<double>(texture.m_uFrameBytes) * texture.m_uFrameCount / c_fMiB;
    if (fMiB >= c_fManyMiB)
        report.Add(Severity::Warning, "ImageFileName",
                   "takes " + WholeText(fMiB) + " MiB of the graphics card's memory in every program");
}

/// The library would not read the picture at all.
bool IsReplaced(const fs::path& path, const PictureReport& report) {
    fs::path pathRaw = path;
    pathRaw += ".cache";
    std::error_code ignored;
    if (!fs::is_regular_file(pathRaw, ignored)) return false;
    report.Add(Severity::Warning, "ImageFileName",
               "has a raw picture beside it, which wins; the raw picture that is read is always "
               "\"Screenshot.png.cache\" of the data folder");
    return true;
}

} // namespace

void CheckPicture(const ProfileItem& item, const fs::path& path, Findings& findings) {
    const PictureReport report(item, findings);
    if (IsReplaced(path, report)) return;
    LogCatcher log;
    CTexture_Base texture;
    if (!texture.m_fnLoadTexture(path.u16string().c_str()))
        return report.Add(Severity::Error, "ImageFileName", "cannot be shown" + RefusalOf(log));
    CheckFrames(texture, report);
    CheckFit(item, {static_cast<double>(texture.m_uWidth), static_cast<double>(texture.m_uHeight)}, report);
}

} // namespace companion
