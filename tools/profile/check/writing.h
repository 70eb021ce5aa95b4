#pragma once
// Writing: faces, glyphs, and the text files of memos.
#include "tools/profile/check/findings.h"
#include "tools/profile/check/items.h"

#include <filesystem>
#include <map>

namespace companion {

/// File of a profile, by the name that an attribute holds; empty if the name leaves the profile's folder.
std::filesystem::path FileInProfile(const std::filesystem::path& pathFolder, const std::string& strName);

/// Files that items name: they must be there and lie in the folder, and a memo's must hold text.
void CheckFiles(const std::vector<const ProfileItem*>& taken, const std::filesystem::path& pathFolder,
                Findings& findings);

/// The same for the file of a shown photo; null: there is none.
void CheckPhotoFile(const tinyxml2::XMLElement* pPhoto, const std::filesystem::path& pathFolder,
                    Findings& findings);

/// Faces that are not installed, and letters that a face lacks.
void CheckFaces(const std::vector<const ProfileItem*>& taken, const std::filesystem::path& pathFolder,
                Findings& findings);

/// The font file that each face is loaded from, the profile's own or else the default profile's: one that is
/// no good is passed over.
void CheckFontFiles(const std::vector<const ProfileItem*>& taken, const std::filesystem::path& pathFolder,
                    const std::filesystem::path& pathShared, Findings& findings);

} // namespace companion
