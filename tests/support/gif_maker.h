#pragma once
// GIF files record by record, for the tests of what is made of them. Pictures are written as letters: 'A' is
// the first colour of a table, and so on.
#include <cstdint>
#include <string>
#include <vector>

/// Colour of a letter in the tables that CGifMaker writes: red 10, 20, 30..., green one more, blue two more.
inline std::string GifTable() {
    std::string strOut;
    for (int i = 0; i < 4; ++i)
        for (int c = 0; c < 3; ++c) strOut += static_cast<char>(10 * (i + 1) + c);
    return strOut;
}

class CGifMaker {
  public:
    /// iBackground: index in the table of four colours; without a table there is none.
    CGifMaker(int iWidth, int iHeight, int iBackground = 0, bool bTable = true, int iAspect = 0)
        : m_str("GIF89a") {
        Word(iWidth);
        Word(iHeight);
        Bytes({bTable ? 0x81 : 0, iBackground, iAspect});
        if (bTable) m_str += GifTable();
    }
    /// iDelay in hundredths. iClear: index that is transparent, or -1.
    CGifMaker& Control(int iDelay, int iDisposal, int iClear = -1) {
        Bytes({0x21, 0xF9, 4, iDisposal << 2 | (iClear >= 0), iDelay & 255, iDelay >> 8,
               iClear >= 0 ? iClear : 0, 0});
        return *this;
    }
    CGifMaker& Frame(int iLeft, int iTop, int iWidth, int iHeight, const std::string& strLetters) {
        Bytes({0x2C});
        for (int i : {iLeft, iTop, iWidth, iHeight}) Word(i);
        Bytes({0, 8});
        Packed(strLetters);
        return *this;
    }
    /// Of the right shape, but its pixels end at once.
    CGifMaker& BrokenFrame(int iWidth, int iHeight) {
        Bytes({0x2C, 0, 0, 0, 0, iWidth, 0, iHeight, 0, 0, 8, 3, 0x00, 0x03, 0x02, 0});
        return *this;
    }
    CGifMaker& Application(const std::string& strName, const std::string& strData) {
        Bytes({0x21, 0xFF, static_cast<int>(strName.size())});
        m_str += strName;
        if (!strData.empty()) Bytes({static_cast<int>(strData.size())});
        m_str += strData;
        Bytes({0});
        return *this;
    }
    std::string File() const { return m_str + ';'; }

  private:
    void Bytes(std::initializer_list<int> list) {
        for (int i : list) m_str += static_cast<char>(i);
    }
    void Word(int i) { Bytes({i & 255, i >> 8}); }
    /// Codes of nine bits, with a clear code often enough that they stay so.
    void Packed(const std::string& strLetters) {
        std::vector<int> vecCodes;
        for (std::size_t u = 0; u < strLetters.size(); ++u) {
            if (u % 250 == 0) vecCodes.push_back(256);
            vecCodes.push_back(strLetters[u] - 'A');
        }
        vecCodes.push_back(257);
        std::string strPacked;
        std::uint32_t uBits = 0;
        int iCount = 0;
        for (int iCode : vecCodes)
            for (uBits |= static_cast<std::uint32_t>(iCode) << iCount, iCount += 9; iCount >= 8;
                 uBits >>= 8, iCount -= 8)
                strPacked += static_cast<char>(uBits);
        if (iCount) strPacked += static_cast<char>(uBits);
        for (std::size_t u = 0; u < strPacked.size(); u += 255) {
            const std::string strBlock = strPacked.substr(u, 255);
            Bytes({static_cast<int>(strBlock.size())});
            m_str += strBlock;
        }
        Bytes({0});
    }

    std::string m_str;
};
