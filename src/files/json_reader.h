#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

/// The one reader of JSON files, and a strict one: a name that occurs twice, a member that no table has, a
/// value of another type, and text after the end are errors. Each names the file, the line, what was found
/// and what was expected.
namespace vorex {

/// A value of a JSON text.
struct JsonValue {
    enum class Kind : uint8_t { kNull, kFlag, kWhole, kNumber, kText, kList, kObject };

    Kind kind = Kind::kNull;
    int32_t line = 0;              ///< of the file
    std::string name;              ///< of the member; an item has the name of its list
    std::string text;              ///< a text; a number, true, false or null as JSON writes it
    double number = 0;             ///< of kWhole and kNumber
    std::vector<JsonValue> items;  ///< of a list, or members of an object, in the order of the file

    /// The member of an object, or null.
    const JsonValue* Find(std::string_view member) const;
    bool IsObject() const { return kind == Kind::kObject; }
    bool IsNumber() const { return kind == Kind::kWhole || kind == Kind::kNumber; }
};

/// A value of a file, for a message: always ASCII and short.
std::string Shown(const JsonValue& value);
std::string ShownText(std::string_view text);

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

/// Reads values from JSON. Every operation raises FileError.
class JsonReader {
  public:
    /// Line 0: the text is the whole file. Otherwise it is that line of the file.
    explicit JsonReader(std::string_view file, int32_t line = 0) : mFile(file), mLine(line) {}

    int32_t Line() const { return mLine; }
    /// The reader of a part of the file; the place is named in its errors, after that of this reader.
    JsonReader Below(int32_t line, std::string_view place) const;

    [[noreturn]] void Fail(std::string_view fault, std::string_view expected) const;
    /// As above, at the line of the value.
    [[noreturn]] void Fail(const JsonValue& at, std::string_view fault, std::string_view expected) const;
    /// Raises the error of a value that is not what was expected.
    [[noreturn]] void Refuse(const JsonValue& value, std::string_view expected) const;

    /// Parses a text. Deep nesting and more values than any file needs are refused during parsing.
    JsonValue Parse(std::string_view text, std::string_view expected, int32_t mostValues = 10'000) const;

    bool Flag(const JsonValue& value) const;
    int32_t Whole(const JsonValue& value, int32_t lowest, int32_t highest) const;
    double Number(const JsonValue& value, double lowest, double highest) const;
    const std::string& AnyText(const JsonValue& value) const;
    /// Refuses control characters: the text goes to a terminal and into element files.
    const std::string& Text(const JsonValue& value) const;
    const std::vector<JsonValue>& List(const JsonValue& value) const;
    const std::vector<JsonValue>& Object(const JsonValue& value, std::string_view expected) const;
    std::vector<std::string> Texts(const JsonValue& value) const;
    /// Refuses any other version of a format.
    void Version(const JsonValue& value, int32_t version) const;

    /// Passes each member of an object to its row of the table. `what` names the object in messages.
    template <typename Rows, typename Target>
    void Members(const JsonValue& value, std::string_view what, const Rows& rows, Target& target) const {
        const std::string names = ListOfNames(rows);
        for (const JsonValue& member : Object(value, "an object with " + names)) {
            const auto* row = FindNamed(rows, member.name);
            if (!row) FailAsUnknown(member, what, names);
            row->read(*this, member, target);
        }
        for (const auto& row : rows)
            if (row.required && !value.Find(row.name)) FailAsMissing(value, what, row.name, names);
    }

  private:
    [[noreturn]] void FailAsUnknown(const JsonValue& member, std::string_view what,
                                    std::string_view names) const;
    [[noreturn]] void FailAsMissing(const JsonValue& object, std::string_view what, std::string_view name,
                                    std::string_view names) const;

    std::string mFile;
    int32_t mLine;
    std::string mPlace;
};

/// A member of an object, and the function that stores its value.
template <typename Target>
struct MemberRow {
    std::string_view name;
    void (*read)(const JsonReader& in, const JsonValue& value, Target& target);
    bool required = false;
};
inline constexpr bool kRequired = true;
using In = const JsonReader&;

/// Reads a file from disk; `expected` says what it should be. Raises FileError and nothing else.
std::string ReadWholeFile(const std::filesystem::path& path, std::string_view expected,
                          std::size_t mostBytes);

}  // namespace vorex
