#include <QBuffer>
#include <QFont>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QLocale>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <array>
#include <exception>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "reports/pdf/pdf_bookmarks.h"
#include "reports/report_pdf.h"

// The module that writes PDF: the one part of the program that knows fonts and a toolkit.

namespace vorex {

namespace {

constexpr const char* kFamily = "Liberation Sans";
/// Scripts that the first family has no letters for.
const QStringList kFamilies = {kFamily, "DejaVu Sans", "Droid Sans Fallback"};
constexpr int kTwipsPerInch = 1440;
constexpr int32_t kFootPoints = 7;
constexpr int32_t kMetricPoints = 1000;  // a size at which an advance has no error of rounding
constexpr int32_t kBaselinePercent = 92;
const QColor kFailColour(0xB0, 0x00, 0x20);
const QColor kPassColour(0x1B, 0x5E, 0x20);
const QColor kFailGround(0xFB, 0xE3, 0xE1);
const QColor kRuleColour(0x99, 0x99, 0x99);
constexpr int32_t kThinLine = 8;
constexpr int32_t kCurveLine = 20;
constexpr int32_t kBarWidth = 60;

QString Text(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

bool IsAscii(std::string_view text) {
    for (char c : text)
        if (static_cast<unsigned char>(c) >= 0x80U) return false;
    return true;
}

QFont FontOf(ReportFace face, bool shaped) {
    QFont font(kFamilies);
    font.setBold(face != ReportFace::kPlain);
    font.setItalic(face == ReportFace::kBoldItalic);
    font.setKerning(false);
    font.setHintingPreference(QFont::PreferNoHinting);
    if (!shaped) font.setStyleStrategy(QFont::PreferNoShaping);
    return font;
}

class FontMetrics final : public ITextMetrics {
  public:
    FontMetrics() {
        for (std::size_t i = 0; i < kReportFaces; ++i) {
            QFont font = FontOf(static_cast<ReportFace>(i), true);
            font.setPixelSize(kMetricPoints);
            mMetrics[i] = std::make_unique<QFontMetricsF>(font);
        }
    }
    int32_t Advance(char32_t character, ReportFace face) const override {
        const auto& metrics = *mMetrics[static_cast<std::size_t>(face)];
        return qRound(metrics.horizontalAdvance(QString::fromUcs4(&character, 1)));
    }

  private:
    std::array<std::unique_ptr<QFontMetricsF>, kReportFaces> mMetrics;
};

class PagePainter {
  public:
    PagePainter(const ReportModel& report, QPdfWriter& writer)
        : mReport(report), mWriter(writer), mPainter(&writer) {
        if (!mPainter.isActive()) throw std::runtime_error("the PDF could not be begun");
    }

    std::vector<Bookmark> Paint() {
        for (std::size_t page = 0; page < mReport.pages.size(); ++page) {
            if (page > 0) mWriter.newPage();
            mPage = page;
            mPainter.resetTransform();
            mPainter.translate(mReport.paper.marginLeft, mReport.paper.marginTop);
            mFontKey = -1;
            for (const ReportItem& item : mReport.pages[page].items)
                std::visit([this](const auto& part) { Draw(part); }, item);
            DrawFoot();
        }
        mPainter.end();
        return std::move(mBookmarks);
    }

  private:
    void Use(ReportFace face, int32_t points, bool shaped) {
        const int32_t fontKey = (points * 4 + static_cast<int32_t>(face)) * 2 + (shaped ? 1 : 0);
        if (fontKey == mFontKey) return;
        mFontKey = fontKey;
        QFont font = FontOf(face, shaped);
        font.setPixelSize(points * kTwipsPerPoint);
        mPainter.setFont(font);
    }

    void Pen(const QColor& colour, int32_t width = kThinLine) { mPainter.setPen(QPen(colour, width)); }

    /// A text by its left edge and its top.
    void Write(int32_t x, int32_t top, std::string_view text, ReportFace face, int32_t points) {
        if (text.empty()) return;
        Use(face, points, !IsAscii(text));
        mPainter.drawText(QPoint(x, top + points * kTwipsPerPoint * kBaselinePercent / 100), Text(text));
    }

    int32_t Width(std::string_view text, ReportFace face, int32_t points) {
        Use(face, points, true);
        return qCeil(QFontMetricsF(mPainter.font(), &mWriter).horizontalAdvance(Text(text)));
    }

    /// Cross or tick as lines: no font has to have it.
    void DrawShape(ReportMark mark, int32_t x, int32_t top, int32_t points) {
        const int32_t size = points * kTwipsPerPoint * 8 / 10;
        const int32_t y = top + points * kTwipsPerPoint * 2 / 10;
        const bool fail = mark == ReportMark::kFail;
        Pen(fail ? kFailColour : kPassColour, points * 3);
        if (fail) {
            mPainter.drawLine(x, y, x + size, y + size);
            mPainter.drawLine(x, y + size, x + size, y);
            return;
        }
        const QPoint tick[] = {{x, y + size * 6 / 10}, {x + size * 4 / 10, y + size}, {x + size, y}};
        mPainter.drawPolyline(tick, 3);
    }

    static const QColor& ColourOf(ReportMark mark) {
        static const QColor black(Qt::black);
        return mark == ReportMark::kFail ? kFailColour : mark == ReportMark::kPass ? kPassColour : black;
    }

    // -------------------------------------------------------------------------------------- items

    void AddBookmark(const ReportHeading& heading) {
        if (heading.title.empty()) return;
        // Forms of one title differ in what stands below it.
        std::string title(heading.title);
        if (heading.centred && !heading.outcome.empty()) title.append(" - ").append(heading.outcome);
        mBookmarks.push_back(
            {std::move(title), heading.level, mPage,
             (mReport.paper.height - mReport.paper.marginTop - heading.top) / kTwipsPerPoint});
    }

    void Draw(const ReportHeading& heading) {
        AddBookmark(heading);
        Pen(Qt::black);
        if (heading.centred)
            DrawFormTitle(heading);
        else
            DrawTitle(heading);
    }

    void DrawTitle(const ReportHeading& heading) {
        const int32_t lineHeight = heading.points * kLineTwips;
        const int32_t first =
            heading.top + (heading.height - static_cast<int32_t>(heading.lines.size()) * lineHeight) / 2;
        int32_t top = first;
        const int32_t right = mReport.paper.UsableWidth();
        for (const ReportLine& line : heading.lines) {
            Write(line.indent, top, line.text, ReportFace::kBold, heading.points);
            top += lineHeight;
        }
        if (!heading.outcome.empty()) {
            const int32_t x = right - Width(heading.outcome, ReportFace::kBold, heading.points);
            Pen(ColourOf(heading.mark));
            Write(x, first, heading.outcome, ReportFace::kBold, heading.points);
            if (heading.mark != ReportMark::kNone)
                DrawShape(heading.mark, x - heading.points * kTwipsPerPoint - kMarkGapTwips, first,
                          heading.points);
        }
        Pen(Qt::black, heading.level == 0 ? 2 * kCurveLine : heading.level == 1 ? kCurveLine : kThinLine);
        const int32_t rule = heading.top + heading.height - kLineTwips * 3;
        mPainter.drawLine(0, rule, right, rule);
    }

    /// Without a rule: the tables of a form bring their own.
    void DrawFormTitle(const ReportHeading& heading) {
        const int32_t width = mReport.paper.UsableWidth();
        const int32_t lineHeight = heading.points * kLineTwips;
        const auto lines = static_cast<int32_t>(heading.lines.size()) + (heading.outcome.empty() ? 0 : 1);
        int32_t top = heading.top + (heading.height - lines * lineHeight) / 2;
        for (const ReportLine& line : heading.lines) {
            Write((width - line.width) / 2, top, line.text, ReportFace::kBold, heading.points);
            top += lineHeight;
        }
        const int32_t below = Width(heading.outcome, ReportFace::kBold, heading.points);
        Write((width - below) / 2, top, heading.outcome, ReportFace::kBold, heading.points);
    }

    void Draw(const ReportTable& table) {
        for (const ReportRow& row : table.rows) DrawRow(row, *table.columns);
    }

    void DrawRow(const ReportRow& row, const std::vector<ReportColumn>& columns) {
        const int32_t right = columns.back().left + columns.back().width;
        if (row.failed) {
            mPainter.fillRect(0, row.top, right, row.height, kFailGround);
            mPainter.fillRect(-2 * kBarWidth, row.top, kBarWidth, row.height, kFailColour);
        }
        if (row.ruled) {
            Pen(Qt::black);
            for (const ReportColumn& column : columns)
                if (column.ruled) mPainter.drawRect(column.left, row.top, column.width, row.height);
        } else if (!row.cells.empty()) {
            Pen(row.heading ? QColor(Qt::black) : kRuleColour, row.heading ? kThinLine : kThinLine / 2);
            const int32_t left = std::min(columns[row.cells.front().column].left, columns.front().width);
            mPainter.drawLine(left, row.top + row.height, right, row.top + row.height);
        }
        for (const ReportCell& cell : row.cells) DrawCell(cell, row, columns);
    }

    static int32_t WidestLine(const ReportCell& cell) {
        int32_t widest = 0;
        for (const ReportLine& line : cell.lines) widest = std::max(widest, line.width);
        return widest;
    }

    void DrawCell(const ReportCell& cell, const ReportRow& row, const std::vector<ReportColumn>& columns) {
        const ReportColumn& column = columns[cell.column];
        const ReportColumn& last = columns[cell.column + cell.span - 1U];
        int32_t left = column.left + column.Padding();
        const int32_t end = last.left + last.width - column.Padding();
        int32_t top = row.top + row.Padding() / 2 + (row.group ? kGroupGap : 0);
        if (cell.mark != ReportMark::kNone) {
            const int32_t shape = row.points * kTwipsPerPoint + kMarkGapTwips;
            // In the middle stand shape and words together.
            if (column.align == ReportAlign::kCentre)
                left += std::max(0, end - left - shape - WidestLine(cell)) / 2;
            if (cell.span > 1) left += kMarkApartTwips;
            DrawShape(cell.mark, left, top, row.points);
            left += shape;
        }
        const ReportFace face = row.FaceOf(cell);
        Pen(ColourOf(cell.mark));
        for (const ReportLine& line : cell.lines) {
            const int32_t spare = end - left - line.width;
            const bool besideShape = cell.mark != ReportMark::kNone && column.align == ReportAlign::kCentre;
            const int32_t shift = column.align == ReportAlign::kRight    ? spare
                                  : besideShape                          ? 0
                                  : column.align == ReportAlign::kCentre ? spare / 2
                                                                         : line.indent;
            Write(left + std::max(0, shift), top, line.text, face, row.points);
            top += row.points * kLineTwips;
        }
    }

    void Draw(const ReportFigure& figure) {
        const auto drawLines = [&](const std::vector<std::vector<ReportPoint>>& lines) {
            for (const auto& line : lines) {
                mPolyline.clear();
                for (const ReportPoint& point : line) mPolyline.emplace_back(point.x, figure.top + point.y);
                mPainter.drawPolyline(mPolyline.data(), static_cast<int>(mPolyline.size()));
            }
        };
        Pen(Qt::black);
        drawLines(figure.lines);
        Pen(Qt::black, kCurveLine);
        drawLines(figure.curves);
        Pen(Qt::black);
        for (const ReportLabel& label : figure.labels) {
            const int32_t width = Width(label.text, ReportFace::kPlain, label.points);
            const int32_t back = label.align == ReportAlign::kRight    ? width
                                 : label.align == ReportAlign::kCentre ? width / 2
                                                                       : 0;
            Write(label.place.x - back, figure.top + label.place.y, label.text, ReportFace::kPlain,
                  label.points);
        }
    }

    void Draw(const ReportRule& rule) {
        Pen(Qt::black);
        mPainter.drawLine(rule.from.x, rule.from.y, rule.to.x, rule.to.y);
    }

    // --------------------------------------------------------------------------------------- foot

    void DrawFoot() {
        const ReportFacts& facts = mReport.facts;
        const int32_t top = mReport.paper.UsableHeight() + kFootPoints * kLineTwips;
        const int32_t right = mReport.paper.UsableWidth();
        Pen(kRuleColour);
        mPainter.drawLine(0, top - kFootPoints * 6, right, top - kFootPoints * 6);
        Pen(Qt::black);
        const std::string page = Text(facts.pageOf)
                                     .replace("%%1", QString::number(mPage + 1))
                                     .replace("%%2", QString::number(mReport.pages.size()))
                                     .toStdString();
        const int32_t pageWidth = Width(page, ReportFace::kPlain, kFootPoints);
        Write(right - pageWidth, top, page, ReportFace::kPlain, kFootPoints);
        std::string words;
        for (const std::string* part : {&facts.title, &facts.fileName, &facts.date, &facts.program})
            if (!part->empty()) words += (words.empty() ? "" : "  ·  ") + *part;
        Use(ReportFace::kPlain, kFootPoints, true);
        const QString fitted = QFontMetricsF(mPainter.font(), &mWriter)
                                   .elidedText(Text(words), Qt::ElideMiddle, right - pageWidth - 200);
        Write(0, top, fitted.toStdString(), ReportFace::kPlain, kFootPoints);
    }

    const ReportModel& mReport;
    QPdfWriter& mWriter;
    QPainter mPainter;
    std::vector<Bookmark> mBookmarks;
    std::vector<QPoint> mPolyline;
    std::size_t mPage = 0;
    int32_t mFontKey = -1;
};

class QtPdfRenderer final : public IPdfRenderer {
  public:
    QtPdfRenderer() {
        if (qApp == nullptr) {
            // The toolkit's remarks on the session that it runs in are nothing that a user could act on.
            qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
            // A report needs no display, and a display that cannot be reached is no reason to fail.
            qputenv("QT_QPA_PLATFORM", "offscreen");
            mApplication = std::make_unique<QGuiApplication>(mArgumentCount, mArguments);
        }
        const QFontInfo info{QFont(kFamily)};
        if (info.family() != kFamily)
            throw std::runtime_error(
                std::string("the font ") + kFamily +
                " is not installed, which PDF reports are set in (package fonts-liberation2)");
        mMetrics = std::make_unique<FontMetrics>();
    }

    const ITextMetrics& Metrics() const override { return *mMetrics; }

    std::string Render(const ReportModel& report) override {
        QByteArray bytes;
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        std::vector<Bookmark> bookmarks;
        {
            QPdfWriter writer(&buffer);
            writer.setPdfVersion(QPdfWriter::PdfVersion_A1b);
            writer.setTitle(Text(report.facts.title));
            writer.setCreator(Text(report.facts.program));
            writer.setResolution(kTwipsPerInch);
            const QSizeF size(report.paper.width / double{kTwipsPerPoint},
                              report.paper.height / double{kTwipsPerPoint});
            writer.setPageLayout(QPageLayout(QPageSize(size, QPageSize::Point), QPageLayout::Portrait,
                                             QMarginsF(), QPageLayout::Point));
            bookmarks = PagePainter(report, writer).Paint();
        }
        return WithBookmarks({bytes.constData(), static_cast<std::size_t>(bytes.size())}, bookmarks,
                             report.facts.language);
    }

  private:
    int mArgumentCount = 1;
    char mName[6] = "vorex";
    char* mArguments[2] = {mName, nullptr};
    std::unique_ptr<QGuiApplication> mApplication;
    std::unique_ptr<FontMetrics> mMetrics;
};

}  // namespace

}  // namespace vorex

extern "C" __attribute__((visibility("default"))) vorex::IPdfRenderer* VorexMakePdfRenderer(
    std::string& fault) {
    try {
        return std::make_unique<vorex::QtPdfRenderer>().release();
    } catch (const std::exception& error) {
        fault = error.what();
        return nullptr;
    }
}
