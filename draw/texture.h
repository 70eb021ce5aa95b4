#pragma once
// A picture in memory: frames, each with a chain of levels, and what an animation needs. Where the pixels
// come from is not known here.
#include "base/timer.h"
#include "platform/types.h"

#include <map>

/// Pixel layouts that the overlay itself uses, among the format codes of m_fnCreate.
constexpr u32 g_uFormatR8 = 2, g_uFormatRGBA8 = 11, g_uFormatBGRA8 = 47;
/// Frames a texture holds at most.
constexpr u32 g_uMaxTextureFrames = 1000;

/// Bytes of one pixel, 0 for a format code that is unknown.
u32 g_fnBytesPerPixel(u32 uFormat) noexcept;
/// Bits of one pixel as a decoder counts them; 8 for every code that it has no other number for.
u32 g_fnBitsPerPixel(u32 uFormat) noexcept;
/// Levels down to 1 by 1, a side at 1 staying there: 5 by 3 gives 3. A side of 0 counts as 1.
u32 g_fnLevelCount(u32 uWidth, u32 uHeight) noexcept;
/// A side, in pixels, at a level: halved once a level, at least 1.
u32 g_fnLevelSide(u32 uSide, u32 uLevel) noexcept;

/// Sizes in pixels, rows packed and from the top down. Render thread only. The operations of flavours need
/// the context current.
class CTexture_Base {
  public:
    CTexture_Base() noexcept;
    CTexture_Base(const CTexture_Base&) = delete;
    CTexture_Base& operator=(const CTexture_Base&) = delete;

    /// Replaces what was there by zeroed frames. False for a side, frame count or pixel size of 0, above 1000
    /// frames, a frame above 31 bits of bytes, or without memory.
    virtual bool m_fnCreate(u32 uWidth, u32 uHeight, u32 uFormat, u32 uFrames, bool bMipmap);
    /// Hands pixels of one level over to the flavour. With a full chain the frame's own levels go, all of
    /// them, and the pixels are ignored.
    virtual bool m_fnUploadLevel(const void* pPixels, u32 uFrame, u32 uLevel);
    /// All levels of a frame, until one is refused. Null stands for the frame's own chain; otherwise one
    /// pointer a level.
    virtual bool m_fnUploadFrame(const void* const* ppLevels, u32 uFrame);
    /// The memory of a level; null when there is none of that number, or it was dropped.
    virtual void m_fnGetLevel(u8** ppPixels, u32 uFrame, u32 uLevel);
    /// Gives the memory of a frame's levels back. There are none then until they are taken anew.
    void m_fnDropLevels(u32 uFrame) noexcept;
    /// These pixels are a frame's level 0 from now on, in place of a copy, until its levels are dropped; they
    /// stay the caller's. For one frame at a time.
    void m_fnLendLevel(u32 uFrame, u8* pPixels) noexcept;
    /// Zeroed levels where a frame has none. False for a frame that does not exist, or without memory.
    bool m_fnTakeLevels(u32 uFrame);
    virtual void m_fnGetSize(u32* puWidth, u32* puHeight);
    /// Replaces what was there by the frames of a picture file, composed, and hands them to the flavour.
    /// False for a file that can't be read or is beyond the bounds, with what was done so far left standing.
    virtual bool m_fnLoadTexture(const char16_t* wzPath);
    /// Replaces what was there by the raw picture of the screenshot marker, which is the only one ever read.
    /// False if there is none, or it says what no picture can be.
    virtual bool m_fnLoadCache();
    /// Opens a raw picture and reads 12 bytes that nothing uses. False when that fails.
    virtual bool m_fnReadHeader(const char16_t* wzPath);
    /// Writes width, height and frame count as three u32, low byte first. False when that fails.
    virtual bool m_fnWriteHeader(const char16_t* wzPath);
    /// Gives the frame shown the time of the last update, and goes on to the next once its delay is exceeded.
    virtual void m_fnAdvance();
    /// Makes the texture current for drawing, units 1 to 7 and 0 for any other.
    virtual void m_fnBindUnit(u32 uUnit);
    virtual u32 m_fnGetCurrentFrame();
    virtual void m_fnSetCurrentFrame(u32 uFrame);
    /// Frees the frames; flavours override it to give their objects back and leave the frames.
    virtual void m_fnRelease();
    virtual ~CTexture_Base();
    virtual void m_fnFreeFrames();
    virtual bool m_fnReserved16();

    u32 m_uWidth = 0, m_uHeight = 0;
    u32 m_uFrameBytes = 0; ///< of level 0
    i32 m_uLevelCount = 0; ///< of each frame
    bool m_bMipmap = false;
    u8*** m_pFrames = nullptr;            ///< frame, level
    u32 m_uDisplayW = 0, m_uDisplayH = 0; ///< after the file's pixel aspect
    u32 m_uBytesPerPixel = 0;
    u32 m_uSourceFormat = 0; ///< of the file
    u32 m_uFormat = 0;       ///< in use
    u32 m_uDecodeFormat = 0; ///< as the decoder gives it
    bool m_bLoops = false;   ///< the file carries a loop count
    i32 m_uFrameCount = 0;
    u32 m_uFileFrames = 0;
    u32 m_uDelayMs = 0;  ///< of the frame just decoded
    u32 m_uDisposal = 0; ///< of the frame just decoded
    u32 m_uStoredFrames = 0;
    u32 m_uFileFrameIndex = 0;
    std::map<u32, u32> m_mapFrameDelay; ///< frame to milliseconds
    u32 m_uLoopCount = 0;               ///< 0: forever
    bool m_bSwapRB = false;             ///< red and blue change places on decoding
    u32 m_uCurrentFrame = 0;
    f32 m_fFrameTime = 0.0f;           ///< seconds that the current frame has been shown
    CTimer m_timer;                    ///< runs from construction; nothing reads it
    f32 m_fBackground[4] = {};         ///< red, green, blue, alpha, each 0 to 255
    void* m_pDecoderFactory = nullptr; ///< alive during a load only, as is the decoder
    void* m_pDecoder = nullptr;

  private:
    u8* m_pLent = nullptr;
    bool AllocateFrames();
    bool AllocateLevels(u8** ppLevels);
    void FreeLevels(u8** ppLevels) noexcept;
    bool HasFrame(u32 uFrame) const noexcept;
    std::size_t LevelBytes(i32 iLevel) const noexcept;
};
