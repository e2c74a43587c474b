#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

/// Strict reading of the JSON files of the instruments: what is not told by a table is refused, with one
/// message that names the place, what was found there and what was expected.
namespace vorex {

using Json = nlohmann::json;

/// A recording or a room that cannot be used.
class InstrumentFileError : public std::runtime_error {
  public:
    /// Line 0: the fault is one of the file as a whole, or named by its key.
    InstrumentFileError(std::string_view file, int32_t line, std::string_view found,
                        std::string_view expected);
};

/// What is in a file, for a message: ASCII only and short, whatever it is.
std::string Shown(const Json& value);
std::string ShownText(std::string_view text);
/// `"name":value` for a message.
std::string Named(std::string_view name, const Json& value);

/// The names of table rows as a list for a person.
template <typename Rows>
std::string ListOfNames(const Rows& rows) {
    std::string text;
    for (const auto& row : rows) text += (text.empty() ? "\"" : ", \"") + std::string(row.name) + '"';
    return text;
}

/// The row of a name, or null.
template <typename Rows>
auto FindNamed(const Rows& rows, std::string_view name) {
    const auto found =
        std::find_if(std::begin(rows), std::end(rows), [&](const auto& row) { return row.name == name; });
    return found == std::end(rows) ? nullptr : &*found;
}

/// Takes values out of JSON that is at one place of a file.
class JsonReader {
  public:
    JsonReader(std::string_view file, int32_t line) : mFile(file), mLine(line) {}

    int32_t Line() const { return mLine; }

    [[noreturn]] void Fail(std::string_view found, std::string_view expected) const {
        throw InstrumentFileError(mFile, mLine, found, expected);
    }

    /// Parses a text. A name that is there twice, deep nesting and more values than any file needs are
    /// refused while it is parsed; `rule` says what a sound text has.
    Json Parse(std::string_view text, std::string_view expected, std::string_view rule) const;

    bool Flag(std::string_view name, const Json& value) const;
    int32_t Whole(std::string_view name, const Json& value, int32_t lowest, int32_t highest) const;
    double Number(std::string_view name, const Json& value, double lowest, double highest) const;
    /// Control characters are refused: a result file could not hold them.
    std::string Text(std::string_view name, const Json& value) const;
    const Json& Array(std::string_view name, const Json& value) const;
    std::vector<std::string> Texts(std::string_view name, const Json& value) const;

    /// Walks the members of an object and hands each to its row of the table: a row has a name and `read`.
    template <typename Rows, typename Target>
    void Members(std::string_view name, const Json& value, const Rows& rows, Target& target) const {
        if (!value.is_object()) Fail(Named(name, value), "an object with " + ListOfNames(rows));
        for (const auto& [member, content] : value.items()) {
            const auto* row = FindNamed(rows, member);
            if (!row)
                Fail("unknown " + Shown(member) + " in " + std::string(name), "one of " + ListOfNames(rows));
            row->read(*this, row->name, content, target);
        }
    }

  private:
    std::string_view mFile;
    int32_t mLine;
};

/// A member of an object, and what puts its value where it belongs.
template <typename Target>
struct MemberRow {
    std::string_view name;
    void (*read)(const JsonReader& in, std::string_view name, const Json& value, Target& target);
};
using In = const JsonReader&;
using Name = std::string_view;

/// Reads a file from disk; `expected` says what it should be. Throws InstrumentFileError and nothing else.
std::string ReadWholeFile(const std::string& path, std::string_view expected, std::size_t mostBytes);

}  // namespace vorex
