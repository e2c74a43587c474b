#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "foundation/host_contract.h"

/// The drawing of the printed survey. Widths are fractions of the report's printable width.
namespace vorex::survey_form {

/// One rule from the left to the right edge of the page, at the present height.
void DrawRule(IReportDocument& report);
/// Columns of the same width, framed.
std::string EqualColumns(const IReportDocument& report, int32_t count);
/// Framed columns with widths in thousandths: a text at the left, its values centred.
std::string FramedColumns(const IReportDocument& report, std::span<const int32_t> thousandths);
/// A text between margins, without a frame.
std::string CommentColumns(const IReportDocument& report);
/// That many line feeds, as the end of a cell.
std::string RoomToWrite(int32_t lines);

}  // namespace vorex::survey_form
