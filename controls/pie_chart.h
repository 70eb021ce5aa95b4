#pragma once
// One value as the filled share of a round gauge made of separate slots. The mesh is built once; a value only
// changes how many indices are drawn.
#include "controls/control.h"
#include "controls/shape_parts.h"

#include <memory>

/// Shapes: a fan from the centre, a ring.
constexpr u32 PIECHART_TYPE_FAN = 0, PIECHART_TYPE_RING = 1;

/// Outline of a gauge: box in canvas units, angles in degrees (0 points right, positive turns
/// counter-clockwise on the screen).
struct stPieShape {
    f32 w, h;
    bool bClockwise; ///< with two different angles: the other part of the circle, not the other direction
    f32 fStartDeg, fEndDeg; ///< equal: the whole circle
    u32 uSlots, uSegs;      ///< segments in each slot
    f32 fSlotFill;          ///< share of a slot's arc that is drawn, 0 to 1
};

/// Point relative to the centre of the box.
struct stPiePoint {
    f32 x, y;
};

/// Writes (uSegs + 1) * uSlots points of the outline, slot after slot. A box that isn't square gives an
/// ellipse.
void g_fnPieSamples(const stPieShape& stShape, stPiePoint* pOut);

/// Lengths in canvas units; the origin is the chart's top-left corner, y grows downward. All but value,
/// colour and draw key are to be set before m_fnInitialize. Render thread only.
class CPieChart_Base : public virtual CControl, public CShapeParts {
  public:
    CPieChart_Base();

    /// False for want of memory and above 65536 vertices: an index has 16 bits.
    virtual bool m_fnAllocBuffers();
    /// Writes vertices and indices. False for an unknown type.
    virtual bool m_fnBuildChart();
    virtual bool m_fnBuildFan();
    virtual bool m_fnBuildRing();
    virtual bool m_fnCreateEntity();
    virtual bool m_fnCreateMesh();
    virtual void m_fnUploadMesh();
    virtual void m_fnSetChartType(u32 uChartType);
    /// 0 counts as 1.
    virtual void m_fnSetSlotNum(u32 uSlotNum);
    /// Straight segments of a slot; 0 counts as 3.
    virtual void m_fnSetShapeSegNum(u32 uShapeSegNum);
    /// Percent; 0 counts as 1, above 100 as 100.
    virtual void m_fnSetSlotFillRatio(u32 uPercent);
    /// Inner radius of the ring in percent of the outer, with the same limits.
    virtual void m_fnSetChartFillRatio(u32 uPercent);
    /// Degrees; below 0 and from 360 up count as 0.
    virtual void m_fnSetStartDeg(f32 fDegrees);
    virtual void m_fnSetEndDeg(f32 fDegrees);
    /// Anything but 0 is clockwise.
    virtual void m_fnSetClockwise(u32 bClockwise);
    /// Values of the empty and of the full gauge, in either order.
    virtual void m_fnSetRange(f32 fMin, f32 fMax);
    /// Shows the first slots, as many as the value fills whole.
    virtual void m_fnSetValue(f32 fValue);
#include "controls/color_slots.inc"
    /// Moves the centre within the box.
    virtual void m_fnSetOffset(f32 x, f32 y);
    virtual void m_fnSetChartSize(f32 w, f32 h);
    /// Stores only; the caller attaches the chart afterwards.
    virtual void m_fnSetDrawKey(const void* pKey);
    /// World matrix of 16 floats, colour of 4.
    virtual void m_fnDrawChart(CDraw_Base* pBatcher, const f32* pWorld, const f32* pColor);
    virtual void m_fnRelease();
    virtual ~CPieChart_Base();

    void m_fnOnMoved() override;
    const void* m_fnGetDrawKey() override;
    void m_fnRender(CDraw_Base* pBatcher) override;

    /// Buffers, geometry, entity, mesh and upload, in this order; at once true where nothing is to be drawn.
    bool m_fnInitialize();

    u32 m_uShapeSegNum;
    u32 m_uSlotNum;
    f32 m_fSlotFillRatio;
    f32 m_fChartFillRatio;
    f32 m_fValue;
    f32 m_fFilled; ///< the value as a share, 0 to 1
    u32 m_uDrawIndexCount;
    f32 m_fRange; ///< m_fMax - m_fMin
    f32 m_fMin, m_fMax;
    f32 m_fStartDeg, m_fEndDeg;
    f32 m_fOffsetX, m_fOffsetY;
    f32 m_fChartW, m_fChartH;
    u32 m_bClockwise;
    u32 m_uChartType;

  private:
    std::unique_ptr<stPiePoint[]> m_fnSampleOutline() const;
    stShapeVertex m_fnVertexAt(const stPiePoint& stPoint, f32 fScale) const;
};
