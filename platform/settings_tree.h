#pragma once
// A settings store in memory, for the back-ends whose system has none.
#include "platform/settings_store.h"

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

struct LessWithoutCase {
    using is_transparent = void;
    bool operator()(std::u16string_view a, std::u16string_view b) const noexcept;
};

struct SettingsValue {
    SettingsType m_eType = SettingsType::Other;
    std::vector<u8> m_vecBytes;
};

struct SettingsNode {
    std::map<std::u16string, SettingsNode, LessWithoutCase> m_mapSubkeys;
    std::map<std::u16string, SettingsValue, LessWithoutCase> m_mapValues;
};

constexpr u32 g_uSettingsDepthMax = 32;      ///< parts of a path
constexpr u32 g_uSettingsEntriesMax = 65536; ///< keys and values together; more are not taken

class CSettingsTree {
  public:
    /// The settings of a file in the form that settings_store.h tells. The first value of a name counts.
    static CSettingsTree Load(const char16_t* wzPath);
    static CSettingsTree Parse(std::string_view bytes);

    /// Adds a key with all above it; null if a part of the path is empty or too long, the path too deep, or
    /// the tree full.
    SettingsNode* AddKey(std::u16string_view wzPath);
    /// Adds a value unless the key has one of that name already.
    void AddValue(SettingsNode& node, std::u16string_view wzName, SettingsValue value);
    const SettingsNode* FindKey(std::u16string_view wzPath) const noexcept;

  private:
    void Take(const class CIniFile& file);

    SettingsNode m_root;
    u32 m_uEntries = 0;
};

/// Numbers and texts as they are stored.
SettingsValue MakeSettingsNumber(u32 uValue);
SettingsValue MakeSettingsText(std::u16string_view wzText);

/// What stands behind a key handle of these back-ends: the tree is kept while the key is open.
class COpenSettingsKey {
  public:
    /// Null if the tree has no such key.
    static COpenSettingsKey* Open(std::shared_ptr<const CSettingsTree> pTree,
                                  const char16_t* wzPath) noexcept;

    bool Query(const char16_t* wzName, SettingsType& eType, void* pOut, u32& uBytes) const noexcept;
    bool Subkey(u32 uIndex, char16_t* wzOut, u32 uCapacity) noexcept;
    bool Value(u32 uIndex, char16_t* wzOut, u32 uCapacity) noexcept;

  private:
    /// A walk over names that goes on where it stood.
    template <class Map> struct Walk {
        typename Map::const_iterator m_it;
        u32 m_uIndex = 0;
    };
    template <class Map>
    static bool Name(const Map& map, Walk<Map>& walk, u32 uIndex, char16_t* wzOut, u32 uCapacity) noexcept;

    COpenSettingsKey(std::shared_ptr<const CSettingsTree> pTree, const SettingsNode* pNode) noexcept;

    std::shared_ptr<const CSettingsTree> m_pTree;
    const SettingsNode* m_pNode;
    Walk<decltype(SettingsNode::m_mapSubkeys)> m_subkeys;
    Walk<decltype(SettingsNode::m_mapValues)> m_values;
};

} // namespace platform
