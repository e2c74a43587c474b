#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "app/open_file.h"
#include "app/session.h"
#include "refusal.h"

using namespace vorex;

/// Any bytes are an element file or a clear error. A file that was read is written so that it reads the same
/// again, and its results can be judged.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    static const Session session;
    IAppListener listener;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto file = fuzz::ReadOrRefused("input", [&] { return OpenFile::FromText(text, "input"); });
    if (!file) return 0;
    const std::string first = (*file)->Text();
    if ((*file)->Text() != first) std::abort();
    // The thickness column of test 700 is filled from another one: it settles with the first load.
    const auto again = OpenFile::FromText(first, "written");
    const std::string second = again->Text();
    if (OpenFile::FromText(second, "written again")->Text() != second) std::abort();
    // Saving does not change the verdicts: judged once more they are the same.
    again->Judge(listener);
    const std::string judged = again->Text();
    const auto reloaded = OpenFile::FromText(judged, "judged");
    reloaded->Judge(listener);
    if (reloaded->Text() != judged) std::abort();
    return 0;
}
