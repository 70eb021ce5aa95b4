#pragma once
// Allocation policy of drawing objects and controls.
#include <cstddef>
#include <cstdlib>
#include <new>

/// Gives a class allocation on uAlignment-byte boundaries. Has no data. Both forms of new answer null when
/// memory runs out, so creators test the result. The first parameter only tells policies apart.
template <class Tag, std::size_t uAlignment> class CAlignedAllocationPolicy {
  public:
    static void* operator new(std::size_t uBytes) noexcept { return Allocate(uBytes); }
    static void* operator new(std::size_t uBytes, const std::nothrow_t&) noexcept { return Allocate(uBytes); }
    static void* operator new(std::size_t, void* pPlace) noexcept { return pPlace; }
    static void operator delete(void* pObject) noexcept { Free(pObject); }
    static void operator delete(void* pObject, const std::nothrow_t&) noexcept { Free(pObject); }
    static void operator delete(void*, void*) noexcept {}

  private:
    // The way back to the plain block stands right before the object: it works alike with every C library.
    static void* Allocate(std::size_t uBytes) noexcept {
        void* pBlock = std::malloc(uBytes + uAlignment + sizeof(void*));
        if (!pBlock) return nullptr;
        const std::size_t uFirst = reinterpret_cast<std::size_t>(pBlock) + sizeof(void*);
        void* pObject = reinterpret_cast<void*>((uFirst + uAlignment - 1) / uAlignment * uAlignment);
        static_cast<void**>(pObject)[-1] = pBlock;
        return pObject;
    }
    static void Free(void* pObject) noexcept {
        if (pObject) std::free(static_cast<void**>(pObject)[-1]);
    }
};
