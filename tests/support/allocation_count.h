#pragma once
// Counts every allocation of a test program. It defines the program's allocation operators, so one source
// file of a program includes it.
#include "platform/types.h"

#include <atomic>
#include <cstdlib>
#include <new>

static std::atomic<u64> g_uAllocations{0};

// A sanitizer's own operators must stay in place: they tell one kind of memory from another.
#ifndef __SANITIZE_ADDRESS__
static constexpr bool c_bCounting = true;

static void* Take(std::size_t uBytes) {
    ++g_uAllocations;
    if (void* p = std::malloc(uBytes ? uBytes : 1)) return p;
    throw std::bad_alloc();
}

void* operator new(std::size_t uBytes) { return Take(uBytes); }
void* operator new[](std::size_t uBytes) { return Take(uBytes); }
void operator delete(void* p) noexcept { std::free(p); }
void operator delete[](void* p) noexcept { std::free(p); }
void operator delete(void* p, std::size_t) noexcept { std::free(p); }
void operator delete[](void* p, std::size_t) noexcept { std::free(p); }
#else
static constexpr bool c_bCounting = false;
#endif
