#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "foundation/host_contract.h"
#include "foundation/number_text.h"
#include "foundation/report_markup.h"
#include "foundation/utilities.h"

namespace vorex::test {

/// A report that keeps what is printed, in order, a line a call. Every row is 200 twips high, every
/// character 100 wide.
class RecordingReport : public IReportDocument {
  public:
    static constexpr int32_t kRowHeight = 200;
    static constexpr int32_t kCharacter = 100;

    std::vector<std::string> calls;
    int32_t options = 0;
    int32_t kind = kFullReport;
    int32_t textWidth = 10080;  ///< twips; Letter with margins of 0.75 inches
    int32_t pageHeight = 1000000;
    char decimalSign = '.';
    std::map<std::string, std::string, std::less<>> words;
    const ISelectedStandards* selected = nullptr;

    /// The rows of all tables, a line each, without their column definitions.
    std::string Rows() const {
        std::string rows;
        for (const std::string& call : calls)
            if (call.starts_with(kTable)) rows += call.substr(call.find('\n') + 1);
        return rows;
    }
    /// All calls, a line each.
    std::string Calls() const {
        std::string all;
        for (const std::string& call : calls) all += call + (call.ends_with('\n') ? "" : "\n");
        return all;
    }

    int32_t Position() const override { return mPosition; }
    void Position(int32_t top) override { mPosition = top; }
    int32_t Options() const override { return options; }
    int32_t Kind() const override { return kind; }
    const ISelectedStandards* SelectedStandards() const override { return selected; }
    char DecimalSign() const override { return decimalSign; }
    int32_t SpaceLeft() const override { return pageHeight - mPosition; }
    int32_t TableHeight(std::string_view, std::string_view rows) override {
        return kRowHeight * static_cast<int32_t>(RowsOf(rows).size());
    }
    int32_t TextWidth(std::string_view text) override {
        return kCharacter * static_cast<int32_t>(text.size());
    }
    void Style(int32_t points) override { Note("style " + PlainText(points)); }
    int32_t Metric(int32_t selector) const override {
        return selector == kTextWidth ? textWidth : textWidth - 1120;
    }
    void Alignment(int32_t alignment) override { Note("align " + PlainText(alignment)); }
    void PrintTable(std::string_view columns, std::string_view rows) override {
        std::string call = std::string(kTable) + std::string(columns) + "\n";
        for (const std::string& row : RowsOf(rows)) call += row + "\n";
        calls.push_back(std::move(call));
        mPosition += TableHeight(columns, rows);
    }
    void PrintHeading(std::string_view title, std::string_view outcome) override {
        Note("heading " + std::string(title) + " / " + std::string(outcome));
    }
    void DrawLine(int32_t x1, int32_t y1, int32_t x2, int32_t y2) override {
        Note("line " + PlainText(x1) + "," + PlainText(y1) + " " + PlainText(x2) + "," + PlainText(y2));
    }
    void NewPage() override {
        Note("page");
        mPosition = 0;
    }
    void PlotPoints(std::span<const int32_t> x, std::span<const int32_t> y) override {
        std::string call = "curve";
        for (std::size_t i = 0; i < x.size(); ++i) call += " " + PlainText(x[i]) + "," + PlainText(y[i]);
        Note(call);
    }
    void DrawText(int32_t x, int32_t y, std::string_view text) override {
        Note("text " + PlainText(x) + "," + PlainText(y) + " " + std::string(text));
    }
    void BeginFigure(std::string_view caption, int32_t height) override {
        if (height > SpaceLeft()) NewPage();
        Note("figure " + std::string(caption));
    }
    void EndFigure() override { Note("end of figure"); }
    std::string Translate(std::string_view section, std::string_view key, TextArguments args) const override {
        if (section != kPlugInId) return "wrong section";
        const auto found = words.find(key);
        return found == words.end() ? DefaultText(key, args) : FillPlaceholders(found->second, args);
    }

  private:
    static constexpr std::string_view kTable = "table ";

    void Note(const std::string& call) { calls.push_back(call); }
    static std::vector<std::string> RowsOf(std::string_view rows) {
        std::vector<std::string> parts(1);
        for (std::size_t i = 0; i < rows.size(); ++i) {
            parts.back() += rows[i];
            if (rows[i] == markup::kEscape && i + 1 < rows.size() &&
                markup::kSpecials.find(rows[i + 1]) != std::string_view::npos)
                parts.back() += rows[++i];
            else if (rows[i] == markup::kRowEnd)
                parts.emplace_back();
        }
        if (parts.back().empty()) parts.pop_back();
        return parts;
    }

    int32_t mPosition = 0;
};

}  // namespace vorex::test
