#pragma once

// Intentionally C: program and module may be built with different compilers or versions.
#include <stddef.h>
#include <stdint.h>

/// The interface between the program and the module that writes PDF; they share nothing else. Lengths are
/// twips, from the upper left corner of the usable area of a page; texts are UTF-8 without a terminating
/// zero; colours are 0xRRGGBB. No function raises an exception.
///
/// 1. The program calls VorexPdfModuleEntry, which returns the table, and compares its version.
/// 2. start, once: toolkit and fonts.
/// 3. For each report: begin, then the drawing calls page by page, then finish, which ends the drawing.
extern "C" {

/// Raised with every change of this file.
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

/// Takes the bytes of the file, or the message of a failure, in one or more pieces.
typedef void (*VorexPdfSink)(void* context, const char* bytes, size_t size);

struct VorexPdfModule {
    uint32_t version;  ///< kVorexPdfVersion; first in every version

    /// 1, or 0 after the message of a failure went to the sink.
    int32_t (*start)(VorexPdfSink fault, void* context);
    /// Advance of a character in thousandths of the text's size.
    int32_t (*advance)(uint32_t character, int32_t face);

    /// The first page of a drawing; null after the message of a failure went to the sink.
    VorexPdfDrawing* (*begin)(const VorexPdfPaper* paper, VorexPdfText title, VorexPdfText creator,
                              VorexPdfSink fault, void* context);
    void (*newPage)(VorexPdfDrawing* drawing);
    /// For all later calls, on further pages too.
    void (*setPen)(VorexPdfDrawing* drawing, uint32_t colour, int32_t width);
    int32_t (*textWidth)(VorexPdfDrawing* drawing, VorexPdfText text, VorexPdfFont font);
    /// At its left edge and its top. A text wider than the room is shortened in its middle; a room of 0 is
    /// unlimited.
    void (*drawText)(VorexPdfDrawing* drawing, VorexPdfPoint place, VorexPdfText text, VorexPdfFont font,
                     int32_t room);
    void (*drawLines)(VorexPdfDrawing* drawing, const VorexPdfPoint* points, size_t count);
    void (*drawFrame)(VorexPdfDrawing* drawing, VorexPdfPoint place, int32_t width, int32_t height);
    void (*fill)(VorexPdfDrawing* drawing, VorexPdfPoint place, int32_t width, int32_t height,
                 uint32_t colour);
    /// A PDF/A-1b file with its outline and language. 1 after its bytes went to the sink, or 0 after the
    /// message of a failure. The drawing ends in either case.
    int32_t (*finish)(VorexPdfDrawing* drawing, const VorexPdfBookmark* bookmarks, size_t count,
                      VorexPdfText language, VorexPdfSink sink, void* context);
};

/// The module's exported function; its name is VOREX_PDF_ENTRY_NAME.
typedef const VorexPdfModule* (*VorexPdfEntry)(void);

}  // extern "C"

#define VOREX_PDF_ENTRY_NAME "VorexPdfModuleEntry"
