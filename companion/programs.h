#pragma once
// Running programs that carry the overlay: who they are, and the steps towards them that commands share.
#include "companion/control_library.h"
#include "companion/segment_view.h"
#include <string>
#include <vector>

namespace companion {

/// True for this program's own records and those of its like.
bool IsCompanion(u32 uProcessId);
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

/// Sets the profile of all programs; those that run show it from their next build on.
void SetProfileOfAll(const ControlLibrary& stLibrary, const std::string& strName);

using ProfileTable = stProcessProfile[g_uProcessProfileCount];
/// Gives a process a profile of its own, or, without a name, the one of all programs again. Records of
/// processes that fnIsAlive denies make room. False if the table is full.
bool SetProcessProfile(ProfileTable& aTable, u32 uProcessId, const std::string* pstrName,
                       bool (*fnIsAlive)(u32 uProcessId));
/// Record that decides for a process; null if it shows the profile of all programs.
const stProcessProfile* FindProcessProfile(const ProfileTable& aTable, u32 uProcessId, u32 uThreadId);

} // namespace companion
