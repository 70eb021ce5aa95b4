#pragma once
// Vertices and indices of everything that a batcher draws, in memory and in buffers of the driver. Only what
// has changed goes to the driver, and never into a buffer that it may still be reading: there are three,
// which take turns whenever something changes.
#include "platform/types.h"

#include <vector>

/// Attributes of the merged programs, by the numbers that their sources give them, as floats of a vertex.
/// Text has all of them; shapes end before the last.
constexpr u32 g_uMergedPlace = 0, g_uMergedTint = 4, g_uMergedTexture = 8, g_uMergedColor = 10;
constexpr u32 g_uMergedShapeFloats = 10, g_uMergedTextFloats = 14;

/// From the first changed element to behind the last one.
struct stChangedRange {
    u32 uFrom = 0xFFFFFFFF, uTo = 0;
    void Add(u32 uFirst, u32 uEnd) noexcept {
        if (uFirst < uFrom) uFrom = uFirst;
        if (uEnd > uTo) uTo = uEnd;
    }
};

/// Vertices of one size, and 32-bit indices. Bind and release need the context current.
class CMergedStream {
  public:
    explicit CMergedStream(u32 uVertexFloats) noexcept : m_uVertexFloats(uVertexFloats) {}
    CMergedStream(const CMergedStream&) = delete;
    CMergedStream& operator=(const CMergedStream&) = delete;
    ~CMergedStream() { m_fnRelease(); }

    /// Room for at least these; what is written stays. Throws std::bad_alloc.
    void m_fnReserve(u32 uVertices, u32 uIndices);
    /// Both must lie within the room. A value that stands there already is no change.
    void m_fnPutVertex(u32 uVertex, const f32* pFloats) noexcept;
    void m_fnPutIndex(u32 uAt, u32 uVertex) noexcept;
    /// Hands changes to the driver and makes vertices and indices those of the next draws.
    void m_fnBind();
    /// Gives the driver's objects back; vertices and indices stay.
    void m_fnRelease();

  private:
    struct stBuffers {
        u32 uVertexArray = 0, uVertexBuffer = 0, uIndexBuffer = 0;
        std::size_t uVertexRoom = 0, uIndexRoom = 0; ///< bytes
        stChangedRange stVertices, stIndices; ///< since this one was last in use; in floats, in indices
    };
    void MakeObjects(stBuffers& st) const;
    void Upload(stBuffers& st) const;

    static constexpr u32 s_uBuffers = 3;
    const u32 m_uVertexFloats;
    std::vector<f32> m_aVertices;
    std::vector<u32> m_aIndices;
    stBuffers m_astBuffers[s_uBuffers];
    u32 m_uCurrent = 0;
    bool m_bChanged = true;
};

/// Ahead of the draws of a batcher with textures: the unit that they are bound on.
void g_fnActivateMergedUnit();
/// After the last draw: the array that the state guard bound. The other guard gives back whatever is bound.
void g_fnUnbindMergedStream();
