#pragma once
// The configuration load: settings and the profile's documents become the controls of the current manager.
#include "platform/types.h"

/// Reads everything anew and builds the layout of the profile's style into the current manager, which must be
/// initialised. False if a document can't be read or a step of the style's creation fails; what was made by
/// then stays for the caller to release. Nothing is thrown.
bool g_fnLoadConfiguration();

/// Leaves the glyphs of the layout's fonts to the next load, ahead of their end.
void g_fnKeepFontGlyphs() noexcept;

/// Forgets what the former configuration set: items, ids, documents, blur diameters, the wish for a backdrop.
void g_fnClearConfiguration();

/// Size of a preview of the profile, pixels, as the last load left it.
struct stPreviewSize {
    u32 uWidth = 0, uHeight = 0;
    bool bFixedAspect = false;
};
extern stPreviewSize g_stPreview;

/// Takes note that a load that began at iStart (performance-counter ticks) came to nothing.
void g_fnNoteFailedLoad(i64 iStart) noexcept;
/// Whether the last load or build came to nothing.
bool g_fnHasLoadFailed() noexcept;
/// The next build is the first again: it need not wait.
void g_fnForgetFailedLoad() noexcept;
/// False while another try is not due: the load failed, the profile of this process has the same name since,
/// and a second, or twenty times what the try took (10 seconds at most), has not passed. Once a second it
/// looks whether a file that the try opened or missed has changed since: then it is due at once.
bool g_fnIsLoadDue() noexcept;
/// Whether the profile that the next load takes has font cache files of its own. A look at names only.
bool g_fnHasFontFiles() noexcept;

/// g_fnClearConfiguration, and all settings, switches and tables as before the first load. For tests and
/// simulated processes.
void g_fnResetConfiguration();
