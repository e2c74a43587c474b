#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iterator>

#include "foundation/vocabulary.h"

/// Sets of tests and of detector kinds for the rows of tables, and the proofs that a table covers all of
/// them. Every set that more than one file needs is here.
namespace vorex {

/// A set of measuring tests. A set with anything else does not compile.
class TestSet {
  public:
    constexpr TestSet() = default;
    // Implicit, so that a row for one test names just the test.
    constexpr TestSet(int32_t testId) : mBits(BitOf(testId)) {}
    constexpr TestSet(std::initializer_list<int32_t> ids) {
        for (int32_t id : ids) mBits |= BitOf(id);
    }

    /// The set of every identifier, including future ones and those of no measuring test. It differs from the
    /// set that lists all present tests.
    static constexpr TestSet All() {
        TestSet set;
        set.mAll = true;
        return set;
    }
    /// The measuring tests of a detector mode.
    static constexpr TestSet OfMode(int32_t mode) {
        TestSet set;
        for (const TestRow& row : kTestCatalogue)
            if (row.mode == mode) set.mBits |= BitOf(row.id);
        return set;
    }
    /// The measuring tests that a set lacks.
    static constexpr TestSet AllBut(TestSet lacking) {
        TestSet set;
        for (int32_t id : kMeasuringTests)
            if (!lacking.Has(id)) set.mBits |= BitOf(id);
        return set;
    }

    constexpr bool Has(int32_t testId) const {
        for (std::size_t i = 0; i < kMeasuringTests.size(); ++i)
            if (kMeasuringTests[i] == testId) return mAll || (mBits >> i & 1U) != 0;
        return mAll;
    }
    constexpr bool IsAll() const { return mAll; }
    friend constexpr TestSet operator|(TestSet a, TestSet b) {
        a.mBits |= b.mBits;
        a.mAll = a.mAll || b.mAll;
        return a;
    }
    friend constexpr bool operator==(TestSet a, TestSet b) { return a.mBits == b.mBits && a.mAll == b.mAll; }

  private:
    static_assert(kMeasuringTests.size() <= 32);

    static constexpr uint32_t BitOf(int32_t testId) {
        for (std::size_t i = 0; i < kMeasuringTests.size(); ++i)
            if (kMeasuringTests[i] == testId) return 1U << i;
        throw "not a measuring test";  // not constant: the compiler rejects the set
    }

    uint32_t mBits = 0;
    bool mAll = false;
};

inline constexpr TestSet kAllTests = TestSet::All();

inline constexpr TestSet kRadiography = TestSet::OfMode(kRadio);
inline constexpr TestSet kFluoroscopy = TestSet::OfMode(kFluoro);
inline constexpr TestSet kMammography = TestSet::OfMode(kMammo);

// The sets below list their tests: a new test is in none of them until it is added.

/// Tests with a generator setup: mAs, or mA and time.
inline constexpr TestSet kWithGeneratorSetup = {kRadioRepro, kRadioAccuracy, kRadioLinearity};
/// Tests that choose the unit of the distance to the detector.
inline constexpr TestSet kWithDistanceUnit = {kRadioRepro, kRadioAccuracy, kRadioLinearity, kFluoroAccuracy,
                                              kFluoroExposure};
/// Tests with one focal spot, and with one kV and time, for all exposures.
inline constexpr TestSet kWithOneFocalSpot = {kRadioRepro, kFluoroAccuracy, kFluoroExposure, kMammoAccRepro};
inline constexpr TestSet kWithOneKv = {kRadioRepro, kRadioLinearity, kMammoAccRepro, kMammoRadiation};
/// Tests whose exposures have a focal spot, a kV, an mA or an mAs each.
inline constexpr TestSet kWithFocalSpots = {kRadioAccuracy, kRadioLinearity};
inline constexpr TestSet kWithKvs = TestSet{kRadioAccuracy} | kFluoroscopy;
inline constexpr TestSet kWithMas = {kRadioAccuracy, kRadioLinearity, kMammoAec, kMammoRadiation};
inline constexpr TestSet kWithMa = TestSet{kRadioAccuracy, kRadioLinearity} | kFluoroscopy;
/// Tests with statistics over all exposures.
inline constexpr TestSet kWithStatistics = {kRadioRepro, kMammoAccRepro, kMammoAec};

/// A set of detector kinds.
class KindSet {
  public:
    constexpr KindSet(std::initializer_list<int32_t> kinds) {
        for (int32_t kind : kinds) mBits |= 1U << static_cast<unsigned>(kind);
    }
    constexpr bool Has(int32_t kind) const {
        return kind >= 0 && kind < 32 && (mBits >> static_cast<unsigned>(kind) & 1U) != 0;
    }
    friend constexpr KindSet operator|(KindSet a, KindSet b) {
        a.mBits |= b.mBits;
        return a;
    }

  private:
    uint32_t mBits = 0;
};

inline constexpr KindSet kZrdKinds = {kZrd, kZrdAndMas};
inline constexpr KindSet kPelomarkKinds = {kPelomark, kPelomarkAndMas};
inline constexpr KindSet kMasKinds = {kMasMeter, kZrdAndMas, kPelomarkAndMas};
inline constexpr KindSet kCombinedKinds = {kZrdAndMas, kPelomarkAndMas};

// ---------------------------------------------------------------------------------------------- proofs

/// True when a row of one of the tables names the test in `tests` or `testId`. A row for all tests names none
/// of them, so it does not hide that the rows of a new test are missing.
template <typename... Tables>
constexpr bool NamesTest(int32_t testId, const Tables&... tables) {
    const auto named = [testId](const auto& table) {
        for (const auto& row : table) {
            if constexpr (requires { row.tests; }) {
                if (!row.tests.IsAll() && row.tests.Has(testId)) return true;
            } else {
                if (row.testId == testId) return true;
            }
        }
        return false;
    };
    return (named(tables) || ...);
}

/// True when every measuring test is named by a row of one of the tables. For `static_assert` after a table.
template <typename... Tables>
constexpr bool CoversEveryMeasuringTest(const Tables&... tables) {
    for (int32_t id : kMeasuringTests)
        if (!NamesTest(id, tables...)) return false;
    return true;
}

/// True when the tables name the measuring tests that the catalogue says have such rows, and no other.
template <typename... Tables>
constexpr bool HoldsOwnRows(OwnRows own, const Tables&... tables) {
    for (const TestRow& test : kTestCatalogue)
        if (test.mode != kEnteredByHand && NamesTest(test.id, tables...) != ((test.own & own) != 0))
            return false;
    return true;
}

/// True when every measuring test has exactly one row, and no other test has one.
template <typename Table>
constexpr bool HasOneRowPerMeasuringTest(const Table& table) {
    return std::size(table) == kMeasuringTests.size() && CoversEveryMeasuringTest(table);
}

/// True when each detector kind has exactly one row, by its `kind`.
template <typename Table>
constexpr bool HasOneRowPerDetectorKind(const Table& table) {
    for (int32_t kind : kDetectorKinds) {
        int rows = 0;
        for (const auto& row : table) rows += row.kind == kind ? 1 : 0;
        if (rows != 1) return false;
    }
    return std::size(table) == kDetectorKinds.size();
}

constexpr bool KindSetsMatchTheKinds() {
    for (int32_t kind : kDetectorKinds) {
        if (kZrdKinds.Has(kind) != HasZrd(kind) || kPelomarkKinds.Has(kind) != HasPelomark(kind) ||
            kMasKinds.Has(kind) != HasMasMeter(kind))
            return false;
        if (!HasZrd(kind) && !HasPelomark(kind) && !HasMasMeter(kind)) return false;
    }
    return true;
}
static_assert(KindSetsMatchTheKinds(), "a detector kind has its instruments in every set");
static_assert((kRadiography | kFluoroscopy | kMammography) == TestSet::AllBut({}));

}  // namespace vorex
