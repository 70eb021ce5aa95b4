#pragma once
// Allocation on a fixed boundary for objects that carry matrices and vectors.
#include <cstddef>
#include <new>

/// Gives a class allocation functions of its own: storage on a boundary of N bytes, null instead of an
/// exception when there is none, so that `new` of such a class yields null. T only tells policies of
/// unrelated trees apart.
template <typename T, std::size_t N> class CAlignedAllocationPolicy {
  public:
    static void* operator new(std::size_t uBytes) noexcept { return Allocate(uBytes); }
    static void* operator new(std::size_t uBytes, const std::nothrow_t&) noexcept { return Allocate(uBytes); }
    static void* operator new(std::size_t, void* pPlace) noexcept { return pPlace; }
    static void operator delete(void* pObject) noexcept { Free(pObject); }
    static void operator delete(void* pObject, const std::nothrow_t&) noexcept { Free(pObject); }
    static void operator delete(void*, void*) noexcept {}

  private:
    static_assert(N != 0 && (N & (N - 1)) == 0, "the boundary is a power of two");
    static void* Allocate(std::size_t uBytes) noexcept {
        return ::operator new (uBytes, std::align_val_t{N}, std::nothrow);
    }
    static void Free(void* pObject) noexcept { ::operator delete (pObject, std::align_val_t{N}); }
};
