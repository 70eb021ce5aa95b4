#include "draw/image_frames.h"

#include "platform/image_signature.h"

#include <algorithm>
#include <cstring>

/// What to do with a frame before the next one is drawn, as the file numbers it.
enum Disposal : u32 { Unsaid = 0, Keep = 1, Background = 2, Former = 3 };

CImageFrames::CImageFrames(CTexture_Base& texture)
    : m_texture(texture), m_pDecoder(static_cast<platform::ImageDecoder*>(texture.m_pDecoder)) {}

bool CImageFrames::IsAnimation() const { return m_texture.m_uFileFrames >= 2; }

CImageFrames::stFrame CImageFrames::ReadFrame(u32 uFrame) const {
    stFrame st;
    st.m_bReadable = platform::DescribeImageFrame(m_pDecoder, uFrame, &st.m_st);
    if (!st.m_bReadable) return st;
    st.m_uDelayMs = g_fnFrameDelayMs(st.m_st);
    st.m_uDisposal = st.m_st.m_stDisposal.m_bGiven ? st.m_st.m_stDisposal.m_uValue : static_cast<u32>(Unsaid);
    return st;
}

/// A frame without a place lies at the corner and has the picture's size.
void CImageFrames::Place(stFrame& st) const {
    const platform::stImageFrame& stSaid = st.m_st;
    const bool bPlaced = stSaid.m_stLeft.m_bGiven && stSaid.m_stTop.m_bGiven &&
                         stSaid.m_stPlaceWidth.m_bGiven && stSaid.m_stPlaceHeight.m_bGiven;
    st.m_uLeft = bPlaced ? stSaid.m_stLeft.m_uValue : 0;
    st.m_uTop = bPlaced ? stSaid.m_stTop.m_uValue : 0;
    st.m_uWidth = bPlaced ? stSaid.m_stPlaceWidth.m_uValue : m_uWidth;
    st.m_uHeight = bPlaced ? stSaid.m_stPlaceHeight.m_uValue : m_uHeight;
}

const char* CImageFrames::TakeSize(const stImageContainer& stContainer) {
    const bool bSaid = stContainer.m_uWidth != 0;
    const stFrame stFirst = bSaid ? stFrame{} : ReadFrame(0);
    if (!bSaid && !stFirst.m_bReadable) return "its first frame can't be read";
    m_uWidth = bSaid ? stContainer.m_uWidth : stFirst.m_st.m_uWidth;
    m_uHeight = bSaid ? stContainer.m_uHeight : stFirst.m_st.m_uHeight;
    m_texture.m_uDisplayW = bSaid ? stContainer.m_uDisplayW : m_uWidth;
    m_texture.m_uDisplayH = bSaid ? stContainer.m_uDisplayH : m_uHeight;
    return platform::ImageSizeAllowed(m_uWidth, m_uHeight) ? nullptr : "too many pixels";
}

/// Each frame's own pixels are bounded too, since a frame may be larger than the picture.
const char* CImageFrames::Count(const stFrame& st) {
    const u64 uPixels = static_cast<u64>(st.m_uWidth) * st.m_uHeight;
    if (uPixels > platform::g_uMaxImagePixels) return "too many pixels in a frame";
    m_uSumPixels += uPixels;
    if (IsAnimation()) m_texture.m_mapFrameDelay[m_uCounted] = st.m_uDelayMs;
    ++m_uCounted;
    const u64 uStored = static_cast<u64>(m_uWidth) * m_uHeight * m_uCounted;
    const bool bFits = std::max(uStored, m_uSumPixels) <= platform::g_uMaxImageSumPixels;
    return bFits ? nullptr : "too many pixels in all frames";
}

const char* CImageFrames::ReadAllFrames() {
    for (u32 i = 0; i < m_texture.m_uFileFrames && m_uCounted < g_uMaxTextureFrames; ++i) {
        m_vecFrames.push_back(ReadFrame(i));
        stFrame& st = m_vecFrames.back();
        if (!st.m_bReadable) continue;
        Place(st);
        m_texture.m_uSourceFormat = m_texture.m_uDecodeFormat = st.m_st.m_uFormat;
        if (const char* const szReason = Count(st)) return szReason;
    }
    return m_uCounted ? nullptr : "no frame can be read";
}

const char* CImageFrames::Measure(const stImageContainer& stContainer) {
    std::copy(stContainer.m_fBackground, stContainer.m_fBackground + 4, m_texture.m_fBackground);
    m_texture.m_uLoopCount = stContainer.m_uLoopCount;
    m_texture.m_bLoops = stContainer.m_uLoopCount != 0;
    const char* const szReason = TakeSize(stContainer);
    return szReason ? szReason : ReadAllFrames();
}

bool CImageFrames::CreateTexture() {
    const u32 uSource = m_texture.m_uSourceFormat;
    const bool bCreated = m_texture.m_fnCreate(m_uWidth, m_uHeight, uSource, m_uCounted, false) ||
                          (uSource == g_uFormatRGBA8 &&
                           m_texture.m_fnCreate(m_uWidth, m_uHeight, g_uFormatBGRA8, m_uCounted, false));
    m_texture.m_bSwapRB = bCreated && m_texture.m_uFormat != uSource;
    return bCreated;
}

u8* CImageFrames::Pixels(u32 uStored) const {
    u8* pPixels = nullptr;
    m_texture.m_fnGetLevel(&pPixels, uStored, 0);
    return pPixels;
}

bool CImageFrames::Compose() {
    m_texture.m_uStoredFrames = 0;
    m_texture.m_uDisposal = Keep; // nothing to undo yet
    if (!IsAnimation()) return ComposeStill();
    Paint(0);
    for (u32 i = 0; i < m_vecFrames.size() && m_texture.m_uStoredFrames < m_uCounted; ++i)
        AddFrame(m_vecFrames[i], i);
    const bool bAny = m_texture.m_uStoredFrames > 0;
    FinishRest();
    return bAny;
}

bool CImageFrames::ComposeStill() {
    m_texture.m_uFileFrameIndex = 1;
    m_texture.m_uDelayMs = m_vecFrames[0].m_uDelayMs;
    if (!DecodeOnto(m_vecFrames[0], 0, 0)) return false;
    m_texture.m_uStoredFrames = 1;
    return m_texture.m_fnUploadLevel(Pixels(0), 0, 0);
}

/// KEEP(profiles): restoring what was there before a frame counts as keeping it, and after an unknown way to
/// dispose of a frame the next one is left out.
void CImageFrames::AddFrame(const stFrame& st, u32 uFrame) {
    const u32 uUndo = m_texture.m_uDisposal, uStored = m_texture.m_uStoredFrames;
    m_texture.m_uFileFrameIndex = uFrame + 1;
    m_texture.m_uDelayMs = st.m_uDelayMs;
    m_texture.m_uDisposal = st.m_uDisposal;
    if (uUndo > Former) return;
    if (uUndo == Background)
        Paint(uStored);
    else if (uStored > 0)
        CopyFormer(uStored);
    if (!DecodeOnto(st, uFrame, uStored)) m_texture.m_uDelayMs = 0;
    if (m_texture.m_uDelayMs == 0) return;
    m_texture.m_fnUploadLevel(Pixels(uStored), uStored, 0);
    ++m_texture.m_uStoredFrames;
}

/// Frames that nothing was decoded for are clear; without an upload they would be drawn black.
void CImageFrames::FinishRest() {
    for (u32 i = m_texture.m_uStoredFrames; i < m_uCounted; ++i) {
        std::memset(Pixels(i), 0, m_texture.m_uFrameBytes);
        m_texture.m_fnUploadLevel(Pixels(i), i, 0);
    }
}

void CImageFrames::CopyFormer(u32 uStored) {
    std::memcpy(Pixels(uStored), Pixels(uStored - 1), m_texture.m_uFrameBytes);
}

void CImageFrames::Paint(u32 uStored) {
    if (m_texture.m_uBytesPerPixel != 4) return;
    u8 au8Color[4];
    for (u32 i = 0; i < 4; ++i) au8Color[i] = static_cast<u8>(m_texture.m_fBackground[i]);
    if (m_texture.m_bSwapRB && m_texture.m_uFormat == g_uFormatBGRA8) std::swap(au8Color[0], au8Color[2]);
    u8* const pPixels = Pixels(uStored);
    for (u32 u = 0; u < m_texture.m_uFrameBytes; u += 4) std::memcpy(pPixels + u, au8Color, 4);
}

bool CImageFrames::DecodeOnto(const stFrame& st, u32 uFrame, u32 uStored) {
    const u32 uBytes = g_fnBitsPerPixel(st.m_st.m_uFormat) / 8;
    if (!st.m_bReadable || uBytes != m_texture.m_uBytesPerPixel) return false;
    m_texture.m_uDecodeFormat = st.m_st.m_uFormat;
    std::vector<u8> vecPixels(static_cast<std::size_t>(st.m_uWidth) * st.m_uHeight * uBytes);
    if (!platform::CopyImageFrame(m_pDecoder, uFrame, st.m_uWidth, st.m_uHeight, vecPixels.data()))
        return false;
    Overlay(st, vecPixels.data(), Pixels(uStored));
    return true;
}

/// Clear pixels leave what is there, all others replace it. What lies outside the picture is dropped.
void CImageFrames::Overlay(const stFrame& st, const u8* pFrom, u8* pOnto) const {
    const u32 uBytes = m_texture.m_uBytesPerPixel;
    const u32 uRight = std::min<u64>(static_cast<u64>(st.m_uLeft) + st.m_uWidth, m_uWidth),
              uBottom = std::min<u64>(static_cast<u64>(st.m_uTop) + st.m_uHeight, m_uHeight);
    for (u32 y = st.m_uTop; y < uBottom; ++y) {
        const u8* p = pFrom + static_cast<std::size_t>(y - st.m_uTop) * st.m_uWidth * uBytes;
        u8* pOut = pOnto + (static_cast<std::size_t>(y) * m_uWidth + st.m_uLeft) * uBytes;
        for (u32 x = st.m_uLeft; x < uRight; ++x, p += uBytes, pOut += uBytes) {
            if (uBytes == 4 && p[3] == 0) continue;
            std::memcpy(pOut, p, uBytes);
            if (uBytes == 4 && m_texture.m_bSwapRB) std::swap(pOut[0], pOut[2]);
        }
    }
}
