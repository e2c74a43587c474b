#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "foundation/operator_act.h"
#include "foundation/run_note.h"
#include "system/system.h"

/// The journal of a run: its input, every exposure as soon as it is stored, and every act of a person. Each
/// is a line, which is on the disk before the guide shows the exposure or does the act. A run that was killed
/// is resumed from it.
///
/// Each line is a checksum of eight hexadecimal digits, a blank and one JSON object. The checksum continues
/// from line to line, so a damaged, missing or moved line is found. A damaged last line was being written
/// when the program died: it is dropped.
namespace vorex {

/// The input of the run: enough to start again even if the user's files have changed.
struct JournalHead {
    std::string program;      ///< version of the program
    std::string started;      ///< date and time of the clock at the start
    std::string input;        ///< name of the element file
    std::string document;     ///< its content
    std::string instruments;  ///< as on the command line
    std::string room;         ///< file of the simulated room
    std::string operatorScript;
    std::string language;
    bool realTime = false;
    std::string report;          ///< file of the report that the run writes as well; empty for none
    std::string reportLanguage;  ///< empty: that of the program
    bool operator==(const JournalHead&) const = default;
};

/// A stored exposure (the row of one instrument, or a waveform), or an act of a person.
struct JournalRecord {
    int32_t element = 0;
    int32_t exposure = 0;  ///< from 1; 0 for an act and for a script
    int32_t source = 0;    ///< instrument of the row; 0 for a waveform
    int32_t waveform = 0;  ///< type of the waveform; 0 for a row
    std::string row;
    std::string statuses;  ///< a digit for each measurement of the exposure
    std::string time;
    int32_t opened = 0;          ///< elements opened by the operator
    int32_t steps = 0;           ///< steps taken at the last of them
    int32_t polls = 0;           ///< of the instruments, so far
    std::vector<RunNote> notes;  ///< answers of the instruments since the previous record
    std::optional<OperatorAct> act = {};
    std::string script = {};  ///< takes over from the earlier script here; such a record has nothing else
    bool operator==(const JournalRecord&) const = default;
};

struct JournalContent {
    JournalHead head;
    std::vector<JournalRecord> records;
    std::size_t wholeBytes = 0;  ///< up to the last whole line
    uint32_t checksum = 0;       ///< of that line
    bool torn = false;           ///< a last line was dropped

    /// True when a person operated the run: its acts are in the records.
    bool ByHand() const;
};

/// Reads a journal. Raises FileError for a text that is no journal, for another version, and for a damaged
/// line other than the last. The name is for messages.
JournalContent ParseJournal(std::string_view text, const std::string& name);
/// A line of a journal with its checksum, which continues that of the line before (0 for the first).
std::string JournalLine(std::string_view object, uint32_t& checksum);

/// The journal file of a run that writes an output file.
class RunJournal {
  public:
    /// Path of the journal of an output file: next to it, with ".journal" after its name.
    static std::filesystem::path PathFor(const std::filesystem::path& output);
    /// The output file, from its own name or that of its journal.
    static std::filesystem::path OutputOf(const std::filesystem::path& file);
    /// Begins a journal. Raises FileError when one exists already, whatever it holds, or when it cannot be
    /// written.
    static std::unique_ptr<RunJournal> Create(const std::filesystem::path& output, const JournalHead& head);
    /// Opens the journal of an interrupted run and stores its content. Raises FileError when there is none,
    /// when it cannot be read, and while the run is still under way.
    static std::unique_ptr<RunJournal> Open(const std::filesystem::path& output, JournalContent& content);

    /// A new journal without exposures is deleted together with its object, because nothing is lost with it.
    ~RunJournal();
    RunJournal(const RunJournal&) = delete;
    RunJournal& operator=(const RunJournal&) = delete;

    /// Returns when the record has reached the disk. Raises FileError; the file then ends with the previous
    /// record.
    void Append(const JournalRecord& record);
    /// Call when the result is saved and the journal is no longer needed.
    void Remove();

    const std::filesystem::path& Path() const { return mPath; }
    /// True when something would be lost without the file.
    bool Needed() const { return mNeeded; }

  private:
    explicit RunJournal(std::filesystem::path path) : mPath(std::move(path)) {}
    [[noreturn]] void Fail(const std::string& what, const std::error_code& reason) const;
    bool TakeUnbegun();
    static std::unique_ptr<RunJournal> Begin(std::unique_ptr<RunJournal> journal, const JournalHead& head);
    void AppendLine(const std::string& object);

    std::filesystem::path mPath;
    os::File mFile;
    std::size_t mSize = 0;  ///< of the whole lines
    uint32_t mChecksum = 0;
    bool mTorn = false;  ///< the file has more after the complete lines
    bool mNeeded = true;
};

/// What a journal holds, in words for a person: "7 exposures; the last is exposure 2 of element 4 at ...".
std::string JournalSummary(const JournalContent& content);
/// A record in words: "exposure 2 of element 4", "press 202 at element 4".
std::string NameOf(const JournalRecord& record);

}  // namespace vorex
