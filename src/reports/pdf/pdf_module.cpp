#include "reports/pdf/pdf_module.h"

#include <QBuffer>
#include <QFont>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <array>
#include <exception>
#include <memory>
#include <string>
#include <vector>

#include "reports/pdf/pdf_bookmarks.h"

// The module that writes PDF: the only part of the program that uses fonts and a toolkit.

struct VorexPdfDrawing {
    explicit VorexPdfDrawing(const VorexPdfPaper& paper) : sheet(paper) {}

    VorexPdfPaper sheet;
    QByteArray bytes;
    QBuffer buffer{&bytes};
    std::unique_ptr<QPdfWriter> writer;
    QPainter painter;
    int fontKey = -1;
};

namespace {

constexpr const char* kFamily = "Liberation Sans";
constexpr int kTwipsPerInch = 1440;
constexpr int kTwipsPerPoint = 20;
constexpr int kFaces = 3;
constexpr int kMetricPoints = 1000;  // a size at which an advance has no error of rounding
constexpr int kBaselinePercent = 92;

QString Text(VorexPdfText text) {
    return QString::fromUtf8(text.bytes, static_cast<qsizetype>(text.size));
}

std::string Copy(VorexPdfText text) {
    return {text.bytes, text.size};
}

bool IsAscii(VorexPdfText text) {
    for (size_t i = 0; i < text.size; ++i)
        if (static_cast<unsigned char>(text.bytes[i]) >= 0x80U) return false;
    return true;
}

QFont FontOf(int face, bool shaped) {
    // Fallback families for scripts that the first does not cover.
    static const QStringList families = {kFamily, "DejaVu Sans", "Droid Sans Fallback"};
    QFont font(families);
    font.setBold(face != 0);
    font.setItalic(face == 2);
    font.setKerning(false);
    font.setHintingPreference(QFont::PreferNoHinting);
    if (!shaped) font.setStyleStrategy(QFont::PreferNoShaping);
    return font;
}

/// Calls a function and sends the message of a failure to the sink. True on success.
template <typename Function>
bool Guarded(VorexPdfSink sink, void* context, Function&& function) {
    try {
        function();
        return true;
    } catch (const std::exception& error) {
        const std::string words = error.what();
        sink(context, words.data(), words.size());
    } catch (...) {
        constexpr const char kWords[] = "the PDF could not be written";
        sink(context, kWords, sizeof kWords - 1);
    }
    return false;
}

std::array<std::unique_ptr<QFontMetricsF>, kFaces>& Metrics() {
    static std::array<std::unique_ptr<QFontMetricsF>, kFaces> metrics;
    return metrics;
}

int32_t Start(VorexPdfSink fault, void* context) {
    const bool started = Guarded(fault, context, [] {
        if (qApp == nullptr) {
            static int argumentCount = 1;
            static char name[] = "vorex";
            static char* arguments[] = {name, nullptr};
            // The toolkit warns about the desktop session, which a user of the program can do nothing about.
            qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
            // A report needs no display, so it must not fail when none can be reached.
            qputenv("QT_QPA_PLATFORM", "offscreen");
            // Never destroyed: by then, parts of the program that the toolkit needs are gone.
            static QGuiApplication* const application = new QGuiApplication(argumentCount, arguments);
            (void)application;
        }
        const QFontInfo info{QFont(kFamily)};
        if (info.family() != kFamily)
            throw std::runtime_error(
                std::string("the font ") + kFamily +
                " is not installed, which PDF reports are set in (package fonts-liberation2)");
        for (int face = 0; face < kFaces; ++face) {
            QFont font = FontOf(face, true);
            font.setPixelSize(kMetricPoints);
            Metrics()[static_cast<size_t>(face)] = std::make_unique<QFontMetricsF>(font);
        }
    });
    return started ? 1 : 0;
}

int32_t Advance(uint32_t character, int32_t face) {
    const char32_t code = character;
    return qRound(Metrics()[static_cast<size_t>(face)]->horizontalAdvance(QString::fromUcs4(&code, 1)));
}

void BeginPage(VorexPdfDrawing& drawing) {
    drawing.painter.resetTransform();
    drawing.painter.translate(drawing.sheet.marginLeft, drawing.sheet.marginTop);
    drawing.fontKey = -1;
}

VorexPdfDrawing* Begin(const VorexPdfPaper* paper, VorexPdfText title, VorexPdfText creator,
                       VorexPdfSink fault, void* context) {
    std::unique_ptr<VorexPdfDrawing> drawing;
    const bool begun = Guarded(fault, context, [&] {
        drawing = std::make_unique<VorexPdfDrawing>(*paper);
        drawing->buffer.open(QIODevice::WriteOnly);
        drawing->writer = std::make_unique<QPdfWriter>(&drawing->buffer);
        QPdfWriter& writer = *drawing->writer;
        writer.setPdfVersion(QPdfWriter::PdfVersion_A1b);
        writer.setTitle(Text(title));
        writer.setCreator(Text(creator));
        writer.setResolution(kTwipsPerInch);
        const QSizeF size(paper->width / double{kTwipsPerPoint}, paper->height / double{kTwipsPerPoint});
        writer.setPageLayout(QPageLayout(QPageSize(size, QPageSize::Point), QPageLayout::Portrait,
                                         QMarginsF(), QPageLayout::Point));
        if (!drawing->painter.begin(&writer)) throw std::runtime_error("the PDF could not be begun");
        BeginPage(*drawing);
    });
    return begun ? drawing.release() : nullptr;
}

void NewPage(VorexPdfDrawing* drawing) {
    drawing->writer->newPage();
    BeginPage(*drawing);
}

void SetPen(VorexPdfDrawing* drawing, uint32_t colour, int32_t width) {
    drawing->painter.setPen(QPen(QColor(QRgb(colour)), width));
}

void Use(VorexPdfDrawing& drawing, VorexPdfFont wanted, bool shaped) {
    const int key = (wanted.points * 4 + wanted.face) * 2 + (shaped ? 1 : 0);
    if (key == drawing.fontKey) return;
    drawing.fontKey = key;
    QFont font = FontOf(wanted.face, shaped);
    font.setPixelSize(wanted.points * kTwipsPerPoint);
    drawing.painter.setFont(font);
}

QFontMetricsF MetricsOf(VorexPdfDrawing& drawing) {
    return QFontMetricsF(drawing.painter.font(), drawing.writer.get());
}

int32_t TextWidth(VorexPdfDrawing* drawing, VorexPdfText text, VorexPdfFont font) {
    Use(*drawing, font, true);
    return qCeil(MetricsOf(*drawing).horizontalAdvance(Text(text)));
}

void DrawText(VorexPdfDrawing* drawing, VorexPdfPoint place, VorexPdfText text, VorexPdfFont font,
              int32_t room) {
    QString words = Text(text);
    bool ascii = IsAscii(text);
    if (room > 0) {
        Use(*drawing, font, true);
        const QString fitted = MetricsOf(*drawing).elidedText(words, Qt::ElideMiddle, room);
        ascii = ascii && fitted == words;
        words = fitted;
    }
    Use(*drawing, font, !ascii);
    const int baseline = font.points * kTwipsPerPoint * kBaselinePercent / 100;
    drawing->painter.drawText(QPoint(place.x, place.y + baseline), words);
}

void DrawLines(VorexPdfDrawing* drawing, const VorexPdfPoint* points, size_t count) {
    if (count == 2) {
        drawing->painter.drawLine(points[0].x, points[0].y, points[1].x, points[1].y);
        return;
    }
    std::vector<QPoint> line;
    line.reserve(count);
    for (size_t i = 0; i < count; ++i) line.emplace_back(points[i].x, points[i].y);
    drawing->painter.drawPolyline(line.data(), static_cast<int>(line.size()));
}

void DrawFrame(VorexPdfDrawing* drawing, VorexPdfPoint place, int32_t width, int32_t height) {
    drawing->painter.drawRect(place.x, place.y, width, height);
}

void Fill(VorexPdfDrawing* drawing, VorexPdfPoint place, int32_t width, int32_t height, uint32_t colour) {
    drawing->painter.fillRect(place.x, place.y, width, height, QColor(QRgb(colour)));
}

int32_t Finish(VorexPdfDrawing* drawing, const VorexPdfBookmark* bookmarks, size_t count,
               VorexPdfText language, VorexPdfSink sink, void* context) {
    const std::unique_ptr<VorexPdfDrawing> ended(drawing);
    const bool finished = Guarded(sink, context, [&] {
        ended->painter.end();
        ended->writer.reset();
        std::vector<vorex::Bookmark> outline;
        for (size_t i = 0; i < count; ++i)
            outline.push_back({Copy(bookmarks[i].title), bookmarks[i].level,
                               static_cast<size_t>(bookmarks[i].page), bookmarks[i].top});
        const std::string file = vorex::WithBookmarks(
            {ended->bytes.constData(), static_cast<size_t>(ended->bytes.size())}, outline, Copy(language));
        sink(context, file.data(), file.size());
    });
    return finished ? 1 : 0;
}

constexpr VorexPdfModule kModule = {
    kVorexPdfVersion, Start,    Advance,   Begin,     NewPage, SetPen,
    TextWidth,        DrawText, DrawLines, DrawFrame, Fill,    Finish,
};

}  // namespace

extern "C" Q_DECL_EXPORT const VorexPdfModule* VorexPdfModuleEntry() {
    return &kModule;
}
