#pragma once
// One kind of picture file each, over the bytes of a whole file. A reader may be asked for its frames in any
// order and as often as one likes. Libraries that leave by longjmp pass no destructor on their way.
#include "platform/image_decoder.h"
#include "platform/image_signature.h"

#include <memory>
#include <string>

namespace platform::image {

class CImageReader {
  public:
    explicit CImageReader(std::string strFile) : m_strFile(std::move(strFile)) {}
    CImageReader(const CImageReader&) = delete;
    CImageReader& operator=(const CImageReader&) = delete;
    virtual ~CImageReader() = default;

    /// Reads what stands ahead of the pixels. False if it is damaged.
    virtual bool Open() = 0;
    /// All but the count of frames is filled by kinds that have it.
    virtual void Describe(stImageFile& st) { st.m_uFrames = 1; }
    /// Frame numbers are below the count. False for a frame that can't be read.
    virtual bool DescribeFrame(u32 uFrame, stImageFrame& st) = 0;
    /// Pixels of a frame into rows of uStride bytes, with room for the size that DescribeFrame gave. Four
    /// bytes a pixel.
    virtual bool CopyFrame(u32 uFrame, u8* pPixels, std::size_t uStride) = 0;

  protected:
    const u8* Bytes() const { return reinterpret_cast<const u8*>(m_strFile.data()); }
    std::size_t ByteCount() const { return m_strFile.size(); }

  private:
    std::string m_strFile;
};

using Reader = std::unique_ptr<CImageReader>;

Reader MakePngReader(std::string strFile);
Reader MakeJpegReader(std::string strFile);
Reader MakeGifReader(std::string strFile);
Reader MakeBmpReader(std::string strFile);
Reader MakeTiffReader(std::string strFile);
/// Null when the system has no libheif.
Reader MakeHeifReader(std::string strFile);

/// What OpenImage does with the bytes of a file.
ImageDecoder* OpenImageBytes(std::string strFile, const char** pszReason) noexcept;

} // namespace platform::image
