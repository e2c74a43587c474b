#include "mqsa/survey_form.h"

#include "foundation/number_text.h"
#include "foundation/report_markup.h"

namespace vorex::survey_form {

namespace {

constexpr int32_t kThousand = 1000;
constexpr int32_t kCommentMargin = 560;

std::string Framed(char alignment, int32_t width) {
    return std::string(1, alignment) + "+" + markup::kRuled + PlainText(width);
}

}  // namespace

void DrawRule(IReportDocument& report) {
    const int32_t height = report.Position();
    report.DrawLine(0, height, report.Metric(kTextWidth), height);
}

std::string EqualColumns(const IReportDocument& report, int32_t count) {
    std::string columns;
    for (int32_t i = 0; i < count; ++i)
        columns += (i == 0 ? "" : "|") + Framed('<', report.Metric(kTextWidth) / count);
    return columns + markup::kRowEnd;
}

std::string FramedColumns(const IReportDocument& report, std::span<const int32_t> thousandths) {
    std::string columns;
    for (int32_t part : thousandths) {
        const int32_t width = report.Metric(kTextWidth) * part / kThousand;
        columns += columns.empty() ? Framed('<', width) : "|" + Framed('^', width);
    }
    return columns + markup::kRowEnd;
}

std::string CommentColumns(const IReportDocument& report) {
    const std::string margin = PlainText(kCommentMargin);
    return "<+" + margin + "|<" + PlainText(report.Metric(kTextWidth) - 2 * kCommentMargin) + "|<+!" +
           margin + markup::kRowEnd;
}

std::string RoomToWrite(int32_t lines) {
    std::string room;
    for (int32_t i = 0; i < lines; ++i) room += "\r\n";
    return room;
}

}  // namespace vorex::survey_form
