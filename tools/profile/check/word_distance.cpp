#include "tools/profile/check/attributes.h"

#include <algorithm>
#include <string>
#include <vector>

namespace companion {
namespace {

std::string Folded(std::string_view sz) {
    std::string str(sz);
    for (char& c : str)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return str;
}

} // namespace

unsigned WordDistance(std::string_view szA, std::string_view szB) {
    const std::string a = Folded(szA), b = Folded(szB);
    const std::size_t uRow = b.size() + 1;
    // Three rows: two back for swapped neighbours, one back, and the one being worked out.
    std::vector<unsigned> before(uRow), last(uRow), now(uRow);
    for (std::size_t j = 0; j < uRow; ++j) last[j] = static_cast<unsigned>(j);
    for (std::size_t i = 1; i <= a.size(); ++i) {
        now[0] = static_cast<unsigned>(i);
        for (std::size_t j = 1; j < uRow; ++j) {
            now[j] = std::min({last[j] + 1, now[j - 1] + 1, last[j - 1] + (a[i - 1] != b[j - 1])});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
                now[j] = std::min(now[j], before[j - 2] + 1);
        }
        before.swap(last);
        last.swap(now);
    }
    return last[b.size()];
}

} // namespace companion
