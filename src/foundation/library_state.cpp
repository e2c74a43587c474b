#include "foundation/library_state.h"

#include "foundation/vocabulary.h"

namespace vorex {

namespace {

LibraryState Fresh() {
    LibraryState state;
    state.exposureCaption = text::kExposureCaption;
    return state;
}

}  // namespace

LibraryState& State() {
    static LibraryState state = Fresh();
    return state;
}

void ResetState() {
    State() = Fresh();
}

}  // namespace vorex
