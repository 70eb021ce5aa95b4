#pragma once
// Our place among what exit() runs. Handlers run in the opposite order of their registration, and destructors
// of libraries last; all the while other threads may swap.
namespace platform::host {

/// From now on the library's end comes ahead of all handlers registered so far, and of every destructor of a
/// library. Counts twice: at the library's load, and when the first context stands and its driver with it.
void EndAheadOfOthers() noexcept;

/// What comes then. It is called once for each EndAheadOfOthers() that counted.
void SetEnd(void (*fnEnd)() noexcept) noexcept;

} // namespace platform::host
