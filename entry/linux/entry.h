#pragma once
namespace platform::host {

void OnLibraryLoad() noexcept;
void OnLibraryUnload() noexcept;

} // namespace platform::host
