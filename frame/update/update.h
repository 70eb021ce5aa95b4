#pragma once
// Turns timers into flags and flags into what is shown. Render thread only.
#include "base/slots.h"
#include "base/timer.h"
#include "frame/update/statistics.h"
#include "frame/update/update_records.h"
#include "platform/types.h"

class CControl;
class CTextBox_Base;

/// One update, ahead of drawing. Reads the counter once.
void g_fnUpdate_Tavo();
/// Its counting alone, for a frame into which nothing is drawn.
void g_fnCountFrame();

/// List builders by layout style; each starts from empty lists, resolves the boxes that the steps of an
/// update write directly, and puts its FPS updater in force.
void g_fnBuildUpdateClassic();
void g_fnBuildUpdateRV5();
void g_fnBuildUpdateCustom();
/// The one of the current style; Classic's for any value that is no style.
void g_fnBuildUpdate();
/// Head of every build: empty lists, no boxes resolved, the names of the process's own figures registered,
/// the local clock read (its first reading may read files, which no frame should).
void g_fnBeginUpdateBuild();
/// Raises all flags and builds the lists of the current style anew; any other style than 0 Classic, 1 RV5 and
/// 2 Custom does nothing.
void g_fnResetUpdate();

/// FPS updater of the layout style, set by its list builder; null: none.
extern void (*g_fnUpdateFPS)();
void g_fnUpdateFPSClassic();
void g_fnUpdateFPSRV5();
void g_fnUpdateFPSCustom();
