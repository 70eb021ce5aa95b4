#pragma once
// The frames of one picture file on their way into a texture.
#include "draw/image_file.h"

#include <vector>

/// Used once, while the texture's decoder is open. Sizes in pixels.
class CImageFrames {
  public:
    explicit CImageFrames(CTexture_Base& texture);

    /// Reads what is said of all frames, without pixels, and sets what the texture keeps of it. Null, or in
    /// words why the file is refused.
    const char* Measure(const stImageContainer& stContainer);
    /// One zeroed frame for each that will be shown, in the file's format if the flavour has that.
    bool CreateTexture();
    /// Decodes, and hands each frame to the flavour. False if not one of them could be decoded.
    bool Compose();

  private:
    struct stFrame {
        bool m_bReadable = false;
        platform::stImageFrame m_st;
        u32 m_uLeft = 0, m_uTop = 0, m_uWidth = 0, m_uHeight = 0; ///< place in the picture
        u32 m_uDelayMs = 0;
        u32 m_uDisposal = 0;
    };

    stFrame ReadFrame(u32 uFrame) const;
    const char* ReadAllFrames();
    const char* TakeSize(const stImageContainer& stContainer);
    void Place(stFrame& st) const;
    const char* Count(const stFrame& st);
    bool IsAnimation() const;
    bool ComposeStill();
    void AddFrame(const stFrame& st, u32 uFrame);
    void FinishRest();
    bool DecodeOnto(const stFrame& st, u32 uFrame, u32 uStored);
    void Overlay(const stFrame& st, const u8* pFrom, u8* pOnto) const;
    void Paint(u32 uStored);
    void CopyFormer(u32 uStored);
    u8* Pixels(u32 uStored) const;

    CTexture_Base& m_texture;
    platform::ImageDecoder* m_pDecoder;
    std::vector<stFrame> m_vecFrames;
    u32 m_uWidth = 0, m_uHeight = 0;
    u32 m_uCounted = 0;   ///< frames with a delay
    u64 m_uSumPixels = 0; ///< of the frames' own pixels
};
