#pragma once
// Which index a piece of hardware has in its data names.
#include "platform/types.h"
#include <map>
#include <string>
#include <vector>

namespace companion::sensors {

/// Hands out indexes from 0 up, one list a kind. Hardware keeps its index as long as the companion runs, also
/// while it is unplugged, so that a name never changes what it means.
class Numbers {
  public:
    /// Index of hardware strKey ("0000:03:00.0") among its kind ("gpu"); new hardware takes the lowest free
    /// one.
    u32 IndexOf(const std::string& strKind, const std::string& strKey);

    struct Adapter {
        std::string strKey;
        u64 uOwnMemory = 0; ///< bytes; 0 for those that use the machine's
    };
    /// Numbers adapters that come new: the largest own memory first, equal ones by key. The card meant for
    /// pictures is index 0 thus, not the graphics part of the processor.
    void Enter(const std::string& strKind, std::vector<Adapter> listAdapters);

  private:
    std::map<std::string, std::map<std::string, u32>> m_mapKinds;
};

} // namespace companion::sensors
