#pragma once
// The named block by which a tool lets every overlay build itself anew or colours panels of theirs, with no
// companion between. Render thread only.
#include "platform/types.h"

constexpr char16_t g_wzControlBlock[] = u"TavoCtrl";
/// Names that are taken, though nothing here opens them.
constexpr char16_t g_wzPreviewEvent[] = u"Global\\Event_FromVelmar_TimeToUpdate_OSD_Preview";
constexpr char16_t g_wzPreviewBlock[] = u"Global\\SharedMem_FromVelmar_OSD_Preview";
constexpr char16_t g_wzToolboxBlock[] = u"Global\\TavoToolboxSharedMem";
constexpr u32 g_uToolboxBlockBytes = 4096;

enum eControlOp : u32 { CONTROL_NOTHING = 0, CONTROL_REBUILD = 1, CONTROL_RECOLOUR = 2 };

constexpr u32 g_uControlColors = 3;

/// What is read of the block; the rest of it is unused.
struct stControlBlock {
    u32 uOp;
    u32 uGeneration;                   ///< of rebuilds: another value asks for one
    u32 uIndex;                        ///< of recolouring: 0 to 2
    u8 aau8Color[g_uControlColors][4]; ///< by index: red, green, blue, alpha
};
static_assert(sizeof(stControlBlock) == 24);

/// Bytes of the block.
extern u32 g_uCtrlBlockSize;

/// Opens the block unless it is open. A failure turns the poll off.
void g_fnOpenControlBlock() noexcept;
/// Acts on what the block says now. A rebuild becomes a command of this process for its next swap.
void g_fnPollControlBlock() noexcept;
void g_fnCloseControlBlock() noexcept;
/// Back to the state after loading: also forgets which rebuild was the last.
void g_fnResetControlBlock() noexcept;
