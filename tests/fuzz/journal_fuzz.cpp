#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "files/run_journal.h"
#include "refusal.h"

namespace {

/// True when the text is a journal; any other text is refused with one error that names its place.
bool IsRead(std::string_view text) {
    const auto content =
        vorex::fuzz::ReadOrRefused("run.journal:", [&] { return vorex::ParseJournal(text, "run.journal"); });
    if (!content) return false;
    if (content->wholeBytes > text.size() || (!content->torn && content->wholeBytes != text.size()))
        std::abort();
    if (vorex::JournalSummary(*content).empty()) std::abort();
    return true;
}

/// The lines as a journal with correct checksums, so that the code after the check is reached.
std::string Sealed(std::string_view objects) {
    std::string text;
    uint32_t checksum = 0;
    while (!objects.empty()) {
        const std::size_t end = objects.find('\n');
        text += vorex::JournalLine(objects.substr(0, end), checksum);
        objects.remove_prefix(end == std::string_view::npos ? objects.size() : end + 1);
    }
    return text;
}

}  // namespace

/// A journal is read or refused. If it can be read, each beginning of it with a complete first line can be
/// read too.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    IsRead(input);
    const std::string sealed = Sealed(input);
    if (!IsRead(sealed)) return 0;
    const std::size_t head = sealed.find('\n') + 1;
    for (std::size_t end = head; end < sealed.size(); end += 1 + sealed.size() / 16)
        if (!IsRead(std::string_view(sealed).substr(0, end))) std::abort();
    return 0;
}
