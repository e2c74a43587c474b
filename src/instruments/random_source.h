#pragma once

#include <cstdint>

namespace vorex {

/// A stream of random numbers that is the same on every machine and with every library: whole-number
/// arithmetic, and a normal distribution as the sum of twelve uniform numbers (mean 0, deviation 1, never
/// beyond 6), which needs no function whose last digit depends on a library.
class RandomSource {
  public:
    /// Streams of one seed with different numbers are independent.
    RandomSource(uint64_t seed, uint64_t stream) : mState(Mixed(seed) ^ Mixed(~stream)) {}

    /// From 0 to below 1.
    double Uniform() {
        constexpr double kStep = 1.0 / (uint64_t{1} << 53);
        return static_cast<double>(Next() >> 11) * kStep;
    }
    double Normal() {
        double sum = -6;
        for (int i = 0; i < 12; ++i) sum += Uniform();
        return sum;
    }
    /// A factor around 1 with a relative standard deviation.
    double Around(double relativeDeviation) { return 1 + relativeDeviation * Normal(); }

  private:
    static constexpr uint64_t kIncrement = 0x9E3779B97F4A7C15U;

    // The finalizer of "splitmix64" (Steele, Lea, Flood 2014), published in the public domain.
    static uint64_t Mixed(uint64_t z) {
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9U;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBU;
        return z ^ (z >> 31);
    }
    uint64_t Next() { return Mixed(mState += kIncrement); }

    uint64_t mState;
};

}  // namespace vorex
