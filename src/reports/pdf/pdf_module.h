#pragma once

// C by intent: program and module may come from two compilers, or from two versions of one.
#include <stddef.h>
#include <stdint.h>

/// What the module that writes PDF offers the program, and all that they share. Lengths are twips, from the
/// upper left corner of the usable area of a page; texts are UTF-8 without a zero at their end; colours are
/// 0xRRGGBB. No function raises an exception.
///
/// 1. The program calls VorexPdfModuleEntry, which gives the table, and compares its version.
/// 2. start, once: toolkit and fonts.
/// 3. For each report: begin, then what is drawn page by page, then finish, which ends the drawing.
extern "C" {

/// Goes up with every change of this file.
enum { kVorexPdfVersion = 1 };

struct VorexPdfText {
    const char* bytes;
    size_t size;
};

struct VorexPdfPoint {
    int32_t x;
    int32_t y;
};

struct VorexPdfPaper {
    int32_t width;
    int32_t height;
    int32_t marginLeft;
    int32_t marginTop;
};

/// 0 plain, 1 bold, 2 bold and italic.
struct VorexPdfFont {
    int32_t face;
    int32_t points;
};

/// A heading in the outline.
struct VorexPdfBookmark {
    VorexPdfText title;
    int32_t level;  ///< depth in the tree of headings, 0 is the report
    int32_t page;   ///< from 0
    int32_t top;    ///< points above the lower edge of the paper
};

/// A report being drawn.
struct VorexPdfDrawing;

/// Takes the bytes of the file, or the words of a fault, in one or more pieces.
typedef void (*VorexPdfSink)(void* context, const char* bytes, size_t size);

struct VorexPdfModule {
    uint32_t version;  ///< kVorexPdfVersion; first in every version

    /// 1, or 0 after the words of a fault went to the sink.
    int32_t (*start)(VorexPdfSink fault, void* context);
    /// Advance of a character in thousandths of the text's size.
    int32_t (*advance)(uint32_t character, int32_t face);

    /// The first page of a drawing; null after the words of a fault went to the sink.
    VorexPdfDrawing* (*begin)(const VorexPdfPaper* paper, VorexPdfText title, VorexPdfText creator,
                              VorexPdfSink fault, void* context);
    void (*newPage)(VorexPdfDrawing* drawing);
    /// For all that follows, on further pages too.
    void (*setPen)(VorexPdfDrawing* drawing, uint32_t colour, int32_t width);
    int32_t (*textWidth)(VorexPdfDrawing* drawing, VorexPdfText text, VorexPdfFont font);
    /// By its left edge and its top. What is wider than the room is shortened in its middle; a room of 0 has
    /// no end.
    void (*drawText)(VorexPdfDrawing* drawing, VorexPdfPoint place, VorexPdfText text, VorexPdfFont font,
                     int32_t room);
    void (*drawLines)(VorexPdfDrawing* drawing, const VorexPdfPoint* points, size_t count);
    void (*drawFrame)(VorexPdfDrawing* drawing, VorexPdfPoint place, int32_t width, int32_t height);
    void (*fill)(VorexPdfDrawing* drawing, VorexPdfPoint place, int32_t width, int32_t height,
                 uint32_t colour);
    /// A PDF/A-1b file with its outline and language. 1 after its bytes went to the sink, or 0 after the
    /// words of a fault did. The drawing is no more.
    int32_t (*finish)(VorexPdfDrawing* drawing, const VorexPdfBookmark* bookmarks, size_t count,
                      VorexPdfText language, VorexPdfSink sink, void* context);
};

/// What the module exports, by the name of VOREX_PDF_ENTRY_NAME.
typedef const VorexPdfModule* (*VorexPdfEntry)(void);

}  // extern "C"

#define VOREX_PDF_ENTRY_NAME "VorexPdfModuleEntry"
