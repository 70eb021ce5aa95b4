#pragma once
// The list of profiles: which there are, and where they are shown.
#include "companion/choices.h"
#include "companion/segment_view.h"
#include "platform/segment.h"
#include <filesystem>
#include <string>
#include <vector>

namespace companion {

struct ProfileRow {
    std::string strName;
    std::string strStyle; ///< name of the layout style; "unreadable", or "missing" without a folder
    std::vector<std::string> listUses; ///< "all programs", or a program with its process id
};

/// A running program with the overlay.
struct NamedInstance {
    u32 uProcessId = 0, uThreadId = 0;
    std::string strName;
};

/// The profiles of a data folder, without their uses.
std::vector<ProfileRow> ReadProfileRows(const std::filesystem::path& pathData);
/// Adds what the segment tells: the profile of all programs, and those of programs that have their own. One
/// that has no folder gets a row too. Without programs the segment tells nothing.
void AddUses(const stSharedSegment& stSegment, const std::vector<NamedInstance>& listPrograms,
             std::vector<ProfileRow>& listRows);

/// Adds what is remembered, for rows that nothing is shown by now: "all programs from their next start", and
/// file names of programs.
void AddChoices(const Choices& stChoices, std::vector<ProfileRow>& listRows);

std::string ProfileTableText(const std::vector<ProfileRow>& listRows);
std::string ProfileJson(const std::vector<ProfileRow>& listRows);

} // namespace companion
