#pragma once
// A font as an atlas: a square grid of cells in one picture of a byte a pixel, with a table from code point
// to cell and metrics. Cells are given out in order of first use, at any time, so that a text nobody foresaw
// shows too.
#include "font/packed_pixels.h"
#include "platform/glyph_rasterizer.h"
#include "platform/types.h"

#include <cstdio>
#include <map>
#include <set>
#include <string>
#include <vector>

/// What is known of one glyph. Lengths are in multiples of the font's nominal size. Also a record of font
/// cache files.
struct stFontChar {
    u32 m_u32_Char_UTF32_LE; ///< code point, 0: free
    u32 m_uCharAge;
    f32 m_fYOffset; ///< lower edge below the baseline
    f32 m_fTexX;    ///< left edge of the cell, of the atlas
    f32 m_fTexY;    ///< upper edge
    f32 m_fTexZ;    ///< always 0
    f32 m_fWScale;  ///< advance, a pixel more
    f32 m_fHScale;  ///< height of the ink, a pixel more
};
static_assert(sizeof(stFontChar) == 32, "the record of font cache files");

/// A file in memory as it is read: bytes from m_uPosition on are to come.
struct stMemoryStream {
    const u8* m_pData;
    u32 m_uSize;
    u32 m_uPosition;
};

/// Scale of a face in percent, by exact name: what the profile's variables say.
extern std::map<std::u16string, i32> g_mapFontScalePercent;

/// Life: m_fnSetLayout, m_fnSetTexSize, m_fnSetFontName, m_fnSetFontWeight, m_fnInitialize, then glyphs. No
/// operation fails hard before m_fnInitialize; there just are no glyphs. Render thread only; the operations
/// of flavours need the context current.
class CFontUniCode {
  public:
    CFontUniCode() = default;
    CFontUniCode(const CFontUniCode&) = delete;
    CFontUniCode& operator=(const CFontUniCode&) = delete;

    /// Cells across and down; layers is 0. Call m_fnSetTexSize after it. Another layout drops all glyphs.
    void m_fnSetLayout(u32 uWidth, u32 uHeight, u32 uLayers);

    /// Makes each missing buffer. False for sizes of 0 or beyond 31 bits, or without memory.
    virtual bool m_fnAllocBuffers();
    /// Replaces *ppFont by a font of a nominal size in points at 96 dots per inch; a null name stands for the
    /// default face. False if there is none.
    virtual bool m_fnCreateGdiFont(platform::GlyphFont** ppFont, u32 uSize, const char16_t* wzName);
    virtual bool m_fnCreateTexture();
    /// As m_fnUploadAtlas; the levels are ignored.
    virtual bool m_fnUploadAtlasAll(const u8* const* ppLevels);
    /// Hands the atlas with a fresh chain of levels over to the flavour.
    virtual bool m_fnUploadAtlas();
    /// Copies the glyph buffer to cell column *pX, row *pY, and uploads unless a batch is running. False for
    /// a cell outside the atlas.
    virtual bool m_fnPutCharBuffInCell(u32 uCode, f32* pX, f32* pY, f32* pZ);
    /// Column, row and 2 to the power of the layer of a code's cell, which gets one if it has none; all -1
    /// when the atlas is full.
    virtual void m_fnAddChar(u32 uCode, f32* pX, f32* pY, f32* pZ);
    /// Index of a code's record, -1 if it has none.
    virtual i32 m_fnFindChar(u32 uCode);
    /// Makes buffers, fonts and the texture. From a file the blanks and the calibration stay out, since the
    /// file brings them. False if there is nothing to draw into.
    virtual bool m_fnInitialize(bool bFromFile);
    virtual void m_fnAddSpaces();
    virtual void m_fnMeasureDescent();
    /// Looks for the size at which the block glyph fills a nominal size, for the writer of cache files.
    virtual void m_fnCalibrate();
    /// Size of the atlas in pixels. The rest follows: cell, nominal size (half a cell), baseline. Another
    /// size drops all glyphs.
    virtual void m_fnSetTexSize(u32 uWidth, u32 uHeight);
    virtual void m_fnGetTexSize(u32* puWidth, u32* puHeight);
    virtual void m_fnGetInvTexSize(f32* pX, f32* pY);
    virtual void m_fnBindTexture(u32 uUnit);
    /// Null gives an empty name.
    virtual void m_fnSetFontName(const char16_t* wzName);
    virtual void m_fnGetFontName(std::u16string* pOut);
    /// Held to 0..1000.
    virtual void m_fnSetFontWeight(i32 iWeight);
    /// Values not above 0 are ignored.
    virtual void m_fnSetScale(f32 fScale);
    virtual f32 m_fnGetScale();
    /// Sizes in multiples of the nominal size: the record's, or for a code without one those of its ink.
    virtual void m_fnGetCharSize(u32 uCode, f32* pW, f32* pH);
    /// All there is to lay out a glyph, which is added if it has to be: left and upper edge (x, y) and right
    /// and lower edge (xr, yb) in the atlas, 0 to 1; the rest as in the record. Each pointer may be null.
    /// False if the atlas is full.
    virtual bool m_fnGetCharInfo(u32 uCode, f32* pX, f32* pY, f32* pZ, f32* pXR, f32* pYB, f32* pYOff,
                                 f32* pW, f32* pH);
    /// Frees everything; flavours override it to give back their texture and leave the rest.
    virtual void m_fnRelease();
    virtual ~CFontUniCode();
    // Font cache files; see font/font_file.h.
    /// Writes a font that has its glyphs. False without buffers or if the file does not take all.
    virtual bool m_fnSaveToStream(std::FILE* pFile);
    virtual bool m_fnSaveToFile(const char16_t* wzPath);
    virtual bool m_fnSaveToFileA(const char* szPath);
    /// Bytes of the file without the 64 of the blanks' records.
    virtual u32 m_fnGetFileSize();
    /// Takes everything over from a file, from its beginning on: sizes, name, metrics, glyphs and atlas.
    /// False for a file that no font can be made of; the font is then to be set up anew. Pixels that are
    /// missing are black.
    virtual bool m_fnLoadFromMemory(stMemoryStream* pStream);
    /// m_fnLoadFromMemory for a file whose header and records are in memory and whose picture is read on the
    /// way, a piece at a time: of the rest of the file nothing is read.
    bool m_fnLoadFromOpenFile(stMemoryStream* pHead, std::FILE* pPicture);
    /// For makers of files: m_fnLoadFromMemory from where the stream stands, with a report in the log and a
    /// bitmap of the atlas, "FACE-WEIGHT-WxH.bmp", in the working directory. The blanks are left out.
    virtual bool m_fnLoadFromStream(std::FILE* pFile);
    virtual bool m_fnLoadFromFile(const char16_t* wzPath);
    virtual bool m_fnLoadFromFileA(const char* szPath);
    /// Writes the atlas as a bitmap of four equal bytes a pixel into the working directory, named
    /// "PREFIX-FACE-WxH.bmp", without a prefix (null or empty) "FACE-WxH.bmp".
    virtual bool m_fnExportAtlas(const char16_t* wzPrefix);
    /// Looks whether a file holds what its header says: one of eFontFileCheck. With a text also whether it
    /// has a cell that the text does not need.
    virtual i32 m_fnCheckMemoryFile(stMemoryStream* pStream, const char16_t* wzRequired);
    /// Draws a code, measures it, fills its record if it has one, and leaves the glyph in the glyph buffer.
    virtual void m_fnRasterizeChar(u32 uCode);
    /// Clears the canvas and draws a text into it.
    virtual void m_fnDrawString(const char16_t* wzText, platform::GlyphFont* pFont);
    virtual void m_fnDrawChar(u32 uCode, platform::GlyphFont* pFont);
    /// Draws over what is in the bitmap, and takes its pixels as they are.
    virtual void m_fnDrawCharRaw(u32 uCode, platform::GlyphFont* pFont);
    virtual void m_fnDrawCharMain(u32 uCode);
    /// Writes the canvas (0) or the glyph buffer (any other) to the log, a line a row.
    virtual void m_fnDumpBuffer(u32 uWhich);
    virtual void m_fnDumpCanvas();
    virtual void m_fnDumpCharBuff();
    virtual void m_fnDumpCell(u32 uIndex);
    /// Size of a code's ink, in pixels.
    virtual void m_fnMeasureChar(u32 uCode, i32* piW, i32* piH);
    /// Width of a blank between two letters, in multiples of the nominal size.
    virtual void m_fnMeasureSpace(f32* pOut);
    /// Smallest box around the canvas's ink. Without ink: the last pixel, with 2 less a side as its size.
    virtual void m_fnInkBox(i32* piLeft, i32* piTop, i32* piW, i32* piH);
    /// Columns between the first two runs of inked columns; 0 without two.
    virtual void m_fnInkGap(i32* piOut);
    virtual void m_fnCanvasToCharBuffCentred(i32 iX, i32 iY, i32 iW, i32 iH);
    /// To the top left. A box that is not inside the canvas leaves the glyph buffer empty.
    virtual void m_fnCanvasToCharBuff(i32 iX, i32 iY, i32 iW, i32 iH);
    virtual void m_fnClearCharBuff();

    /// Gives back what only drawing needs; the next glyph takes it again. Canvas and glyph buffer may be
    /// blank after it.
    void m_fnRest() noexcept;
    /// Packs the atlas, which is looked at again only for a glyph that comes in later. m_fnTakeAtlas comes
    /// ahead of each use of m_pAtlas; null without memory.
    void m_fnPackAtlas() noexcept;
    u8* m_fnTakeAtlas() noexcept;
    /// Hands the packed atlas over and loses it. False if it cannot be packed.
    bool m_fnGivePackedAtlas(CPackedPixels& packed) noexcept;

    /// Draws the glyph of a code that waits for it (font/waiting_glyphs.h).
    void m_fnDrawWaiting(u32 uCode);
    bool m_fnIsWaiting(u32 uCode) const noexcept;
    /// Draws up to *puMost glyphs that wait, and takes them off it.
    void m_fnDrawSomeWaiting(u32* puMost);

    u32 m_uLayoutW = 8, m_uLayoutH = 8; ///< cells
    u32 m_uLayoutD = 0;
    u32 m_uNum_Characters = 64;                   ///< cells of the grid
    platform::GlyphDevice* m_hDC = nullptr;       ///< owned, as are the next three
    platform::GlyphBitmap* m_hBitmap = nullptr;   ///< selected into m_hDC
    platform::GlyphFont* m_hFont = nullptr;       ///< draws
    platform::GlyphFont* m_hFontCalib = nullptr;  ///< of the calibration
    u32 m_uCharAge = 0;                           ///< copied to each record; never changes
    u32 m_uTexW = 128, m_uTexH = 128;             ///< pixels
    f32 m_fInvTexW = 0.0f, m_fInvTexH = 0.0f;     ///< 1 over the size
    i32 m_iCharBuffW = 0, m_iCharBuffH = 0;       ///< the cell, pixels
    f32 m_fCellW = 0.0f, m_fCellH = 0.0f;         ///< the cell, pixels
    u32 m_uFontSize = 0;                          ///< nominal size: half a cell across
    u32 m_uCalibSize = 0;                         ///< where the calibration starts
    f32 m_fCalibRatio = 0.0f;                     ///< first oversize found; 1 if none
    i32 iGDI_DrawRefY = 0;                        ///< row of the baseline
    i32 m_iCanvasW = 0, m_iCanvasH = 0;           ///< as the cell
    f32 m_fScale = 1.0f;                          ///< of the font, across
    u32 m_uDescent = 0;                           ///< an eighth of the nominal size
    u32 m_uBlockBox[4] = {};                      ///< block glyph: left, top, width, height as bits of i32
    std::map<u32, u32> m_mapCharIndex;            ///< code point to record
    stFontChar* m_pChars = nullptr;               ///< m_uNum_Characters + 2; the last two are 32 and 12288
    std::u16string m_wzFontName;                  ///< face
    i32 m_iFontWeight = 400;                      ///< 0 to 1000
    u8* m_pAtlas = nullptr;                       ///< m_uTexW * m_uTexH; null while it is packed
    u8* m_pCanvas = nullptr;                      ///< m_iCanvasW * m_iCanvasH
    u8* m_pCharBuff = nullptr;                    ///< m_iCharBuffW * m_iCharBuffH
    u8* m_pDib = nullptr;                         ///< rows of 24 bits from the rasteriser
    u8 m_u8Threshold = 4;                         ///< a canvas pixel above it is ink
    f32 m_fDpiScaleX = 0.0f, m_fDpiScaleY = 0.0f; ///< pixels per inch over 96
    bool m_bAutoUpload = true;                    ///< upload after each glyph
    bool m_bDirty = false;                        ///< a glyph came in since the last upload
    bool m_bFromFile = false;
    bool m_bMayWait = false;            ///< a batch runs whose glyphs may be drawn later
    std::vector<u32> m_vecWaiting;      ///< codes that have a record and a cell, but are not drawn yet
    u32 m_uAtlasRows = 0;               ///< rows of the atlas, from the top, that may hold more than zeros
    u64 m_uInkFirst = 0, m_uInkEnd = 0; ///< pixels of the canvas that may, up to the second one

  private:
    void DropBuffers() noexcept;
    bool SizesAreUsable() const noexcept;
    bool AllocCanvas();
    bool AllocRecordsAndAtlas();
    void AddSpace(u32 uCode, u32 uIndex);
    i32 FirstFreeRecord() const;
    void PlaceRecord(u32 uIndex, f32* pX, f32* pY, f32* pZ);
    void ReadCanvas(const u8* pTable);
    void DumpRows(const u8* pFirst, u32 uWidth, u32 uHeight, u32 uPitch);

    CPackedPixels m_packedAtlas;
    u64 m_uAtlasBytes = 0, m_uDibBytes = 0, m_uCellBytes = 0, m_uRecordBytes = 0; ///< of the blocks above
};

/// True if the code has a cell now; also for code 0, which gets none.
bool g_fnFontAddChar(CFontUniCode* pFont, u32 uCode);
/// Code points of a terminated UTF-16 text. False, without codes, if it has none, or a surrogate without its
/// partner.
bool g_fnToCodes(const char16_t* wzText, std::u32string& codes);
/// 0, 9, 10, 13, 32 and 12288: codes that get no cell.
bool g_fnIsBlankCode(u32 uCode);
/// These add many characters at the cost of one upload. Blanks are skipped. A text is taken in its order; a
/// surrogate without its partner counts as a code there.
void g_fnFontAddText(CFontUniCode* pFont, const char16_t* wzText);
void g_fnFontAddCodes(CFontUniCode* pFont, const std::u32string& codes);
/// In ascending order.
void g_fnFontAddSet(CFontUniCode* pFont, const std::set<u32>& codes);
/// Frees a code's record; the pixels of its cell stay. False if the code had none.
bool g_fnFontRemoveChar(CFontUniCode* pFont, u32 uCode);
