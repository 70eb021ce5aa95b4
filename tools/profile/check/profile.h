#pragma once
// The linter of profiles: what a profile's author should know before a game shows it.
#include "tools/profile/check/findings.h"

#include <string>
#include <vector>

namespace companion {

struct CheckOptions {
    std::string strProfile;                  ///< name of a profile, or path of its folder or its OSD.xml
    std::string strDataFolder;               ///< the data folder, which holds Profiles and OSD_Ref.xml
    bool bJson = false;                      ///< the report as one JSON object
    bool bQuiet = false;                     ///< no notes, no closing line
    std::vector<std::string> publishedNames; ///< data names in the shared segment at the moment
    std::vector<std::string> sensorNames;    ///< base names of the sensor definitions in the settings
};

/// Checks a profile and writes the report, which ends with a line end unless it is empty.
/// 0: it passes; 1: it has errors; 3: there is no such profile.
int CheckProfile(const CheckOptions& stOptions, std::string& strReport);

/// What CheckProfile reports, as findings in the order of the file. False if there is no such profile, which
/// is then the only one.
bool FindProfileFaults(const CheckOptions& stOptions, Findings& findings);

} // namespace companion
