#include "merged/merged_stream.h"

#include "base/host_care.h"
#include "draw/left_names.h"
#include "draw/saved_state.h"
#include "platform/gl_api.h"

#include <cstring>

void CMergedStream::m_fnReserve(u32 uVertices, u32 uIndices) {
    const std::size_t uFloats = std::size_t{uVertices} * m_uVertexFloats;
    if (uFloats > m_aVertices.size()) m_aVertices.resize(uFloats + uFloats / 4);
    if (uIndices > m_aIndices.size()) m_aIndices.resize(std::size_t{uIndices} + uIndices / 4);
}

void CMergedStream::m_fnPutVertex(u32 uVertex, const f32* pFloats) noexcept {
    const u32 uAt = uVertex * m_uVertexFloats;
    const std::size_t uBytes = m_uVertexFloats * sizeof(f32);
    if (std::memcmp(&m_aVertices[uAt], pFloats, uBytes) == 0) return;
    std::memcpy(&m_aVertices[uAt], pFloats, uBytes);
    for (stBuffers& st : m_astBuffers) st.stVertices.Add(uAt, uAt + m_uVertexFloats);
    m_bChanged = true;
}

void CMergedStream::m_fnPutIndex(u32 uAt, u32 uVertex) noexcept {
    if (m_aIndices[uAt] == uVertex) return;
    m_aIndices[uAt] = uVertex;
    for (stBuffers& st : m_astBuffers) st.stIndices.Add(uAt, uAt + 1);
    m_bChanged = true;
}

static void EnableAttribute(u32 uIndex, GLint iComponents, u32 uVertexFloats, u32 uFirstFloat) {
    glEnableVertexAttribArray(uIndex);
    glVertexAttribPointer(uIndex, iComponents, GL_FLOAT, GL_FALSE,
                          static_cast<GLsizei>(uVertexFloats * sizeof(f32)),
                          reinterpret_cast<const void*>(std::uintptr_t{uFirstFloat} * sizeof(f32)));
}

/// Leaves the new array and its buffers bound.
void CMergedStream::MakeObjects(stBuffers& st) const {
    glGenVertexArrays(1, &st.uVertexArray);
    glGenBuffers(1, &st.uVertexBuffer);
    glGenBuffers(1, &st.uIndexBuffer);
    glBindVertexArray(st.uVertexArray);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, st.uIndexBuffer);
    glBindBuffer(GL_ARRAY_BUFFER, st.uVertexBuffer);
    EnableAttribute(0, 4, m_uVertexFloats, g_uMergedPlace);
    EnableAttribute(1, 4, m_uVertexFloats, g_uMergedTint);
    EnableAttribute(2, 2, m_uVertexFloats, g_uMergedTexture);
    if (m_uVertexFloats > g_uMergedColor) EnableAttribute(3, 4, m_uVertexFloats, g_uMergedColor);
}

/// The buffer of the target is bound. One that is too small is made anew, and then takes all there is.
template <class Value>
static void Fill(GLenum eTarget, const std::vector<Value>& aValues, std::size_t& uRoom, stChangedRange& st) {
    const std::size_t uBytes = aValues.size() * sizeof(Value);
    if (uBytes > uRoom) {
        glBufferData(eTarget, static_cast<GLsizeiptr>(uBytes), aValues.data(), GL_DYNAMIC_DRAW);
        uRoom = uBytes;
    } else if (st.uFrom < st.uTo) {
        glBufferSubData(eTarget, static_cast<GLintptr>(st.uFrom * sizeof(Value)),
                        static_cast<GLsizeiptr>((st.uTo - st.uFrom) * sizeof(Value)), &aValues[st.uFrom]);
    }
    st = {};
}

void CMergedStream::Upload(stBuffers& st) const {
    if (st.uVertexArray == 0) {
        MakeObjects(st);
    } else {
        glBindVertexArray(st.uVertexArray);
        glBindBuffer(GL_ARRAY_BUFFER, st.uVertexBuffer);
    }
    Fill(GL_ARRAY_BUFFER, m_aVertices, st.uVertexRoom, st.stVertices);
    // The array brings its index buffer along.
    Fill(GL_ELEMENT_ARRAY_BUFFER, m_aIndices, st.uIndexRoom, st.stIndices);
}

void CMergedStream::m_fnBind() {
    if (!m_bChanged) {
        glBindVertexArray(m_astBuffers[m_uCurrent].uVertexArray);
        return;
    }
    m_uCurrent = (m_uCurrent + 1) % s_uBuffers;
    Upload(m_astBuffers[m_uCurrent]);
    m_bChanged = false;
}

void CMergedStream::m_fnRelease() {
    for (stBuffers& st : m_astBuffers) {
        if (st.uVertexArray != 0) {
            const GLuint auBuffers[] = {st.uVertexBuffer, st.uIndexBuffer};
            g_fnDeleteNames(NAMES_BUFFERS, 2, auBuffers);
            g_fnDeleteName(NAMES_VERTEX_ARRAYS, st.uVertexArray);
        }
        st = {};
    }
    m_bChanged = true;
}

void g_fnActivateMergedUnit() {
    if (!g_stHostCare.bOuterGuard) glActiveTexture(GL_TEXTURE0);
}

void g_fnUnbindMergedStream() {
    if (!g_stHostCare.bOuterGuard) glBindVertexArray(GLSavedState.TemporaryVertexArray);
}
