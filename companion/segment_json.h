#pragma once
// The whole segment as a tree, for people and for scripts.
#include "platform/segment.h"
#include <nlohmann/json_fwd.hpp>
#include <string>

namespace companion {

struct DumpOptions {
    bool bAllSlots = false; ///< free slots too
    bool bRawBytes = false; ///< the opaque areas as hexadecimal text
};

/// Keys are the field names of the segment; names of free slots' fields are left out with the slots. A number
/// that JSON cannot hold is null.
nlohmann::ordered_json SegmentToJson(const stSharedSegment& stSegment, const DumpOptions& stOptions);

/// The tree as indented lines "key: value"; all text made printable.
std::string TreeToText(const nlohmann::ordered_json& jsTree);

/// Serialised with two blanks of indentation and a line end; never throws on odd text.
std::string JsonToText(const nlohmann::ordered_json& jsTree);

} // namespace companion
