#pragma once
// Where fontconfig and FreeType write what they have to say: nowhere, since the terminal is the host's.
namespace platform {

/// To be called before the first call of either library. False without memory: then neither may be called.
/// One thread at a time.
bool OpenFontOutput() noexcept;

} // namespace platform
