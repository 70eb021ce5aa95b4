#include "platform/win32/detour_patch.h"
#include "platform/win32/windows_api.h"
#include <cstring>

namespace platform {

namespace {

u64 OffsetInWord(const u8* pAt) { return reinterpret_cast<u64>(pAt) & 7; }

bool ExchangeInWord(u8* pAt, const u8* pExpected, const u8* pNew) {
    const u64 uOffset = OffsetInWord(pAt);
    auto* pWord = reinterpret_cast<volatile LONG64*>(pAt - uOffset);
    for (;;) {
        const LONG64 iOld = *pWord;
        u8 abWord[8];
        std::memcpy(abWord, &iOld, sizeof(abWord));
        if (std::memcmp(abWord + uOffset, pExpected, g_uJumpBytes) != 0) return false;
        std::memcpy(abWord + uOffset, pNew, g_uJumpBytes);
        LONG64 iNew = 0;
        std::memcpy(&iNew, abWord, sizeof(iNew));
        if (InterlockedCompareExchange64(pWord, iNew, iOld) == iOld) return true;
    }
}

bool ExchangePlainly(u8* pAt, const u8* pExpected, const u8* pNew) {
    if (std::memcmp(pAt, pExpected, g_uJumpBytes) != 0) return false;
    std::memcpy(pAt, pNew, g_uJumpBytes);
    return true;
}

} // namespace

bool IsOneStore(const u8* pAt) noexcept { return OffsetInWord(pAt) + g_uJumpBytes <= 8; }

PatchResult ExchangeBytes(u8* pAt, const u8* pExpected, const u8* pNew) noexcept {
    DWORD uOld = 0;
    // Executable throughout: the rest of the page goes on being run.
    if (!VirtualProtect(pAt, g_uJumpBytes, PAGE_EXECUTE_READWRITE, &uOld)) return PatchResult::Protected;
    const bool bDone =
        IsOneStore(pAt) ? ExchangeInWord(pAt, pExpected, pNew) : ExchangePlainly(pAt, pExpected, pNew);
    VirtualProtect(pAt, g_uJumpBytes, uOld, &uOld);
    FlushInstructionCache(GetCurrentProcess(), pAt, g_uJumpBytes);
    return bDone ? PatchResult::Done : PatchResult::OtherBytes;
}

} // namespace platform
