#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <utility>

namespace vorex {

/// The place of a fault in a file. Unknown parts keep their construction value.
struct FilePlace {
    std::string file;
    int32_t line = 0;     ///< from 1
    std::string element;  ///< ID of the test element, as it is in the file
};

/// A file that cannot be read or written. The message says where, what happened and what was expected.
class FileError : public std::runtime_error {
  public:
    FileError(FilePlace place, std::string fault, std::string expected = {})
        : std::runtime_error(Message(place, fault, expected)),
          mPlace(std::move(place)),
          mFault(std::move(fault)),
          mExpected(std::move(expected)) {}

    const std::string& File() const { return mPlace.file; }
    int32_t Line() const { return mPlace.line; }
    const std::string& Element() const { return mPlace.element; }
    const std::string& Fault() const { return mFault; }
    const std::string& Expected() const { return mExpected; }

  private:
    static std::string Message(const FilePlace& place, const std::string& fault,
                               const std::string& expected) {
        std::string message = place.file;
        if (place.line > 0) message += ":" + std::to_string(place.line);
        if (!message.empty()) message += ": ";
        if (!place.element.empty()) message += "element " + place.element + ": ";
        message += fault;
        if (!expected.empty()) message += "; expected " + expected;
        return message;
    }

    FilePlace mPlace;
    std::string mFault;
    std::string mExpected;
};

/// A file that could not be written: the disk failed, not the user.
class FileWriteError : public FileError {
  public:
    using FileError::FileError;
};

}  // namespace vorex
