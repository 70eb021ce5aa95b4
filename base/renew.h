#pragma once
// A record as it was made, in place: assigning a new one would put it on the stack first, and records of
// settings are larger than the stack of some threads allows.
#include <memory>

template <class T> void g_fnRenew(T& st) {
    std::destroy_at(&st);
    std::construct_at(&st);
}
