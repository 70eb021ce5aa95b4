#pragma once
// What a user has chosen to last: the profile of all programs, those of single ones, and settings of this
// program. It lies in a small
// file of the companion, one a user, and is brought into the shared segment whenever programs are entered or
// fed.
#include "companion/control_library.h"
#include <filesystem>
#include <map>
#include <string>

namespace companion {

struct Choices {
    std::string strProfile;                              ///< of all programs; empty: none chosen
    std::map<std::string, std::string> mapPrograms;      ///< profiles by PlainProgramName
    std::map<std::string, std::string> mapSettings = {}; ///< settings of the companion by their names
};

/// File name of a program by which its choice is found: without folder and ".exe", ASCII letters small.
std::string PlainProgramName(const std::string& strProgram);

/// The file as JSON text, and back. False, with nothing taken, for what is no such text; names that no
/// profile can have are left out.
std::string ChoicesText(const Choices& stChoices);
bool ParseChoices(const std::string& strText, Choices& stChoices);

/// Folder of a user's settings of this program: $ORVIN_OSD_CONFIG, else "orvin-osd" in the folder that the
/// system keeps for such. Empty if it tells none.
std::filesystem::path ConfigFolder();

/// No file is no choice. Fails with the file's name where it cannot be read or understood.
Result ReadChoices(Choices& stChoices);
/// Replaces the file whole or not at all.
Result WriteChoices(const Choices& stChoices);
/// Remembers a profile of all programs, or of those of a file name; an empty profile forgets it.
Result RememberForAll(const std::string& strProfile);
Result RememberFor(const std::string& strProgram, const std::string& strProfile);
/// Remembers a setting; an empty value forgets it.
Result RememberSetting(const std::string& strName, const std::string& strValue);

/// Sets the remembered profile of all programs, where none is set since the segment came to be, and gives
/// each running program that has a remembered profile of its own, and no other, that one. A file that cannot
/// be used is told on standard error and changes nothing.
void ApplyChoices(const ControlLibrary& stLibrary);
/// The remembered profile of a program that is about to start under this id, if it has one.
void ApplyChoiceOf(const ControlLibrary& stLibrary, const std::string& strProgram, u32 uProcessId);
/// The profile that a program of this file name will show: its remembered one, that of all, or "Default".
std::string ProfileFor(const ControlLibrary& stLibrary, const std::string& strProgram);

} // namespace companion
