#pragma once
// The library of HEIF files, opened at run time: it brings coders for video with it that few hosts have. The
// records are of its binary interface, which is stable.
#include "platform/image_encoder.h"

#include <cstdio>

namespace platform::image {

struct stHeifError {
    int m_iCode, m_iSubcode;
    const char* m_szMessage;
};

/// Null where it is not installed. It stays open: its threads and tables are not made for leaving.
void* HeifLibrary() noexcept;
/// pFunction: where the pointer to the function goes. False if the library or the function is missing.
bool FindInHeif(const char* szName, void* pFunction) noexcept;

/// The library is there and brings an encoder. Any thread.
bool HasHeifEncoder() noexcept;
/// Only where there is one. The file is written to its end.
bool EncodeHeif(const stImageToSave& st, std::FILE* pFile) noexcept;

} // namespace platform::image
