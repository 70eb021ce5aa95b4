#pragma once
// The commands about profiles, and the steps towards running programs that other commands share with them.
#include "companion/control_library.h"
#include "companion/options.h"
#include "companion/segment_view.h"

namespace companion {

/// Whether a process of that id runs.
bool IsAlive(u32 uProcessId);

/// Frees the records of programs that were killed, and what else they left behind.
void ForgetDead(const ControlLibrary& stLibrary);
/// Living processes that hold a record, companions left out.
std::vector<Instance> Programs(const ControlLibrary& stLibrary);
/// kNotFound without one.
Result NeedPrograms(const ControlLibrary& stLibrary);
/// kNotFound if no other process has the library mapped, a program or a companion such as 'feed': the segment
/// lives as long as one has, so a change without one is lost at once.
Result NeedHolder(const ControlLibrary& stLibrary);

/// The filter of the next command.
void WriteFilter(const ControlLibrary& stLibrary, u32 uPid, u32 uTid, const std::string& strProfile);
/// Has all programs build their overlay anew from its files, or one of them.
void ReloadAll(const ControlLibrary& stLibrary);
Result ReloadProcess(const ControlLibrary& stLibrary, u32 uProcessId);

/// kNotFound if a name that is to be set has no profile's folder on this machine. An empty name, which stands
/// for the default profile, passes, and any name does with bForce.
Result NeedProfileFolder(const std::string& strName, bool bForce);

/// Makes a profile that of all programs and has them reload; an empty name stands for the default one.
/// Sets the profile of all programs; those that run show it from their next build on.
void SetProfileOfAll(const ControlLibrary& stLibrary, const std::string& strName);
Result UseProfile(const ControlLibrary& stLibrary, const std::string& strName);

using ProfileTable = stProcessProfile[g_uProcessProfileCount];
/// Gives a process a profile of its own, or, without a name, the one of all programs again. Records of
/// processes that fnIsAlive denies make room. False if the table is full.
bool SetProcessProfile(ProfileTable& aTable, u32 uProcessId, const std::string* pstrName,
                       bool (*fnIsAlive)(u32 uProcessId));
/// Record that decides for a process; null if it shows the profile of all programs.
const stProcessProfile* FindProcessProfile(const ProfileTable& aTable, u32 uProcessId, u32 uThreadId);

/// 'profile ...' and 'fontcache ...'. listWords: the command line, for what the tool beside this program
/// does; iExitCode: its exit code.
Result PerformProfile(const Options& stOptions, const std::vector<std::string>& listWords, int& iExitCode);

} // namespace companion
