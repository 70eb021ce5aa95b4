#pragma once
// A coloured shape without content: a plain rectangle, a hollow frame, or a frame with corner squares. How it
// reaches the screen (flat or frosted) is decided by its draw key alone.
#include "controls/control.h"
#include "draw/entity.h"
#include "draw/shape_meshes.h"

#include <memory>

/// Shape codes.
constexpr u32 g_uShapeRect = 0, g_uShapeFrame = 1, g_uShapeBorder = 2;
/// Panel types: no pixel, flat translucent colour, frosted glass. Any other value acts as the first.
constexpr u32 PANEL_TYPE_INVISIBLE = 0, PANEL_TYPE_GELLOPHANE = 1, PANEL_TYPE_FROSTED = 2;

class CPanel_Base : public virtual CControl {
  public:
    CPanel_Base();

    virtual void m_fnReserved0();
    virtual void m_fnReserved1();
    virtual bool m_fnCreateEntity();
    /// Makes the builders of the shape; false for an unknown shape code.
    virtual bool m_fnCreateShape();
    /// Builds geometry from the stored sizes.
    virtual bool m_fnBuildShape();
    /// Components 0 to 1.
    virtual void m_fnSetColorF(f32 r, f32 g, f32 b, f32 a);
    virtual void m_fnSetColorB(u8 r, u8 g, u8 b, u8 a);
    /// To be called before m_fnCreateShape.
    virtual void m_fnSetShape(u32 uShape);
    /// Passes between frame and frame with corners; a rectangle stays one.
    virtual void m_fnSetCorners(bool bCorners);
    /// uRGB is 0xRRGGBB.
    virtual void m_fnSetColor(u32 uRGB, u8 a);
    /// Size, outset, ring thickness and corner side, canvas units; rebuilds what was built.
    virtual void m_fnSetGeometry5(f32 w, f32 h, f32 e, f32 t, f32 c);
    virtual void m_fnSetGeometry4(f32 w, f32 h, f32 e, f32 t);
    virtual void m_fnSetGeometry(f32 w, f32 h);
    virtual void m_fnSetRectOutset(f32 e);
    /// Stores only; the caller attaches the panel afterwards.
    virtual void m_fnSetDrawKey(const void* pKey);
    virtual void m_fnDrawPanel(CDraw_Base* pBatcher, const f32* pWorld, const f32* pColor);
    virtual void m_fnRelease();
    virtual ~CPanel_Base();

    void m_fnOnMoved() override;
    const void* m_fnGetDrawKey() override;
    void m_fnRender(CDraw_Base* pBatcher) override;

    /// Entity, builders and geometry, in this order; at once true where nothing is to be drawn.
    bool m_fnInitialize();

    std::unique_ptr<f32[]> m_pVertices; ///< never allocated here
    std::unique_ptr<u16[]> m_pIndices;  ///< never allocated here
    u32 m_uShape;
    f32 m_fPanelW, m_fPanelH;
    f32 m_fOutset;
    f32 m_fThickness;
    f32 m_fCornerSize;
    f32 m_fRectOutset;
    f32 m_afColor[4];
    std::unique_ptr<CEntity_Base> m_pEntity;
    std::unique_ptr<CRect_Mesh_Base> m_pRectMesh;
    std::unique_ptr<CFrame_Mesh_Base> m_pFrameMesh;
    std::unique_ptr<CBorder_Mesh_Base> m_pBorderMesh;
    bool m_bCorners;
    const void* m_pDrawKey;
};
