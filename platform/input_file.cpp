#include "platform/input_file.h"

#include "platform/folders.h"
#include "platform/regular_file.h"

namespace platform {

InputFile OpenInput(const char16_t* wzPath) noexcept {
    return InputFile(wzPath ? OpenFileForRead(wzPath) : nullptr);
}

InputFile OpenInput(const char* szPath) noexcept { return InputFile(OpenRegularFile(szPath)); }

InputFile OpenInputAlone(const char16_t* wzPath) noexcept {
    return InputFile(wzPath ? OpenFileForReadAlone(wzPath) : nullptr);
}

bool ReadWholeFile(const InputFile& pFile, u64 uMost, std::string& strBytes) {
    strBytes.clear();
    if (!pFile || SizeOfFile(pFile.get()) > uMost) return false;
    AppendBytes(pFile.get(), uMost + 1, strBytes); // it may grow meanwhile
    return strBytes.size() <= uMost;
}

} // namespace platform
