#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "foundation/host_contract.h"
#include "foundation/library_state.h"

namespace vorex {

class ElementFile;

/// Keeps the outcomes of the mammography tests apart where a file holds several surveys: the status cells
/// belong to the process, and would show every survey those of the last room.
///
/// A mammography test counts for the survey of its group: the next one behind it, or else the last one. A
/// group without a survey counts for the group around it. A survey begins with the outcomes saved with it.
class CellKeeper {
  public:
    /// The file must outlive the keeper.
    explicit CellKeeper(const ElementFile& file);

    /// Brings in the cells of the survey that an element counts for, before the element is performed or
    /// judged. Other elements leave the cells alone.
    void Enter(const ITestElement& element);
    /// Gives each survey what was measured for it, also behind it. [after the run]
    void HandOut();

  private:
    using Elements = std::vector<std::shared_ptr<ITestElement>>;
    using Place = std::size_t;  ///< in the order of the file
    struct Entry {
        const ITestElement* element;
        std::optional<std::size_t> survey;
    };
    struct Level {
        std::vector<Place> tests;  ///< that have no survey yet
        std::vector<Place> surveys;
    };
    Level Visit(const Elements& elements, std::vector<Entry>& entries);

    const ElementFile& mFile;
    std::map<const ITestElement*, std::size_t> mSurveyOf;
    std::vector<StatusCells> mCells;  ///< of each survey
    std::optional<std::size_t> mPresent;
};

}  // namespace vorex
