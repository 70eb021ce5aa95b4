#pragma once
// Records GL calls by name and arguments, in order. The functions of GL 1.1 are defined in the test program
// itself and forward to the driver; those above are GLEW's pointers, which Install() swaps for recording
// ones.
#include "platform/gl_api.h"
#include "platform/types.h"

#include <cstdio>
#include <string>
#include <type_traits>
#include <vector>

namespace gl_recorder {

/// Swaps GLEW's pointers. To be called again after each glewInit, which sets them anew.
void Install();
/// From here on calls are kept; the list starts empty.
void Start();
/// Stops keeping calls and returns those since Start().
std::vector<std::string> Stop();
/// Calls since the program began, recorded or not.
u64 TotalCalls();

/// A switch of glEnable that this machine's driver lacks, for as long as this lives: asked for and set here,
/// the driver never sees it.
class CPretendedSwitch {
  public:
    explicit CPretendedSwitch(u32 eCap);
    ~CPretendedSwitch();
    CPretendedSwitch(const CPretendedSwitch&) = delete;
    CPretendedSwitch& operator=(const CPretendedSwitch&) = delete;
    /// From here on the first of the driver's extensions bears this name.
    void Offer(const char* szExtension) const;
};

/// One argument as text: whole numbers in decimal, floats in the shortest form, pointers as "null" or "ptr".
template <class T> std::string Text(T value) {
    if constexpr (std::is_pointer_v<T>)
        return value ? "ptr" : "null";
    else if constexpr (std::is_null_pointer_v<T>)
        return "null";
    else if constexpr (std::is_floating_point_v<T>) {
        char szText[32];
        std::snprintf(szText, sizeof szText, "%g", static_cast<f64>(value));
        return szText;
    } else
        return std::to_string(static_cast<i64>(value));
}

/// The text that a call leaves: name(argument, argument).
template <class... A> std::string Call(const char* szName, A... args) {
    std::string strCall = std::string(szName) + "(";
    bool bFirst = true;
    ((strCall += (bFirst ? "" : ", ") + Text(args), bFirst = false), ...);
    return strCall + ")";
}

void Count();
bool IsKept();
void Keep(std::string strCall);

template <class... A> void Record(const char* szName, A... args) {
    Count();
    if (IsKept()) Keep(Call(szName, args...));
}

} // namespace gl_recorder
