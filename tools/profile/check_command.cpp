#include "companion/profile_folder.h"
#include "companion/utf.h"
#include "tools/profile/check/profile.h"
#include "tools/profile/program.h"
#include "tools/profile/settings.h"
#include "tools/profile/values.h"
#include <cstdio>

namespace companion {

Result CheckProfileCommand(const Options& stOptions, int& iExitCode) {
    const ProfileOptions& stWish = stOptions.stProfile;
    std::filesystem::path pathData;
    const Result stFound = FindDataFolder(stWish.strData, pathData);
    if (!stFound) return stFound;
    CheckOptions st;
    st.strProfile = stWish.strProfile;
    st.strDataFolder = TextOfPath(pathData);
    st.bJson = stWish.bJson;
    st.bQuiet = stWish.bQuiet;
    TakeMachineSettings(pathData, !stWish.strData.empty());
    st.sensorNames = DefinedSensors();
    for (const auto& [strName, iValue] : LiveValues(stOptions.strLibrary))
        st.publishedNames.push_back(strName);
    std::string strReport;
    iExitCode = CheckProfile(st, strReport);
    if (!stWish.bSilent) std::fputs(strReport.c_str(), stdout);
    return {};
}

} // namespace companion
