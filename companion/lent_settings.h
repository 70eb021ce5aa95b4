#pragma once
// Settings of the machine that a program makes for the time that it runs. A journal beside the settings tells
// which ones, so that those of a program that was killed go with the next one. What a person has set stays: a
// key in which one of the values stands already is left alone, and a value that a person changed meanwhile is
// the person's.
#include "companion/result.h"
#include "platform/tool_settings.h"
#include <filesystem>
#include <vector>

namespace companion {

class LentSettings {
  public:
    using Setting = platform::tool::Setting;

    /// fnIsAlive tells whether another lender still runs.
    LentSettings(std::filesystem::path pathJournal, u32 uOwner, bool (*fnIsAlive)(u32 uOwner))
        : m_pathJournal(std::move(pathJournal)), m_uOwner(uOwner), m_fnIsAlive(fnIsAlive) {}

    /// Makes the lent settings those of listWanted: new ones are written, others that were lent go.
    /// bChanged: the settings are others now. Failed: they are as before.
    Result Lend(const std::vector<Setting>& listWanted, bool& bChanged);
    /// Takes all back, unless another lender that is alive has taken them over.
    Result TakeBack(bool& bChanged);
    /// True while the journal says that they are this one's.
    bool IsOwner() const;

  private:
    struct Journal {
        u32 uOwner = 0;
        std::vector<Setting> listValues;
        std::vector<std::string> listKeys; ///< made by lenders, and not there before
    };
    Journal Read() const;
    Result Write(const Journal& st) const;
    Result Change(Journal& stFrom, Journal& stTo, std::vector<Setting> listChanges);

    std::filesystem::path m_pathJournal;
    u32 m_uOwner;
    bool (*m_fnIsAlive)(u32);
};

/// The journal's file on this machine; empty if the system tells no place.
std::filesystem::path LendingJournal();

} // namespace companion
