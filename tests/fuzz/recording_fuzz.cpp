// The input as a recording; what is taken of it is worked out and written in all three forms.
#include "companion/recording/report.h"
#include <cstdlib>
#include <string_view>

using namespace companion::recording;

extern "C" int LLVMFuzzerTestOneInput(const u8* pData, std::size_t uBytes) {
    const std::string_view szText(reinterpret_cast<const char*>(pData), uBytes);
    Reported st;
    Parser parser(st.stRecording);
    bool bGood = true;
    for (std::size_t u = 0; bGood && u < szText.size();) {
        const std::size_t uEnd = std::min(szText.find('\n', u), szText.size());
        bGood = static_cast<bool>(parser.Line(szText.substr(u, uEnd - u)));
        u = uEnd + 1;
    }
    if (!bGood || !parser.End()) return 0;
    st.stFigures = FiguresOf(FrameTimes(st.stRecording));
    if (st.stFigures.uFrames == 0) return 0;
    const std::string strPage = ReportPage({st, st});
    // What the input says must not become a part of the page.
    if (strPage.find("<script") != std::string::npos || strPage.find("=\"nan") != std::string::npos)
        std::abort();
    ReportText({st});
    ReportJson({st, st});
    return 0;
}
