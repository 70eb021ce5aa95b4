#pragma once
// The named mapping by which the overlay's flavours tell each other which of them owns this process.

extern bool g_bCheckApiMapping;     ///< the API mapping step is still to be done
extern bool g_bOtherApiOwnsProcess; ///< a Direct3D flavour of the overlay owns this process
extern void* g_hApiMapping;
extern char* g_pApiView;

/// Opens or makes the mapping and claims the process, unless another flavour has. Done once.
void g_fnClaimApi() noexcept;
/// Unmaps and closes the API mapping (at unhook).
void g_fnCloseApiMapping() noexcept;
/// Gives the claim back and leaves the view mapped, since a thread may be writing through it (at the end of
/// the process).
void g_fnDropApiClaim() noexcept;
