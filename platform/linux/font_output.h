#pragma once
// Where fontconfig, FreeType and the libraries for pictures write what they have to say: nowhere, since the
// terminal is the host's.
namespace platform {

/// To be called before the first call of any of them. False without memory: then none may be called.
/// One thread at a time.
bool OpenFontOutput() noexcept;

} // namespace platform
