#pragma once
// The picture behind the overlay, which frosted panels look through.
#include "platform/types.h"

extern bool g_bCaptureBackdrop; ///< a control needs a copy of the frame behind the overlay
extern u32 g_uCopyTexture;      ///< GL name of the copy's texture, made on demand; 0: none

/// Copies the frame as it stands now, if a control needs it.
void g_fnCopyBackdrop();
/// Deletes the texture where that is allowed, else forgets it.
void g_fnReleaseBackdrop() noexcept;
