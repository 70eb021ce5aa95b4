#pragma once
// Mesh of the merged flavour: it owns no buffer of the API. What it is asked to draw goes to the batcher that
// walks its control at that moment, which copies it to where all geometry of a pass lies together.
#include "draw/mesh.h"

#include <memory>

class CMesh_Merged;

/// Takes the draws of the meshes of a control.
class CMergedSink {
  public:
    /// Triangles of uCount indices from index uFirst on.
    virtual void m_fnTakeDraw(const CMesh_Merged& mesh, u32 uCount, u32 uFirst) = 0;
    /// True while what is taken goes on to the driver, with the texture that is bound.
    virtual bool m_fnIsDrawing() const { return false; }
    /// The control that is asked has a picture, whether or not anything of it is seen.
    virtual void m_fnNotePicture() {}

  protected:
    ~CMergedSink() = default;
};

/// Where draws go; null while no batcher walks. Render thread only.
extern CMergedSink* g_pMergedSink;

/// Keeps what was uploaded where indices have 16 bits. Indices of 32 bits are those of text, whose quads the
/// text batcher takes from the control itself: a copy of them would double what number boxes hold.
class CMesh_Merged final : public CMesh_Base {
  public:
    bool m_fnCreate(u32 uStride, u32 uVertexBytes, u32 uIndexBytes, u8 u8IndexSize) override;
    bool m_fnUpload(const void* pVertices, const void* pIndices) override;
    void m_fnDraw(u32 uIndexCount, u32 uFirstIndex, u32 uIgnored) override;
    void m_fnRelease() override;

    std::unique_ptr<u8[]> m_pVertices; ///< null before the first upload
    std::unique_ptr<u8[]> m_pIndices;

  private:
    bool m_bVertices = false, m_bIndices = false;
};

/// Entry of the creation table; null when out of memory.
CMesh_Base* CreateMesh_Merged();
