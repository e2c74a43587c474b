#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "foundation/host_contract.h"

/// What the printed survey is drawn with. Widths are parts of the printable width that the report gives.
namespace vorex::survey_form {

/// One rule from the left to the right edge of the page, at the present height.
void DrawRule(IReportDocument& report);
/// Columns of the same width, framed.
std::string EqualColumns(const IReportDocument& report, int32_t count);
/// Framed columns whose widths are told in thousandths: a text to the left, and what belongs to it centred.
std::string FramedColumns(const IReportDocument& report, std::span<const int32_t> thousandths);
/// A text between margins, without a frame.
std::string CommentColumns(const IReportDocument& report);
/// That many line feeds, as the end of a cell.
std::string RoomToWrite(int32_t lines);

}  // namespace vorex::survey_form
