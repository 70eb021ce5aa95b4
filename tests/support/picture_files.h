#pragma once
// Picture files of a few pixels, for the tests of what is made of them.
#include <cstdint>
#include <string>

namespace picture_files {

inline std::string Low(std::uint32_t u, int iBytes = 4) {
    std::string str;
    for (int i = 0; i < iBytes; ++i) str += static_cast<char>(u >> (8 * i));
    return str;
}
inline std::string High(std::uint32_t u) {
    std::string str;
    for (int i = 3; i >= 0; --i) str += static_cast<char>(u >> (8 * i));
    return str;
}

/// A picture of 24 bits a pixel; fnColor(x, y) gives 0xRRGGBB, y from the top.
template <class Color> std::string Bmp(std::uint32_t uWidth, std::uint32_t uHeight, Color fnColor) {
    std::string strRows;
    for (std::uint32_t y = uHeight; y-- > 0;) {
        for (std::uint32_t x = 0; x < uWidth; ++x) strRows += Low(fnColor(x, y), 3);
        strRows.append(uWidth % 4, '\0');
    }
    const auto uBytes = static_cast<std::uint32_t>(strRows.size());
    return "BM" + Low(54 + uBytes) + Low(0) + Low(54) + Low(40) + Low(uWidth) + Low(uHeight) + Low(1, 2) +
           Low(24, 2) + Low(0) + Low(uBytes) + Low(0) + Low(0) + Low(0) + Low(0) + strRows;
}

inline std::uint32_t Crc(const std::string& str) {
    std::uint32_t u = 0xFFFFFFFF;
    for (const char c : str) {
        u ^= static_cast<std::uint8_t>(c);
        for (int i = 0; i < 8; ++i) u = u & 1 ? u >> 1 ^ 0xEDB88320 : u >> 1;
    }
    return ~u;
}
inline std::string Chunk(const std::string& strType, const std::string& strData) {
    return High(static_cast<std::uint32_t>(strData.size())) + strType + strData +
           High(Crc(strType + strData));
}
/// A stream that holds its bytes as they are.
inline std::string Stored(const std::string& strBytes) {
    std::uint32_t a = 1, b = 0;
    for (const char c : strBytes) {
        a = (a + static_cast<std::uint8_t>(c)) % 65521;
        b = (b + a) % 65521;
    }
    std::string str = "\x78\x01";
    for (std::size_t u = 0; u == 0 || u < strBytes.size(); u += 65535) {
        const std::string strPart = strBytes.substr(u, 65535);
        const auto uPart = static_cast<std::uint32_t>(strPart.size());
        str += Low(u + 65535 >= strBytes.size(), 1) + Low(uPart, 2) + Low(~uPart, 2) + strPart;
    }
    return str + High(b << 16 | a);
}
/// A picture with alpha; fnColor(x, y) gives 0xAARRGGBB.
template <class Color> std::string Png(std::uint32_t uWidth, std::uint32_t uHeight, Color fnColor) {
    std::string strRows;
    for (std::uint32_t y = 0; y < uHeight; ++y) {
        strRows += '\0';
        for (std::uint32_t x = 0; x < uWidth; ++x) {
            const std::uint32_t u = fnColor(x, y);
            strRows += High(u << 8 | u >> 24);
        }
    }
    return "\x89PNG\r\n\x1A\n" +
           Chunk("IHDR", High(uWidth) + High(uHeight) + std::string("\x08\x06\0\0\0", 5)) +
           Chunk("IDAT", Stored(strRows)) + Chunk("IEND", "");
}

/// A raw picture of one colour, as it lies beside a picture.
inline std::string Raw(std::uint32_t uWidth, std::uint32_t uHeight, std::uint32_t uBytes) {
    std::string str = Low(uWidth) + Low(uHeight) + Low(11) + Low(1);
    for (std::uint32_t u = 0; u < uWidth * uHeight; ++u) str += Low(uBytes);
    return str;
}

} // namespace picture_files
