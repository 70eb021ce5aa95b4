// The tree of data names: bytes worked by hand, names written and read back, and bytes that mean harm.
#include "platform/segment.h"
#include "shared/offset_tree.h"
#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>
#include <memory>
#include <random>
#include <set>

namespace {

using Names = std::map<std::string, u32>;
using Bytes = std::vector<u8>;

Bytes Written(const Names& mapNames) { return g_fnSerializeOffsetTree(mapNames, g_uDataTableBytes); }

/// A bank that ends where its allocation ends, so that a sanitizer sees each byte read beyond it.
struct ExactBank {
    explicit ExactBank(const Bytes& vec) : uBytes(static_cast<u32>(vec.size())), p(new u8[vec.size()]) {
        std::copy(vec.begin(), vec.end(), p.get());
    }
    bool Find(std::string_view szName, u32& uValue) const {
        return g_fnFindInOffsetTree(p.get(), uBytes, szName, uValue);
    }
    bool Has(std::string_view szName) const {
        u32 uValue;
        return Find(szName, uValue);
    }
    u32 Value(std::string_view szName) const {
        u32 uValue = 0;
        EXPECT_TRUE(Find(szName, uValue)) << szName;
        return uValue;
    }
    std::vector<stOffsetTreeEntry> List() const { return g_fnListOffsetTree(p.get(), uBytes); }
    u32 uBytes;
    std::unique_ptr<u8[]> p;
};

/// Bytes from numbers, characters and texts, as a hex dump would show them.
struct Dump {
    Dump& U32(u32 u) {
        for (u32 i = 0; i < 4; ++i) vec.push_back(static_cast<u8>(u >> (8 * i)));
        return *this;
    }
    Dump& U8(u32 u) {
        vec.push_back(static_cast<u8>(u));
        return *this;
    }
    Dump& Text(std::string_view sz) {
        vec.insert(vec.end(), sz.begin(), sz.end());
        return *this;
    }
    Bytes vec;
};

} // namespace

// --- bytes

TEST(OffsetTreeBytes, NoNames) { EXPECT_EQ(Written({}), (Bytes{0, 0, 0, 0})); }

TEST(OffsetTreeBytes, OneNameIsOneChainToItsValue) {
    Dump dump;
    dump.U32(12).U8(0).U8(2).Text("A").U8(0).U32(12); // header, chain of "A" and the zero
    dump.U32(0x11223344);
    EXPECT_EQ(Written({{"A", 0x11223344}}), dump.vec);
}

TEST(OffsetTreeBytes, TheEmptyName) {
    Dump dump;
    dump.U32(11).U8(0).U8(1).U8(0).U32(11).U32(7);
    EXPECT_EQ(Written({{"", 7}}), dump.vec);
    EXPECT_EQ(ExactBank(dump.vec).Value(""), 7u);
}

TEST(OffsetTreeBytes, APrefixPairBranchesAtTheZero) {
    Dump dump;
    dump.U32(33);
    dump.U8(0).U8(2).Text("FP").U32(12);        // 4: "FP", the S stands nowhere
    dump.U8(2).U8(0).U32(33).U8('_').U32(23);   // 12: the end of "FPS", or on
    dump.U8(0).U8(4).Text("AVG").U8(0).U32(37); // 23
    dump.U32(100).U32(200);                     // 33
    EXPECT_EQ(Written({{"FPS", 100}, {"FPS_AVG", 200}}), dump.vec);
}

TEST(OffsetTreeBytes, TwoNamesWithoutACommonBeginning) {
    Dump dump;
    dump.U32(29);
    dump.U8(2).U8('A').U32(15).U8('B').U32(22);
    dump.U8(0).U8(1).U8(0).U32(29);
    dump.U8(0).U8(1).U8(0).U32(33);
    dump.U32(1).U32(2);
    EXPECT_EQ(Written({{"A", 1}, {"B", 2}}), dump.vec);
}

TEST(OffsetTreeBytes, ARunOfOneNodeIsAChainWithoutCharacters) {
    Dump dump;
    dump.U32(35);
    dump.U8(0).U8(0).U32(10);                   // the A stands nowhere
    dump.U8(2).U8('B').U32(21).U8('C').U32(28); // 10
    dump.U8(0).U8(1).U8(0).U32(35).U8(0).U8(1).U8(0).U32(39);
    dump.U32(1).U32(2);
    EXPECT_EQ(Written({{"AB", 1}, {"AC", 2}}), dump.vec);
}

TEST(OffsetTreeBytes, ParentsFirstChildrenByUnsignedByteValuesAsLeavesAreMet) {
    Dump dump;
    dump.U32(59);
    dump.U8(3).U8('A').U32(20).U8('z').U32(45).U8(0xE4).U32(52); // 4
    dump.U8(2).U8('1').U32(31).U8('2').U32(38);                  // 20: "A1" and "A2", all of it ahead of "z"
    dump.U8(0).U8(1).U8(0).U32(59);                              // 31
    dump.U8(0).U8(1).U8(0).U32(63);                              // 38
    dump.U8(0).U8(1).U8(0).U32(67);                              // 45
    dump.U8(0).U8(1).U8(0).U32(71);                              // 52
    dump.U32(10).U32(20).U32(30).U32(40);                        // 59
    EXPECT_EQ(Written({{"A1", 10}, {"A2", 20}, {"z", 30}, {"\xE4", 40}}), dump.vec);
}

TEST(OffsetTreeBytes, LongRunsAreSplitAfter255Characters) {
    // 300 characters and the zero: 255 stored, one uncovered, 44 and the zero stored.
    Dump dump;
    dump.U32(4 + 261 + 51);
    dump.U8(0).U8(255).Text(std::string(255, 'x')).U32(265);
    dump.U8(0).U8(45).Text(std::string(44, 'x')).U8(0).U32(316);
    dump.U32(5);
    EXPECT_EQ(Written({{std::string(300, 'x'), 5}}), dump.vec);
}

TEST(OffsetTreeBytes, ARunOf255And256ToAValueIsOneChain) {
    Dump dump;
    dump.U32(265).U8(0).U8(255).Text(std::string(254, 'x')).U8(0).U32(265).U32(5);
    EXPECT_EQ(Written({{std::string(254, 'x'), 5}}), dump.vec);
    Dump longer; // the zero is the uncovered one
    longer.U32(265).U8(0).U8(255).Text(std::string(255, 'x')).U32(265).U32(5);
    EXPECT_EQ(Written({{std::string(255, 'x'), 5}}), longer.vec);
}

TEST(OffsetTreeBytes, ARunOf256And257ToABranch) {
    const auto Pair = [](u32 uLength) {
        return Written({{std::string(uLength, 'x') + "A", 1}, {std::string(uLength, 'x') + "B", 2}});
    };
    Dump dump;
    dump.U32(290).U8(0).U8(255).Text(std::string(255, 'x')).U32(265);
    dump.U8(2).U8('A').U32(276).U8('B').U32(283);
    dump.U8(0).U8(1).U8(0).U32(290).U8(0).U8(1).U8(0).U32(294).U32(1).U32(2);
    EXPECT_EQ(Pair(256), dump.vec);
    const Bytes vec = Pair(257);
    ASSERT_EQ(vec.size(), dump.vec.size() + 6);
    EXPECT_EQ(vec[265], 0) << "another chain";
    EXPECT_EQ(vec[266], 0) << "of no character";
    EXPECT_EQ(vec[267] + 256 * vec[268], 271);
    EXPECT_EQ(vec[271], 2) << "then the branch";
}

TEST(OffsetTreeBytes, ATreeThatDoesNotFitIsEmpty) {
    const Names mapNames{{"A", 1}, {"B", 2}};
    EXPECT_EQ(g_fnSerializeOffsetTree(mapNames, 37).size(), 37u);
    EXPECT_EQ(g_fnSerializeOffsetTree(mapNames, 36), (Bytes{0, 0, 0, 0}));
    Names mapMany;
    for (u32 u = 0; u < 30000; ++u) mapMany[std::to_string(u * 7919)] = u;
    EXPECT_EQ(Written(mapMany), (Bytes{0, 0, 0, 0}));
}

TEST(OffsetTreeBytes, ACountHas8Bits) {
    Names mapNames;
    for (u32 u = 1; u < 256; ++u) mapNames[std::string(1, static_cast<char>(u))] = u;
    const ExactBank bank(Written(mapNames));
    EXPECT_EQ(bank.p[4], 255);
    for (u32 u = 1; u < 256; ++u) EXPECT_EQ(bank.Value(std::string(1, static_cast<char>(u))), u);
    mapNames[""] = 0;
    EXPECT_EQ(Written(mapNames), (Bytes{0, 0, 0, 0}));
}

TEST(OffsetTreeBytes, ANameEndsAtItsFirstZero) {
    const Names mapNames{{"AB", 1}, {std::string("AB\0C", 4), 2}, {"ABC", 3}};
    EXPECT_EQ(Written(mapNames), Written({{"AB", 2}, {"ABC", 3}}));
}

// --- a plain construction of the same tree, node by node

namespace {

struct Node {
    std::map<u8, std::unique_ptr<Node>> mapChildren;
    u32 uValue = 0;
};

struct PlainTree {
    explicit PlainTree(const Names& mapNames) {
        for (const auto& [szName, uValue] : mapNames) {
            Node* pNode = &root;
            for (u32 u = 0; u <= szName.size(); ++u) {
                auto& pChild = pNode->mapChildren[static_cast<u8>(szName.c_str()[u])];
                if (!pChild) pChild = std::make_unique<Node>();
                pNode = pChild.get();
            }
            pNode->uValue = uValue;
        }
        Layout(&root);
        for (auto& [uAt, pNode] : vecLinks)
            SetU32(uAt, mapPlaces.count(pNode) ? mapPlaces[pNode]
                                               : static_cast<u32>(dump.vec.size() + 4 * LeafIndex(pNode)));
        SetU32(0, static_cast<u32>(dump.vec.size()));
        for (const Node* pLeaf : vecLeaves) dump.U32(pLeaf->uValue);
    }
    u32 LeafIndex(const Node* pNode) {
        return static_cast<u32>(std::find(vecLeaves.begin(), vecLeaves.end(), pNode) - vecLeaves.begin());
    }
    void SetU32(std::size_t uAt, u32 u) {
        for (u32 i = 0; i < 4; ++i) dump.vec[uAt + i] = static_cast<u8>(u >> (8 * i));
    }
    void Link(const Node* pNode) {
        vecLinks.push_back({dump.vec.size(), pNode});
        dump.U32(0);
    }
    void Layout(const Node* pNode) {
        if (dump.vec.empty()) dump.U32(0);
        if (pNode->mapChildren.empty()) return vecLeaves.push_back(pNode);
        mapPlaces[pNode] = static_cast<u32>(dump.vec.size());
        if (pNode->mapChildren.size() == 1) return Chain(pNode);
        dump.U8(static_cast<u32>(pNode->mapChildren.size()));
        for (const auto& [uCharacter, pChild] : pNode->mapChildren) {
            dump.U8(uCharacter);
            Link(pChild.get());
        }
        for (const auto& [uCharacter, pChild] : pNode->mapChildren) Layout(pChild.get());
    }
    /// Names of this model stay below the length at which a run is split.
    void Chain(const Node* pNode) {
        std::string szRun;
        while (pNode->mapChildren.size() == 1) {
            szRun.push_back(static_cast<char>(pNode->mapChildren.begin()->first));
            pNode = pNode->mapChildren.begin()->second.get();
        }
        if (!pNode->mapChildren.empty()) szRun.pop_back();
        dump.U8(0).U8(static_cast<u32>(szRun.size())).Text(szRun);
        Link(pNode);
        Layout(pNode);
    }
    Node root;
    Dump dump;
    std::map<const Node*, u32> mapPlaces;
    std::vector<std::pair<std::size_t, const Node*>> vecLinks;
    std::vector<const Node*> vecLeaves;
};

/// Names over few characters, so that they share beginnings.
Names RandomNames(std::mt19937& rng) {
    static constexpr char acCharacters[] = "AB#_0\xE4\x7F\x01";
    const u32 uAlphabet = 2 + rng() % 7, uCount = rng() % 24, uLongest = 1 + rng() % 20;
    Names mapNames;
    for (u32 u = 0; u < uCount; ++u) {
        std::string szName;
        for (u32 uLength = rng() % (uLongest + 1); uLength; --uLength)
            szName.push_back(acCharacters[rng() % uAlphabet]);
        mapNames[szName] = static_cast<u32>(rng());
    }
    return mapNames;
}

/// A listed name stands for all names that differ from it at its uncovered characters.
bool StandsFor(const std::string& szListed, const std::string& szName) {
    return szListed.size() == szName.size() &&
           std::equal(szListed.begin(), szListed.end(), szName.begin(),
                      [](char cListed, char c) { return cListed == '?' || cListed == c; });
}

} // namespace

TEST(OffsetTree, TenThousandRandomNameSetsAreWrittenAndReadBack) {
    std::mt19937 rng(1);
    for (u32 uRound = 0; uRound < 10000 && !::testing::Test::HasFailure(); ++uRound) {
        const Names mapNames = RandomNames(rng);
        const Bytes vec = Written(mapNames);
        ASSERT_EQ(vec, mapNames.empty() ? Bytes(4, 0) : PlainTree(mapNames).dump.vec) << uRound;
        const ExactBank bank(vec);
        for (const auto& [szName, uValue] : mapNames) ASSERT_EQ(bank.Value(szName), uValue) << uRound;
        const auto vecList = bank.List();
        ASSERT_EQ(vecList.size(), mapNames.size());
        auto itListed = vecList.begin();
        for (const auto& [szName, uValue] : mapNames) {
            ASSERT_TRUE(StandsFor(itListed->m_szName, szName)) << itListed->m_szName << " " << szName;
            ASSERT_EQ(itListed++->m_uValue, uValue);
        }
        for (const auto& [szName, uIgnored] : RandomNames(rng)) {
            const bool bKnown = std::any_of(vecList.begin(), vecList.end(),
                                            [&](const auto& st) { return StandsFor(st.m_szName, szName); });
            ASSERT_EQ(bank.Has(szName), bKnown) << szName;
        }
    }
}

TEST(OffsetTree, LongNamesAreReadBack) {
    std::mt19937 rng(2);
    for (u32 uRound = 0; uRound < 300; ++uRound) {
        Names mapNames;
        const std::string szShared(rng() % 800, 'x');
        for (u32 u = 0; u < 6; ++u)
            mapNames[szShared.substr(0, rng() % (szShared.size() + 1)) + std::string(rng() % 600, 'y') +
                     static_cast<char>('A' + u)] = static_cast<u32>(rng());
        const ExactBank bank(Written(mapNames));
        for (const auto& [szName, uValue] : mapNames) ASSERT_EQ(bank.Value(szName), uValue);
        ASSERT_EQ(bank.List().size(), mapNames.size());
    }
}

// --- reading

TEST(OffsetTree, ANameThatDiffersOnlyInTheUncoveredCharacterFindsTheStoredOne) {
    const ExactBank bank(Written({{"GPU_CLK#0", 4}, {"GPU_CLK#1", 8}}));
    EXPECT_EQ(bank.Value("GPU_CLK#1"), 8u);
    EXPECT_EQ(bank.Value("GPU_CLKx1"), 8u);
    EXPECT_FALSE(bank.Has("GPU_CLx#1"));
    EXPECT_FALSE(bank.Has("GPU_CLK##1"));
    EXPECT_FALSE(bank.Has("GPU_CLK#2"));
}

TEST(OffsetTree, BeginningsAndContinuationsOfANameAreNotFound) {
    const ExactBank bank(Written({{"FPS", 100}, {"FPS_AVG", 200}, {"FPS_AVG2", 300}}));
    for (const char* szName : {"", "F", "FP", "FPS_", "FPS_A", "FPS_AV", "FPS_AVGG", "FPSS", "FPS_AVG22"})
        EXPECT_FALSE(bank.Has(szName)) << szName;
    EXPECT_EQ(bank.Value("FPS"), 100u);
    EXPECT_EQ(bank.Value("FPS_AVG"), 200u);
    EXPECT_EQ(bank.Value("FPS_AVG2"), 300u);
}

TEST(OffsetTree, BranchesOfOneAndChainsOfNoneAreRead) {
    Dump dump;
    dump.U32(34);
    dump.U8(1).U8('A').U32(10); // 4: a branch of one
    dump.U8(0).U8(0).U32(16);   // 10: no character, the next one uncovered
    dump.U8(1).U8('C').U32(22); // 16
    dump.U8(1).U8(0).U32(28);   // 22: the zero; what follows finds no character left
    dump.U8(1).U8(0).U32(34);   // 28
    dump.U32(9);
    const ExactBank bank(dump.vec);
    EXPECT_FALSE(bank.Has("AxC")) << "the characters ran out before a value";
    dump.vec[24] = 34;
    EXPECT_EQ(ExactBank(dump.vec).Value("AxC"), 9u);
    EXPECT_FALSE(ExactBank(dump.vec).Has("AxD"));
}

TEST(OffsetTree, TheSkipBehindAChainToAValueNeedsNoCharacter) {
    Dump dump;
    dump.U32(12).U8(0).U8(2).Text("A").U8(0).U32(12).U32(5);
    EXPECT_EQ(ExactBank(dump.vec).Value("A"), 5u);
    dump.vec[8] = 4; // to a node instead: it does need one
    EXPECT_FALSE(ExactBank(dump.vec).Has("A"));
}

TEST(OffsetTree, BehindItsZeroANameHasNoCharacters) {
    Dump dump;
    dump.U32(13).U8(0).U8(3).Text("A").U8(0).U8(0).U32(13).U32(5);
    EXPECT_FALSE(ExactBank(dump.vec).Has("A")) << "the chain is longer by one";
    EXPECT_TRUE(ExactBank(dump.vec).Has({"A\0", 2}));
}

TEST(OffsetTree, ValuesMayBeUnalignedAndAnywhereBehindTheStart) {
    Dump dump;
    dump.U32(12).U8(0).U8(2).Text("A").U8(0).U32(15).U8(1).U8(2).U8(3).U32(0xCAFE);
    EXPECT_EQ(ExactBank(dump.vec).Value("A"), 0xCAFEu);
}

TEST(OffsetTree, AStartBelow4IsAnEmptyTree) {
    Dump dump;
    dump.U32(12).U8(0).U8(2).Text("A").U8(0).U32(12).U32(5);
    for (u8 uStart = 0; uStart < 4; ++uStart) {
        dump.vec[0] = uStart;
        EXPECT_FALSE(ExactBank(dump.vec).Has("A"));
        EXPECT_TRUE(ExactBank(dump.vec).List().empty());
        EXPECT_EQ(g_fnOffsetTreeValuesStart(dump.vec.data(), 20), uStart);
    }
    dump.vec[0] = 4; // no room for a root
    EXPECT_FALSE(ExactBank(dump.vec).Has("A"));
    EXPECT_TRUE(ExactBank(dump.vec).List().empty());
}

// --- hostile bytes

namespace {

/// Every way of reading, over a bank that ends where its memory ends.
void ReadAll(const Bytes& vec) {
    const ExactBank bank(vec);
    for (const char* szName : {"", "A", "AB", "FPS", "FPS_AVG", "GPU_CLK#0"}) bank.Has(szName);
    bank.Has(std::string(600, 'x'));
    bank.Has(std::string(600, '\0'));
    EXPECT_LE(bank.List().size(), bank.uBytes / 4);
    g_fnOffsetTreeValuesStart(bank.p.get(), bank.uBytes);
}

} // namespace

TEST(HostileOffsetTree, BanksOfAnySize) {
    for (u32 uBytes = 0; uBytes < 40; ++uBytes)
        for (u32 uByte : {0x00, 0x01, 0x04, 0x05, 0xFF}) ReadAll(Bytes(uBytes, static_cast<u8>(uByte)));
}

TEST(HostileOffsetTree, RandomBytes) {
    std::mt19937 rng(3);
    for (u32 uRound = 0; uRound < 20000; ++uRound) {
        Bytes vec(rng() % 96);
        for (u8& u : vec) u = static_cast<u8>(rng() % 3 ? rng() % 32 : rng());
        if (vec.size() >= 4 && uRound % 4) vec[1] = vec[2] = vec[3] = 0;
        ReadAll(vec);
    }
}

TEST(HostileOffsetTree, TrueTreesCutAnywhere) {
    const Bytes vec = Written({{"FPS", 100}, {"FPS_AVG", 200}, {"GPU_CLK#0", 1}, {"GPU_CLK#1", 2}});
    for (std::size_t u = 0; u <= vec.size(); ++u)
        ReadAll(Bytes(vec.begin(), vec.begin() + static_cast<std::ptrdiff_t>(u)));
}

TEST(HostileOffsetTree, TrueTreesWithOneByteChanged) {
    const Bytes vec = Written({{"FPS", 100}, {"FPS_AVG", 200}, {"GPU_CLK#0", 1}, {"GPU_CLK#1", 2}});
    for (std::size_t u = 0; u < vec.size(); ++u)
        for (u32 uValue : {0u, 1u, 4u, 0x7Fu, 0xFFu, vec[u] + 1u, vec[u] - 1u}) {
            Bytes vecChanged = vec;
            vecChanged[u] = static_cast<u8>(uValue);
            ReadAll(vecChanged);
        }
}

TEST(HostileOffsetTree, AChainToItselfEnds) {
    Dump dump;
    dump.U32(0xFFFFFFFF).U8(0).U8(0).U32(4);
    ReadAll(dump.vec);
    dump.vec.resize(0x40000, 0);
    ReadAll(dump.vec);
    EXPECT_FALSE(ExactBank(dump.vec).Has(std::string(100000, 'x')));
}

TEST(HostileOffsetTree, ABranchBackToTheRootEnds) {
    Dump dump;
    dump.U32(0x3FFF0).U8(2).U8('x').U32(4).U8(0).U32(4);
    dump.vec.resize(0x40000, 0);
    ReadAll(dump.vec);
}

// 255 entries a node, all to the next node, 100 nodes deep: no computer lists 255 to the power of 100 names.
TEST(HostileOffsetTree, SharedNodesEndTheListing) {
    constexpr u32 uNodeBytes = 1 + 255 * 5;
    Dump dump;
    dump.U32(4 + 100 * uNodeBytes);
    for (u32 uNode = 1; uNode <= 100; ++uNode) {
        dump.U8(255);
        for (u32 u = 1; u < 256; ++u) dump.U8(u).U32(4 + uNode * uNodeBytes);
    }
    dump.vec.resize(0x40000, 0);
    const auto vecList = ExactBank(dump.vec).List();
    EXPECT_GT(vecList.size(), 0u);
    EXPECT_LE(vecList.size(), 0x40000u / 4);
}

// A long way, then as many values as the bank has offsets: each name is short of a quarter million
// characters.
TEST(HostileOffsetTree, LongNamesEndTheListing) {
    Dump dump;
    constexpr u32 uChain = 2 + 255 + 4, uChains = 900;
    dump.U32(0x3FF00);
    for (u32 u = 1; u <= uChains; ++u) dump.U8(0).U8(255).Text(std::string(255, 'n')).U32(4 + u * uChain);
    for (u32 uNode = 0; uNode < 20; ++uNode) {
        dump.U8(255);
        const u32 uNext = static_cast<u32>(dump.vec.size()) + 255 * 5;
        for (u32 u = 1; u < 256; ++u) dump.U8(u).U32(u == 255 ? uNext : 0x3FF00);
    }
    dump.vec.resize(0x40000, 0);
    std::size_t uCharacters = 0;
    for (const auto& st : ExactBank(dump.vec).List()) uCharacters += st.m_szName.size();
    EXPECT_GT(uCharacters, std::size_t{1} << 20);
    EXPECT_LE(uCharacters, std::size_t{16} << 20);
}

TEST(HostileOffsetTree, AValueAtTheBanksEndIsRead) {
    Dump dump;
    dump.U32(12).U8(0).U8(2).Text("A").U8(0).U32(17).U8(0).U32(0).U32(77);
    EXPECT_EQ(dump.vec.size(), 21u);
    EXPECT_EQ(ExactBank(dump.vec).Value("A"), 77u);
    dump.vec[8] = 18; // one byte too far
    EXPECT_FALSE(ExactBank(dump.vec).Has("A"));
    dump.vec[11] = 0xFF; // near 4 GiB
    EXPECT_FALSE(ExactBank(dump.vec).Has("A"));
}
