#include "platform/tool_batch.h"
#include "platform/tool_bytes.h"
#include <algorithm>

namespace platform::tool {
namespace {

constexpr const char* kRefused = "\"%&|<>^";

bool IsRefused(char c) {
    return std::string_view(kRefused).find(c) != std::string_view::npos || c == '\r' || c == '\n';
}

} // namespace

bool IsBatchFile(const std::string& strFile) {
    const std::string strName = strFile.substr(0, strFile.find_last_not_of(". ") + 1);
    if (strName.size() < 4) return false;
    const std::string strEnd = strName.substr(strName.size() - 4);
    return EqualFolded(strEnd, ".bat") || EqualFolded(strEnd, ".cmd");
}

std::string BatchFault(const std::vector<std::string>& listWords) {
    for (const std::string& strWord : listWords) {
        if (std::any_of(strWord.begin(), strWord.end(), IsRefused))
            return std::string("a batch file would run parts of this word as commands, so none of ") +
                   kRefused + " may stand in it: " + strWord;
    }
    return {};
}

} // namespace platform::tool
