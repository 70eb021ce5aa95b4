#pragma once
namespace platform::host {

/// Forgets the cached process and thread id; called in the child after a fork.
void ForgetIdentity() noexcept;

} // namespace platform::host
