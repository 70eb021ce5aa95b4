#pragma once
// Profiles on disk: a profile is a folder with an OSD.xml, below "Profiles" in the data folder. All text is
// UTF-8.
#include "companion/result.h"
#include "platform/types.h"
#include <filesystem>
#include <string>
#include <vector>

namespace companion {

/// File paths of a text, and the text of a path.
std::filesystem::path PathOfText(const std::string& strUtf8);
std::string TextOfPath(const std::filesystem::path& path);

/// What a file begins with, uMost bytes at most. False if it cannot be opened or is no plain file. By paths
/// of the C++ library, which the readers of platform/ do not take: on Linux they hold names that are no text,
/// too.
bool ReadFile(const std::filesystem::path& path, u64 uMost, std::string& strBytes);

/// Why a text cannot be a profile's name; empty if it can. A name is one plain folder name.
std::string ProfileNameFault(const std::string& strName);

/// The overlay's data folder of this machine: strChosen, or where programs look for it if that is empty.
/// kNotFound if the system tells no place.
Result FindDataFolder(const std::string& strChosen, std::filesystem::path& pathOut);

/// Folder of a profile of that name, whether or not it exists.
std::filesystem::path ProfileFolder(const std::filesystem::path& pathData, const std::string& strName);
/// Names of the profiles in a data folder, in byte order: folders below "Profiles" with a file OSD.xml.
std::vector<std::string> ProfileNames(const std::filesystem::path& pathData);

/// A profile as the user named it: by name, or by the path of its folder or of its OSD.xml.
struct ProfilePlace {
    std::filesystem::path pathFolder;
    std::string strName; ///< as a program sees it: the folder's own name
};
/// True if a text is meant as a path: it has a separator, or is "." or "..".
bool IsProfilePath(const std::string& strProfile);
/// Finds a profile's folder. kNotFound, with the place that was looked at, if there is no OSD.xml.
Result FindProfile(const std::filesystem::path& pathData, const std::string& strProfile,
                   ProfilePlace& stPlace);

/// Makes a profile out of another by copying its folder. Refuses a name that exists; what a failed copy left
/// is removed.
Result CopyProfile(const std::filesystem::path& pathData, const std::string& strName,
                   const std::string& strFrom);

} // namespace companion
