#pragma once
// The end of all that the overlay holds in a context.

/// Tears everything down; nothing while g_bInitGL is false. GL objects are deleted only where the context
/// that made them is current, and forgotten elsewhere.
void g_fnTavo_GL_Release() noexcept;
/// Lets the context go; what of the guard belongs to it goes too.
void g_fnLeaveOwnContext() noexcept;
