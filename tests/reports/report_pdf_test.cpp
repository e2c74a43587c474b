#include "reports/report_pdf.h"

#include <gtest/gtest.h>

#include "support/file_fault.h"
#include "test_paths.h"

namespace vorex::host_test {
namespace {

std::string FaultOf(const std::filesystem::path& file) {
    return test::MessageOf([&] { LoadPdfModule(file); });
}

TEST(ReportPdf, AModuleOfAnotherVersionIsNotUsed) {
    const std::string file(test::kPdfOfAnotherVersion);
    EXPECT_EQ(FaultOf(file), file +
                                 ": has version 2 of the PDF module; expected version 1, which is installed "
                                 "with this program");
}

TEST(ReportPdf, AFileThatIsNoModuleIsNamed) {
    const std::string file = std::string(test::kSourceDir) + "/README.md";
    EXPECT_NE(FaultOf(file).find(file + ": cannot be loaded: "), std::string::npos);
}

}  // namespace
}  // namespace vorex::host_test
