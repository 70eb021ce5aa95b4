#pragma once
// File names of one hwmon folder: PREFIX, channel number, SUFFIX, as in "temp1_input".
#include "platform/types.h"
#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

namespace companion::sensors {

std::string HwmonFile(const std::string& strFolder, const char* szPrefix, u32 uChannel, const char* szSuffix);

/// Channels that have a "_input" file, in order.
std::vector<u32> HwmonChannels(const std::string& strFolder, const char* szPrefix);

/// The channel's label; empty without one.
std::string HwmonLabel(const std::string& strFolder, const char* szPrefix, u32 uChannel);

/// The channel with the first of listLabels that occurs, else the first channel; empty without channels.
std::optional<u32> HwmonChannelOf(const std::string& strFolder, const char* szPrefix,
                                  std::initializer_list<const char*> listLabels);

} // namespace companion::sensors
