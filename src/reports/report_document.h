#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/host_contract.h"
#include "reports/report_model.h"
#include "reports/report_wrap.h"

namespace vorex {

/// The options of a report.
struct ReportSettings {
    ReportPaper paper;
    int32_t options = 0;  ///< bits of `IReportDocument::Options`
    int32_t kind = kFullReport;
    char decimalSign = '.';
    std::shared_ptr<const ITextService> text;
    std::shared_ptr<const ISelectedStandards> selected;
    ReportFacts facts;
};

/// The paper called "A4" or "Letter"; nothing for any other name.
std::optional<ReportPaper> FindReportPaper(std::string_view name);
/// An endless page as wide as A4, for texts and web pages.
ReportPaper EndlessReportPaper();

/// The report engine: lays out on pages what the library prints.
class ReportDocument final : public IReportDocument {
  public:
    /// Paged paper needs metrics, which must outlive this object; endless paper needs none.
    explicit ReportDocument(ReportSettings settings, const ITextMetrics* metrics = nullptr);

    int32_t Position() const override { return mTop; }
    void Position(int32_t top) override;
    int32_t Options() const override { return mSettings.options; }
    int32_t Kind() const override { return mSettings.kind; }
    const ISelectedStandards* SelectedStandards() const override { return mSettings.selected.get(); }
    char DecimalSign() const override { return mSettings.decimalSign; }
    int32_t SpaceLeft() const override;
    int32_t TableHeight(std::string_view columns, std::string_view rows) override;
    int32_t TextWidth(std::string_view text) override;
    void Style(int32_t points) override;
    int32_t Metric(int32_t selector) const override;
    void Alignment(int32_t alignment) override;
    void PrintTable(std::string_view columns, std::string_view rows) override;
    void PrintHeading(std::string_view title, std::string_view outcome) override;
    void DrawLine(int32_t x1, int32_t y1, int32_t x2, int32_t y2) override;
    void NewPage() override;
    void PlotPoints(std::span<const int32_t> x, std::span<const int32_t> y) override;
    void DrawText(int32_t x, int32_t y, std::string_view text) override;
    void BeginFigure(std::string_view caption, int32_t height) override;
    void EndFigure() override;
    std::string Translate(std::string_view section, std::string_view key, TextArguments args) const override;

    /// Depth of the headings to come, from 1.
    void HeadingLevel(int32_t level) { mLevel = level; }
    /// The title of the report, once and first.
    void PrintTitle(std::string_view title, std::string_view outcome);
    const ReportFacts& Facts() const { return mSettings.facts; }
    /// The finished report; the document is then empty.
    ReportModel Finish();

  private:
    using Columns = std::shared_ptr<const std::vector<ReportColumn>>;

    bool Paged() const { return mSettings.paper.Paged(); }
    Columns ColumnsOf(std::string_view definition);
    void LayRow(ReportRow& row, const std::vector<ReportColumn>& columns);
    void LayCell(ReportCell& cell, ReportFace face, std::size_t free,
                 const std::vector<ReportColumn>& columns);
    std::vector<ReportRow> LaidRows(std::string_view rows, const Columns& columns);
    /// The table that a row of these columns continues; a new one if there is none. A heading starts a new
    /// framed table.
    ReportTable& TableFor(const Columns& columns, const ReportRow& row);
    bool BeginsHere(const ReportRow& row) const;
    /// A row that moves goes to the next page.
    void PlaceRow(ReportRow row, const Columns& columns, bool moves);
    void PlaceInPieces(const ReportRow& row, const Columns& columns);
    void RepeatHeadings(const Columns& columns);
    void GoOnWithGroup(const Columns& columns);
    int32_t HeightKeptTogether(const std::vector<ReportRow>& rows, std::size_t first) const;
    void AddRow(ReportRow row, const Columns& columns);
    ReportHeading LaidHeading(std::string_view title, std::string_view outcome, int32_t level);
    void PlaceHeading(std::string_view title, std::string_view outcome, int32_t level);
    ReportFigure* OpenFigure();
    void AddPage();

    ReportSettings mSettings;
    std::optional<TextWrapper> mWrapper;
    ReportModel mModel;
    int32_t mTop = 0;
    int32_t mPoints;
    int32_t mLevel = 1;
    ReportAlign mAlign = ReportAlign::kLeft;
    bool mInFigure = false;
    std::string mDefinition;  ///< that `mColumns` were made of
    Columns mColumns;
    std::vector<ReportRow> mHeadings;  ///< what the present table begins with
    Columns mHeadingColumns;
    std::optional<ReportRow> mGroup;  ///< the name of the present rows
    std::size_t mGroupPage = 0;       ///< where it was printed last
};

}  // namespace vorex
