#pragma once
// Recent history of one value, newest on the right. Samples live in a ring; vertices live in one array that
// is shifted and extended by one column a sample, so a sample costs one pass, one upload and no memory.
#include "controls/control.h"
#include "draw/entity.h"
#include "draw/mesh.h"
#include "draw/shape_meshes.h"

#include <memory>

/// Looks: a mitred line, the area below the curve, a column between each sample and the one before, a bar
/// from the value to the bottom.
constexpr u32 LINEGRAPH_TYPE_CLASSIC = 0, LINEGRAPH_TYPE_MOUNTAIN = 1, LINEGRAPH_TYPE_STAIR = 2,
              LINEGRAPH_TYPE_BAR = 3;

/// Lengths in canvas units; the origin is the graph's top-left corner, y grows downward. It has no clock: the
/// time axis is the interval at which it is fed. Render thread only.
class CLineGraph_Base : public virtual CControl {
  public:
    CLineGraph_Base();

    /// Arrays and rings for the stored type, columns and size. False for want of memory, above 65536 vertices
    /// (an index has 16 bits), and where the type was set after the number of columns and doesn't fit it.
    virtual bool m_fnAllocBuffers();
    /// Writes the newest sample's column. False for an unknown type; without samples nothing is written.
    virtual bool m_fnAppendColumn();
    virtual bool m_fnAppendClassic();
    virtual bool m_fnAppendMountain();
    virtual bool m_fnAppendStair();
    virtual bool m_fnAppendBar();
    virtual bool m_fnCreateEntity();
    virtual bool m_fnCreateMesh();
    virtual void m_fnUploadAll();
    virtual void m_fnUploadVertices();
    /// To be called before m_fnSetDataNum. A graph that has its buffers loses them and its history.
    virtual void m_fnSetLineType(u32 uLineType);
    /// Columns; below 2 counts as 2, though the ring follows the number as given. A graph that has its
    /// buffers loses them and its history.
    virtual void m_fnSetDataNum(u32 uDataNum);
    /// Where the graph begins: the first sample stands in column i, counted from 0.
    virtual void m_fnSetDataStartIdx(u32 uIndex);
    /// Values at the bottom and the top, in either order.
    virtual void m_fnSetRange(f32 fMin, f32 fMax);
    /// Takes one sample; out of range it sticks to the edge. Does nothing before m_fnAllocBuffers.
    virtual void m_fnAddValue(f32 fValue);
    /// Makes room for the newest column.
    virtual void m_fnScroll(bool bRingWasFull, bool bRingIsFull, bool bAtLastColumn);
    /// Components 0 to 1.
    virtual void m_fnSetColorF(f32 r, f32 g, f32 b, f32 a);
    virtual void m_fnSetColorB(u8 r, u8 g, u8 b, u8 a);
    /// uRGB is 0xRRGGBB.
    virtual void m_fnSetColor(u32 uRGB, u8 a);
    /// y moves the samples to come, not the ones there are; x is stored only.
    virtual void m_fnSetOffset(f32 x, f32 y);
    virtual void m_fnSetGraphSize(f32 w, f32 h);
    /// Thickness of a line, width of a bar.
    virtual void m_fnSetDataWidth(f32 fWidth);
    /// Stores only; the caller attaches the graph afterwards.
    virtual void m_fnSetDrawKey(const void* pKey);
    /// World matrix of 16 floats, colour of 4.
    virtual void m_fnDrawGraph(CDraw_Base* pBatcher, const f32* pWorld, const f32* pColor);
    virtual void m_fnRelease();
    virtual ~CLineGraph_Base();

    void m_fnOnMoved() override;
    const void* m_fnGetDrawKey() override;
    void m_fnRender(CDraw_Base* pBatcher) override;

    /// Buffers, entity, mesh and first upload, in this order; at once true where nothing is to be drawn.
    bool m_fnInitialize();

    stShapeVertex* m_pDataVertices; ///< behind the guide lines in m_pVertices
    u16* m_pDataIndices;
    std::unique_ptr<stShapeVertex[]> m_pVertices;
    std::unique_ptr<u16[]> m_pIndices;
    f32 m_afColor[4];
    std::unique_ptr<CEntity_Base> m_pEntity;
    std::unique_ptr<CMesh_Base> m_pMesh;
    u32 m_uRingSize;                     ///< most samples kept
    u32 m_uDataNum;                      ///< columns, at least 2
    std::unique_ptr<f32[]> m_pRawValues; ///< ring of the samples as given
    std::unique_ptr<f32[]> m_pPixelY;    ///< of each sample, y on the graph
    f32 m_fDataWidth, m_fHalfWidth;
    u32 m_uDrawIndexCount;
    u32 m_uDataStartIdx;
    i32 m_iColumn;      ///< of the newest sample; before the first one, the column to its left
    u32 m_uHead;        ///< ring place of the newest sample
    u32 m_uSampleCount; ///< samples in the ring
    f32 m_fRange;       ///< m_fMax - m_fMin
    f32 m_fMin, m_fMax; ///< value at the bottom and at the top
    f32 m_fOffsetX, m_fOffsetY;
    f32 m_fGraphW, m_fGraphH;
    f32 m_fColumnStep; ///< m_fGraphW / m_uDataNum
    const void* m_pDrawKey;
    u32 m_uLineType;
    /// A lead-in of guide lines in the same arrays. Nothing sets these: it is always empty.
    u32 m_uGridLines, m_uGridVertices, m_uGridIndices;

  private:
    void m_fnDropData();
    f32 m_fnColumnX(i64 iColumn) const;
    f32 m_fnRecentY(u32 uBack) const;
    void m_fnPlotPair(u32 uPair, f32 x, f32 y, f32 fOffX, f32 fOffY);
    void m_fnPlotQuad(u32 uQuad, f32 x, f32 fUpperY, f32 fLowerY);
    void m_fnPlotEnd(u32 uPair, u32 uBack);
    void m_fnPlotJoin();
    void m_fnScrollClassic(bool bRingWasFull, bool bAtLastColumn);
    void m_fnScrollMountain(bool bRingWasFull, bool bAtLastColumn);
    void m_fnScrollQuads(u32 uOpenQuads, bool bRingWasFull, bool bAtLastColumn);
};
