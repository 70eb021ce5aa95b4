#pragma once
// Cache files made of a small font: 2 by 2 cells of 8 pixels, an atlas of 16 by 16 with 5 levels.
#include "font/font_file.h"
#include "test_font.h"

#include <cstdio>
#include <cstring>
#include <string>

/// 184 + 6 * 32 + (256 + 64 + 16 + 4 + 1).
constexpr u32 g_uSmallFileBytes = 184 + 192 + 341;

inline u32 WordAt(const std::string& bytes, u32 uOffset) {
    u32 u = 0;
    std::memcpy(&u, bytes.data() + uOffset, 4);
    return u;
}

inline void SetWord(std::string& bytes, u32 uOffset, u32 u) { std::memcpy(bytes.data() + uOffset, &u, 4); }

inline stMemoryStream StreamOf(const std::string& bytes) {
    return {reinterpret_cast<const u8*>(bytes.data()), static_cast<u32>(bytes.size()), 0};
}

inline i32 Check(const std::string& bytes, const char16_t* wzRequired = nullptr) {
    CTestFont font;
    stMemoryStream stream = StreamOf(bytes);
    return font.m_fnCheckMemoryFile(&stream, wzRequired);
}

inline bool Load(CFontUniCode& font, const std::string& bytes) {
    stMemoryStream stream = StreamOf(bytes);
    return font.m_fnLoadFromMemory(&stream);
}

/// What the font writes; empty if it refuses.
inline std::string Saved(CFontUniCode& font) {
    std::string bytes;
    std::FILE* const pFile = std::tmpfile();
    if (!pFile) return bytes;
    if (font.m_fnSaveToStream(pFile)) {
        bytes.resize(static_cast<std::size_t>(std::ftell(pFile)));
        std::rewind(pFile);
        if (std::fread(bytes.data(), 1, bytes.size(), pFile) != bytes.size()) bytes.clear();
    }
    std::fclose(pFile);
    return bytes;
}

/// The small font with "AB", each painted as a bar.
inline std::unique_ptr<CTestFont> SmallFont(const char16_t* wzFace = u"Face") {
    auto pFont = ReadyFont(2, 8, wzFace);
    if (!pFont) return nullptr;
    CTestFont* const p = pFont.get();
    p->m_fnPaint = [p] { p->m_fnInk(0, 1, 2, 4); };
    g_fnFontAddText(p, u"AB");
    return pFont;
}

inline std::string SmallFile(const char16_t* wzFace = u"Face") {
    const auto pFont = SmallFont(wzFace);
    return pFont ? Saved(*pFont) : "";
}
