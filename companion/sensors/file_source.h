#pragma once
// Sensors whose every value is a number in a file of its own.
#include "companion/sensors/source.h"

namespace companion::sensors {

/// How a file becomes a value.
enum class Form {
    Number,  ///< one number
    Starred, ///< lines "1: 2124Mhz *"; the starred one counts
    Share    ///< one number as percent of another file's, or of iDivisor where that file is missing
};

/// What a kind of file holds.
struct Quantity {
    const char* szBase; ///< data name without its index
    const char* szUnit;
    i64 iDivisor; ///< of the file's number to szUnit, halves away from 0
    i32 iLowest;  ///< values beyond these two are not believed
    i32 iHighest;
    Form eForm = Form::Number;
};

class FileSource : public Source {
  public:
    void Read() override;

  protected:
    void Clear();
    /// Adds a reading if strFile exists and its name is not listed yet. A neighbour "..._fault" of
    /// "..._input" that holds 1 takes the value away.
    bool Add(const Quantity& stQuantity, u32 uIndex, const std::string& strFile,
             const std::string& strWhole = {});

  private:
    struct Channel {
        const Quantity* pQuantity;
        std::string strFile, strWhole, strFault;
    };
    std::optional<i32> ReadChannel(const Channel& stChannel);
    std::optional<i32> ReadStarred(const Channel& stChannel);

    std::vector<Channel> m_listChannels; ///< one a reading
    std::string m_strText;
};

} // namespace companion::sensors
