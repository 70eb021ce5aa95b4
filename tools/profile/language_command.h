#pragma once
// Languages of captions in a data folder.
#include "companion/profile_folder.h"
#include "platform/types.h"
#include <string>
#include <vector>

namespace companion {

struct LanguageRow {
    std::string strName; ///< of its file, without the extension
    bool bChosen = false;
    bool bReadable = false;
    u32 uCaptions = 0;
    std::string strFace;  ///< that the file asks for; empty: that of the styles
    std::string strDrawn; ///< that this system draws with
    u32 uMissing = 0;     ///< letters of the captions that nothing here draws
};

/// strChosen: name of the file in use; empty for none.
std::vector<LanguageRow> LanguagesOf(const std::filesystem::path& pathData, const std::string& strChosen);

std::string LanguageTableText(const std::vector<LanguageRow>& listRows);
std::string LanguageJson(const std::vector<LanguageRow>& listRows);

} // namespace companion
