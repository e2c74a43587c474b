#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "execution/test_group.h"
#include "files/element_file.h"
#include "foundation/file_error.h"
#include "foundation/vocabulary.h"
#include "host/reference_host.h"
#include "library.h"
#include "mqsa/result_mqsa.h"
#include "results/result_common.h"

namespace {

using namespace vorex;

using Elements = std::vector<std::shared_ptr<ITestElement>>;

/// Judges what was judged before, as the command does.
void Judge(const Elements& elements, const ISelectedStandards* selected) {
    for (const auto& element : elements) {
        if (const auto container = std::dynamic_pointer_cast<ITestContainer>(element))
            Judge(container->NewEnum(), selected);
        const auto result = std::dynamic_pointer_cast<CResultCommon>(element->Result());
        if (result && (result->Status() == kPassed || result->Status() == kFailed))
            result->UpdateAllStatus(*element, selected);
        if (const auto survey = std::dynamic_pointer_cast<CResultMQSA>(element->Result())) {
            survey->RecalculatePages();
            survey->pUpdateMQSATestStatus();
            survey->UpdateStatus(*element, selected, survey->Status() == kNotApplicable);
        }
    }
}

void JudgeFile(const ElementFile& file) {
    const auto selected = file.Selected();
    Judge(file.Elements(), selected.get());
    for (const auto& element : file.Elements())
        if (const auto group = std::dynamic_pointer_cast<CTestGroup>(element))
            group->UpdateGroupStatus(selected.get());
}

}  // namespace

/// Any bytes are an element file or a clear error. A file that was read is written so that it reads as the
/// same file again, and its results can be judged.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    static const bool installed = [] {
        InstallLibrary(MakeReferenceHost({}));
        return true;
    }();
    (void)installed;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    std::unique_ptr<ElementFile> file;
    try {
        file = ElementFile::FromText(text, "input");
    } catch (const FileError&) {
        return 0;
    }
    const std::string first = file->Text();
    if (file->Text() != first) std::abort();
    // The thickness column of test 700 is filled from another one: it settles with the first load.
    const auto again = ElementFile::FromText(first, "written");
    const std::string second = again->Text();
    if (ElementFile::FromText(second, "written again")->Text() != second) std::abort();
    // What is judged is not lost by being saved: judged once more it comes to the same.
    JudgeFile(*again);
    const std::string judged = again->Text();
    const auto reloaded = ElementFile::FromText(judged, "judged");
    JudgeFile(*reloaded);
    if (reloaded->Text() != judged) std::abort();
    return 0;
}
