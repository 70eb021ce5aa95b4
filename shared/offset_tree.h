#pragma once
// The serialised prefix tree that leads from a data name to the offset of its value in the raw block.
//
// Layout, all numbers little-endian and unaligned, all offsets counted from the start of the bank:
//   0  u32 uValuesStart   first value; below 4: the tree holds nothing
//   4  root node
// A branch node is u8 count (1 up), then count entries of u8 character and u32 offset, ascending. A chain
// node is u8 0, u8 length, length characters, u32 offset; behind its characters stands one more that is not
// stored. An offset of uValuesStart or more leads to a u32 value. The zero that ends a name is part of it.
//
// Readers take the bytes as if a hostile program had written them, while it writes them.
#include "platform/types.h"
#include <map>
#include <string>
#include <string_view>
#include <vector>

/// A value of uValuesStart below this stands for an empty tree.
constexpr u32 g_uOffsetTreeHeaderBytes = 4;
/// Characters that one chain can store.
constexpr u32 g_uOffsetTreeChainMax = 255;

/// The canonical tree of the names: whole bytes, values included. A name counts up to its first zero; of
/// equal names the last one stays. No name at all, a tree above uMaxBytes, and 256 different characters at
/// one place (a count has 8 bits) all give the four zero bytes of the empty tree.
std::vector<u8> g_fnSerializeOffsetTree(const std::map<std::string, u32>& mapOffsets, u32 uMaxBytes);

/// The value of a name, given without its zero. False if the walk finds none or would leave the bank of
/// uBytes. Takes at most one step a character and never touches memory outside the bank. A character that no
/// chain stores is not compared.
bool g_fnFindInOffsetTree(const u8* pBank, u32 uBytes, std::string_view szName, u32& uValue) noexcept;

/// First field of a bank; 0 if the bank is too small to hold one.
u32 g_fnOffsetTreeValuesStart(const u8* pBank, u32 uBytes) noexcept;

/// One name of a bank with its value. Characters that are not stored read "?".
struct stOffsetTreeEntry {
    std::string m_szName;
    u32 m_uValue;
};

/// All names of a bank in ascending order. Bounded for hostile bytes: it ends after as many steps as a true
/// tree of that size can have, or when the names add up to 16 MiB.
std::vector<stOffsetTreeEntry> g_fnListOffsetTree(const u8* pBank, u32 uBytes);
