#include "shared/offset_tree.h"

#include "platform/segment.h"
#include <algorithm>
#include <array>

namespace {

constexpr u32 c_uBranchEntryBytes = 5;
/// Characters that a listing adds up to at most: a true tree may share long beginnings, a hostile one all.
constexpr std::size_t c_uListedCharactersMax = std::size_t{16} << 20;

void PutU32(std::vector<u8>& vecBytes, std::size_t uAt, u32 uValue) {
    for (u32 u = 0; u < 4; ++u) vecBytes[uAt + u] = static_cast<u8>(uValue >> (8 * u));
}

/// Serialises the tree of sorted keys without making it in memory first: the keys from First to Last share
/// their first Depth characters, and so stand for the node below them.
class CTreeWriter {
  public:
    CTreeWriter(const std::map<std::string, u32>& mapOffsets, u32 uMaxBytes) : m_uMaxBytes(uMaxBytes) {
        for (const auto& [szName, uValue] : mapOffsets) AddKey(szName.c_str(), uValue);
        m_vecLeafAt.resize(m_vecKeys.size());
    }

    std::vector<u8> Write() {
        if (m_vecKeys.empty() || !WriteNodes() || !WriteValues()) return std::vector<u8>(4, 0);
        return std::move(m_vecBytes);
    }

  private:
    /// A subtree that is still to be written, and the place of the offset that is to lead to it.
    struct stPending {
        std::size_t m_uFirst, m_uEnd, m_uDepth, m_uOffsetAt;
    };

    /// Names come in ascending order, so those that are equal up to their first zero are neighbours.
    void AddKey(const char* szName, u32 uValue) {
        const std::string_view szKey(szName, std::char_traits<char>::length(szName) + 1);
        if (!m_vecKeys.empty() && m_vecKeys.back() == szKey)
            m_vecValues.back() = uValue;
        else {
            m_vecKeys.push_back(szKey);
            m_vecValues.push_back(uValue);
        }
    }

    /// Characters that the keys of a subtree share below its depth.
    std::size_t SharedRun(const stPending& st) const {
        const std::string_view szFirst = m_vecKeys[st.m_uFirst], szLast = m_vecKeys[st.m_uEnd - 1];
        if (st.m_uEnd - st.m_uFirst == 1) return szFirst.size() - st.m_uDepth;
        const std::size_t uLength = std::min(szFirst.size(), szLast.size());
        std::size_t u = st.m_uDepth;
        while (u < uLength && szFirst[u] == szLast[u]) ++u;
        return u - st.m_uDepth;
    }

    /// Nodes in pre-order. False if they outgrow the limit or a count.
    bool WriteNodes() {
        m_vecBytes.assign(4, 0);
        m_vecPending.push_back({0, m_vecKeys.size(), 0, 0});
        while (!m_vecPending.empty()) {
            stPending st = m_vecPending.back();
            m_vecPending.pop_back();
            if (st.m_uOffsetAt) PutU32(m_vecBytes, st.m_uOffsetAt, static_cast<u32>(m_vecBytes.size()));
            if (!WriteSubtree(st) || m_vecBytes.size() > m_uMaxBytes) return false;
        }
        return true;
    }

    bool WriteSubtree(stPending st) {
        const bool bToValue = st.m_uEnd - st.m_uFirst == 1;
        std::size_t uRun = SharedRun(st);
        while (uRun) {
            const std::size_t uTaken = WriteChain(st, uRun, bToValue);
            st.m_uDepth += uTaken;
            uRun -= uTaken;
            const std::size_t uOffsetAt = m_vecBytes.size() - 4;
            if (uRun || !bToValue) PutU32(m_vecBytes, uOffsetAt, static_cast<u32>(m_vecBytes.size()));
            st.m_uOffsetAt = uOffsetAt;
        }
        if (!bToValue) return WriteBranch(st);
        m_vecLeafAt[st.m_uFirst] = st.m_uOffsetAt;
        return true;
    }

    /// One chain at the head of a run: a chain to a value stores all its characters, any other all but the
    /// last. Returns how many characters of the run it stands for.
    std::size_t WriteChain(const stPending& st, std::size_t uRun, bool bToValue) {
        const std::size_t uStored = std::min<std::size_t>(g_uOffsetTreeChainMax, bToValue ? uRun : uRun - 1);
        m_vecBytes.push_back(0);
        m_vecBytes.push_back(static_cast<u8>(uStored));
        const char* pRun = m_vecKeys[st.m_uFirst].data() + st.m_uDepth;
        m_vecBytes.insert(m_vecBytes.end(), pRun, pRun + uStored);
        m_vecBytes.insert(m_vecBytes.end(), 4, 0);
        return std::min(uRun, uStored + 1);
    }

    /// A branch for the character at the subtree's depth; its subtrees wait in reverse, so that the smallest
    /// comes next.
    bool WriteBranch(const stPending& st) {
        const std::size_t uNodeAt = m_vecBytes.size(), uPendingBefore = m_vecPending.size();
        m_vecBytes.push_back(0);
        for (std::size_t uFirst = st.m_uFirst; uFirst < st.m_uEnd;) {
            const char cBranch = m_vecKeys[uFirst][st.m_uDepth];
            std::size_t uEnd = uFirst + 1;
            while (uEnd < st.m_uEnd && m_vecKeys[uEnd][st.m_uDepth] == cBranch) ++uEnd;
            if (++m_vecBytes[uNodeAt] == 0) return false;
            m_vecBytes.push_back(static_cast<u8>(cBranch));
            AddChild({uFirst, uEnd, st.m_uDepth + 1, m_vecBytes.size()});
            m_vecBytes.insert(m_vecBytes.end(), 4, 0);
            uFirst = uEnd;
        }
        std::reverse(m_vecPending.begin() + static_cast<std::ptrdiff_t>(uPendingBefore), m_vecPending.end());
        return true;
    }

    /// A name that ends with the branch's character has its value right there.
    void AddChild(const stPending& st) {
        if (m_vecKeys[st.m_uFirst].size() == st.m_uDepth)
            m_vecLeafAt[st.m_uFirst] = st.m_uOffsetAt;
        else
            m_vecPending.push_back(st);
    }

    /// Leaves are met in the order of the keys, and so stand their values.
    bool WriteValues() {
        const std::size_t uValuesStart = m_vecBytes.size();
        if (uValuesStart + 4 * m_vecKeys.size() > m_uMaxBytes) return false;
        m_vecBytes.resize(uValuesStart + 4 * m_vecKeys.size());
        PutU32(m_vecBytes, 0, static_cast<u32>(uValuesStart));
        for (std::size_t u = 0; u < m_vecKeys.size(); ++u) {
            PutU32(m_vecBytes, m_vecLeafAt[u], static_cast<u32>(uValuesStart + 4 * u));
            PutU32(m_vecBytes, uValuesStart + 4 * u, m_vecValues[u]);
        }
        return true;
    }

    u32 m_uMaxBytes;
    std::vector<std::string_view> m_vecKeys; ///< ascending, ending zeros included
    std::vector<u32> m_vecValues;
    std::vector<std::size_t> m_vecLeafAt; ///< place of the offset that leads to a key's value
    std::vector<stPending> m_vecPending;
    std::vector<u8> m_vecBytes;
};

/// Reads a bank that another process may be writing: each byte once, none outside.
class CBank {
  public:
    CBank(const u8* pBank, u32 uBytes) noexcept : m_pBank(pBank), m_uBytes(uBytes) {
        U32At(0, m_uValuesStart);
    }

    bool ByteAt(u64 uAt, u8& uByte) const noexcept {
        if (uAt >= m_uBytes) return false;
        uByte = g_fnReadOnce(m_pBank[uAt]);
        return true;
    }
    bool U32At(u64 uAt, u32& uValue) const noexcept {
        if (uAt + 4 > m_uBytes) return false;
        uValue = 0;
        for (u32 u = 0; u < 4; ++u) uValue |= static_cast<u32>(g_fnReadOnce(m_pBank[uAt + u])) << (8 * u);
        return true;
    }
    bool IsEmpty() const noexcept { return m_uValuesStart < g_uOffsetTreeHeaderBytes; }
    bool IsValue(u32 uAt) const noexcept { return uAt >= m_uValuesStart; }
    u32 Bytes() const noexcept { return m_uBytes; }
    u32 ValuesStart() const noexcept { return m_uValuesStart; }

  private:
    const u8* m_pBank;
    u32 m_uBytes;
    u32 m_uValuesStart = 0;
};

/// The way of one key through a bank. Each step consumes at least one character.
class CTreeWalk {
  public:
    CTreeWalk(const CBank& bank, std::string_view szName) noexcept : m_bank(bank), m_szName(szName) {}

    bool Find(u32& uValue) noexcept {
        if (m_bank.IsEmpty()) return false;
        do {
            if (m_uUsed > m_szName.size() || m_bank.IsValue(m_uAt) || !Step()) return false;
        } while (!m_bank.IsValue(m_uAt));
        return m_bank.U32At(m_uAt, uValue);
    }

  private:
    /// The zero that ends the name is its last character.
    u8 Character(std::size_t u) const noexcept {
        return u < m_szName.size() ? static_cast<u8>(m_szName[u]) : u8{0};
    }
    bool Step() noexcept {
        u8 uCount = 0;
        if (m_uAt < g_uOffsetTreeHeaderBytes || !m_bank.ByteAt(m_uAt, uCount)) return false;
        return uCount ? StepBranch(uCount) : StepChain();
    }
    bool StepBranch(u32 uCount) noexcept {
        const u8 uWanted = Character(m_uUsed);
        for (u32 u = 0; u < uCount; ++u) {
            const u64 uEntryAt = u64{m_uAt} + 1 + u * c_uBranchEntryBytes;
            u8 uCharacter = 0;
            if (!m_bank.ByteAt(uEntryAt, uCharacter)) return false;
            if (uCharacter != uWanted) continue;
            ++m_uUsed;
            return m_bank.U32At(uEntryAt + 1, m_uAt);
        }
        return false;
    }
    // KEEP(companions): the character behind a chain is taken unseen, so a name that differs from a stored
    // one only there finds the stored one's value. Companions in use write trees of that form.
    bool StepChain() noexcept {
        u8 uLength = 0, uCharacter = 0;
        if (!m_bank.ByteAt(u64{m_uAt} + 1, uLength)) return false;
        if (m_szName.size() + 1 - m_uUsed < uLength) return false;
        for (u32 u = 0; u < uLength; ++u)
            if (!m_bank.ByteAt(u64{m_uAt} + 2 + u, uCharacter) || uCharacter != Character(m_uUsed + u))
                return false;
        m_uUsed += uLength + std::size_t{1};
        return m_bank.U32At(u64{m_uAt} + 2 + uLength, m_uAt);
    }

    const CBank& m_bank;
    std::string_view m_szName;
    std::size_t m_uUsed = 0;
    u32 m_uAt = g_uOffsetTreeHeaderBytes;
};

/// Depth-first listing with its own stack. A true tree has no two offsets to one place, each of 4 bytes or
/// more, and no name longer than the bank: these are the bounds that end a hostile one.
class CTreeList {
  public:
    explicit CTreeList(const CBank& bank) : m_bank(bank), m_uStepsLeft(bank.Bytes() / 4) {}

    std::vector<stOffsetTreeEntry> List() {
        if (!m_bank.IsEmpty() && !m_bank.IsValue(g_uOffsetTreeHeaderBytes))
            m_vecStack.push_back({g_uOffsetTreeHeaderBytes, 0, 0});
        while (!m_vecStack.empty()) Advance();
        return std::move(m_vecEntries);
    }

  private:
    struct stLevel {
        u32 m_uAt;
        std::size_t m_uNameLength; ///< characters above this node
        u32 m_uNextEntry;
    };

    void Advance() {
        stLevel& level = m_vecStack.back();
        m_szName.resize(level.m_uNameLength);
        u8 uCount = 0;
        const u32 uEntry = level.m_uNextEntry++;
        if (!m_bank.ByteAt(level.m_uAt, uCount) || uEntry >= (uCount ? uCount : 1u))
            m_vecStack.pop_back();
        else if (uCount)
            Follow(u64{level.m_uAt} + 1 + u64{uEntry} * c_uBranchEntryBytes, 1, false);
        else
            FollowChain(level.m_uAt);
    }
    void FollowChain(u32 uAt) {
        u8 uLength = 0;
        if (m_bank.ByteAt(u64{uAt} + 1, uLength)) Follow(u64{uAt} + 2, uLength, true);
    }
    /// uLength characters and the offset behind them.
    void Follow(u64 uCharactersAt, u32 uLength, bool bChain) {
        u32 uTo = 0;
        if (!m_bank.U32At(uCharactersAt + uLength, uTo) || m_uStepsLeft == 0) return;
        --m_uStepsLeft;
        for (u32 u = 0; u < uLength; ++u) {
            u8 uCharacter = 0;
            m_bank.ByteAt(uCharactersAt + u, uCharacter);
            m_szName.push_back(static_cast<char>(uCharacter));
        }
        if (m_bank.IsValue(uTo)) return AddEntry(uTo);
        if (bChain) m_szName.push_back('?');
        if (uTo >= g_uOffsetTreeHeaderBytes && m_szName.size() < m_bank.Bytes())
            m_vecStack.push_back({uTo, m_szName.size(), 0});
    }
    void AddEntry(u32 uValueAt) {
        u32 uValue = 0;
        if (!m_bank.U32At(uValueAt, uValue)) return;
        const std::string szName = m_szName.substr(0, m_szName.find('\0'));
        m_uListed += szName.size();
        if (m_uListed > c_uListedCharactersMax)
            m_uStepsLeft = 0;
        else
            m_vecEntries.push_back({szName, uValue});
    }

    const CBank& m_bank;
    u32 m_uStepsLeft;
    std::size_t m_uListed = 0;
    std::string m_szName;
    std::vector<stLevel> m_vecStack;
    std::vector<stOffsetTreeEntry> m_vecEntries;
};

} // namespace

std::vector<u8> g_fnSerializeOffsetTree(const std::map<std::string, u32>& mapOffsets, u32 uMaxBytes) {
    return CTreeWriter(mapOffsets, uMaxBytes).Write();
}

bool g_fnFindInOffsetTree(const u8* pBank, u32 uBytes, std::string_view szName, u32& uValue) noexcept {
    const CBank bank(pBank, uBytes);
    return CTreeWalk(bank, szName).Find(uValue);
}

u32 g_fnOffsetTreeValuesStart(const u8* pBank, u32 uBytes) noexcept {
    return CBank(pBank, uBytes).ValuesStart();
}

std::vector<stOffsetTreeEntry> g_fnListOffsetTree(const u8* pBank, u32 uBytes) {
    const CBank bank(pBank, uBytes);
    return CTreeList(bank).List();
}
