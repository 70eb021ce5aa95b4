#pragma once
// The two record tables of the shared segment and the choice of a profile. No operation here fails, locks or
// waits; a record that is not found is passed over silently.
#include "platform/segment.h"

/// Bits of the mask arguments.
constexpr u32 g_uRecordChanged = 1; ///< the changed flag
constexpr u32 g_uRecordCommand = 2; ///< the command block

/// Takes the first free slot of each table, as far as there is one; if there is none, those of processes that
/// do not exist any more are freed first. What a slot held before stays in it.
void RegisterProcess(u32 uProcessId, u32 uThreadId) noexcept;
/// Zeroes the two ids of the first matching record of each table; the rest of the record stays.
void UnregisterProcess(u32 uProcessId, u32 uThreadId) noexcept;
/// Reads what uMask asks for from the first matching record of CommandTable. False, with the outputs
/// untouched, for thread id 0 or without a match. Outputs that the mask leaves out may be null.
bool ReadCommandRecord(u32 uProcessId, u32 uThreadId, u32 uMask, u8* pbChanged,
                       stSharedCommand* pCommand) noexcept;
/// Writes bChanged (mask bit 0) and merges the block (bit 1) into the first matching record of CommandTable,
/// or, with thread id 0, into every live one.
void WriteCommandRecord(u32 uProcessId, u32 uThreadId, u8 bChanged, const stSharedCommand& stCommand,
                        u32 uMask) noexcept;
/// Reports uApiCode, and fFrameTime (milliseconds) while frame-time queries are on, in the first matching
/// record of StatusTable.
void WriteStatusRecord(u32 uProcessId, u32 uThreadId, const stSharedCommand& stCommand) noexcept;

/// Merges a block into a stored one: flags that differ are taken over with their values.
void g_fnMergeCommand(stSharedCommand& stStored, const stSharedCommand& stIncoming) noexcept;
/// Clears both tables. bSegmentReady is left alone.
void g_fnClearRecordTables() noexcept;
/// Clears the tables and sets bSegmentReady, if no process did so before.
void g_fnClearOnFirstAttach() noexcept;
/// Frees every record of a process, for systems where a program may be replaced without a detach.
void g_fnDropRecordsOfProcess(u32 uProcessId) noexcept;
/// The copy of a process that a fork makes takes its record at its first swap: most copies are replaced by
/// another program at once, which would leave the record behind.
void g_fnOweRecord() noexcept;
void g_fnTakeOwedRecord(u32 uProcessId, u32 uThreadId) noexcept;

/// Current profile; "Default" before the first configuration load.
extern char16_t g_wzProfileName[g_uProfileNameUnits];
/// "Profiles\NAME", relative to the data folder; empty while there is none or the name is not one plain
/// folder name, which counts as a profile that does not exist.
extern char16_t g_wzProfileFolder[g_uProfileNameUnits + 16];

/// Chooses the profile of this process from the shared segment; run at every configuration load. No name at
/// all gives "Default".
void g_fnSelectProfileName() noexcept;
/// Makes a name the current profile; null changes nothing. At most g_uProfileNameUnits - 1 units are read.
void g_fnSetProfileName(const char16_t* wzName) noexcept;
/// True if a name is one plain folder name: not empty, no separator, drive or parent step, no control
/// character.
bool g_fnIsPlainFolderName(const char16_t* wzName, u32 uCapacity) noexcept;
