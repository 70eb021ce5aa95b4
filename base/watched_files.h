#pragma once
// The files that the last try of a build opened or missed, with their stamps from before: a change in any of
// them makes another try worth its while.
#include "platform/types.h"

/// Takes a file's stamp; called ahead of opening it. Beyond a number that no build reaches, files are left
/// out.
void g_fnWatchFile(const char* szPath) noexcept;
void g_fnWatchFile(const char16_t* wzPath) noexcept;
/// True where a file was changed, made or taken away since its stamp was taken.
bool g_fnHaveWatchedFilesChanged() noexcept;
void g_fnForgetWatchedFiles() noexcept;
