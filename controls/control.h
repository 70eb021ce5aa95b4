#pragma once
// What every on-screen control shares: a place on the canvas, a size, a kind letter, a slot in a merged
// vertex stream, and the operations through which manager and batchers handle a control without knowing its
// kind.
#include "draw/aligned_allocation.h"
#include "platform/types.h"

class CDraw_Base;

/// What m_fnApplyRect reads: an anchor code with its offset, and a size, in canvas units.
struct stControlRect {
    i32 code;
    f32 x, y, w, h;
};

/// Kind letters; kinds that draw no text keep 0.
constexpr u32 g_uTypeTextBox = 'T', g_uTypeNumBox = 'N', g_uTypeFlipBox = 'F';

/// Counts what changes the pictures of controls, and what changes the lists by which they are drawn. A
/// batcher that keeps what it draws looks at its controls when one of them has moved on.
extern u32 g_uControlChanges, g_uDrawListChanges;

/// Base of all controls; each kind derives from it virtually. Coordinates are canvas units, origin top left,
/// y down. It draws nothing and owns nothing. Only the manager destroys controls, through the kind's own base
/// class, so the destructor here is neither public nor virtual. Render thread only.
class CControl : public CAlignedAllocationPolicy<int, 16> {
  public:
    CControl();
    CControl(const CControl&) = delete;
    CControl& operator=(const CControl&) = delete;

    /// Bytes this control takes in a merged stream; 0 outside one.
    virtual u32 m_fnGetVertexBytes();
    virtual u32 m_fnGetIndexBytes();
    virtual void m_fnSetVertexBase(u32 uBase);
    virtual void m_fnSetIndexBase(u32 uBase);
    /// Null for a control without a merged stream.
    virtual void* m_fnGetVertexData();
    virtual void* m_fnGetIndexData();
    /// Kind letter, or 0.
    virtual u32 m_fnGetType();
    /// The position has changed; controls with an entity pass it on.
    virtual void m_fnOnMoved();
    virtual void m_fnApplyRect(const stControlRect& stRect);
    virtual void m_fnSetAutoSize(bool bAutoSize);
    virtual bool m_fnGetAutoSize();
    /// Places the control by hand: anchor code 1 at offset (x, y). Children are left where they are.
    virtual void m_fnSetPosition(f32 x, f32 y, f32 z);
    /// Each pointer of the three getters may be null.
    virtual void m_fnGetPosition(f32* pX, f32* pY, f32* pZ);
    /// Moves the control and re-places its whole subtree, whether or not the position differs.
    virtual void m_fnMoveTo(f32 x, f32 y, f32 z);
    virtual void m_fnGetAnchor(i32* pCode, f32* pX, f32* pY);
    /// Stores code and offset; re-places the control, if it stands in the tree, also without a difference.
    virtual void m_fnSetAnchor(i32 iCode, f32 x, f32 y);
    /// A control that is not renderable takes part in layout only.
    virtual void m_fnSetRenderable(bool bRenderable);
    virtual bool m_fnIsRenderable();
    /// Computes the position from anchor and size against the parent; null stands for the canvas. z becomes
    /// 0.
    virtual void m_fnResolvePosition(CControl* pParent);
    /// Key under which the manager groups this control for drawing; null while it has none.
    virtual const void* m_fnGetDrawKey();
    /// A new size re-places the control; an equal one does nothing.
    virtual void m_fnSetSize(f32 w, f32 h);
    virtual void m_fnGetSize(f32* pW, f32* pH);
    /// Draws through the batcher of the running pass.
    virtual void m_fnRender(CDraw_Base* pBatcher);

    /// Called by whatever changes how the control looks or where it stands.
    void m_fnNoteChange() noexcept {
        m_bChanged = true;
        ++g_uControlChanges;
    }

    f32 m_fPosX, m_fPosY, m_fPosZ;
    f32 m_fAnchorX, m_fAnchorY;
    bool m_bAutoSize;
    f32 m_fSizeW, m_fSizeH;
    i32 m_iAnchorCode;
    bool m_bRenderable;
    u32 m_uVertexBytes, m_uIndexBytes;
    u32 m_uVertexBase, m_uIndexBase;
    u32 m_uType;
    bool m_bChanged; ///< since a batcher that keeps what it draws last looked

  protected:
    ~CControl() = default;
};
