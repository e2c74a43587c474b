#include "instruments/room.h"

#include <gtest/gtest.h>

#include <exception>
#include <optional>
#include <string>
#include <vector>

namespace vorex {
namespace {

/// A number of a room: where it is, its good value and its bounds.
struct Quantity {
    std::string block;
    std::string key;
    double (*value)(const Room&);
    double good;
    double lowest;
    double highest;
    double step;  ///< beyond a bound by this much is refused
};

#define UNIT(key, good, low, high)                                                                           \
    {                                                                                                        \
        "radiography", #key, [](const Room& r) { return double(r.radiography.key); }, good, low, high, 0.001 \
    }
#define INSTRUMENT(key, good, low, high, step)                                                              \
    {                                                                                                       \
        "instruments", #key, [](const Room& r) { return double(r.instruments.key); }, good, low, high, step \
    }

// clang-format off
const std::vector<Quantity>& Quantities() {
    static const std::vector<Quantity> quantities = {
        UNIT(lowestKv, 40, 0.01, 150), UNIT(highestKv, 150, 40, 200),
        UNIT(kvpErrorPercent, 0.5, -50, 50), UNIT(kvpVariation, 0.002, 0, 0.15),
        UNIT(outputVariation, 0.004, 0, 0.15), UNIT(outputPercent, 100, 0.01, 1000),
        UNIT(maVariationPercent, 0.5, 0, 15), UNIT(riseMs, 1, 0, 100), UNIT(fallMs, 1, 0, 100),
        UNIT(timerErrorMs, 0.2, -100, 100), UNIT(timerErrorPercent, 0.5, -90, 900),
        UNIT(timerDriftPercent, 0, 0, 100), UNIT(addedFiltrationMm, 1.5, 0, 10),
        UNIT(distanceCm, 100, 0.01, 1000), UNIT(aecMas, 80, 0.01, 1000), UNIT(aecVariation, 0.005, 0, 0.15),
        UNIT(aecSwingPercent, 0, 0, 90), UNIT(entranceRate, 43, 0.01, 1000),
        UNIT(highestRate, 80, 0.01, 1000), UNIT(highestRateHighLevel, 160, 0.01, 1000),
        UNIT(phantomCm, 30, 0, 60), UNIT(phantomDoublingCm, 3.5, 0.01, 60), UNIT(pulseRate, 15, 0.01, 120),
        UNIT(pulseWidthMs, 8, 0.01, 100),
        INSTRUMENT(kind, 0, 0, 5, 1), INSTRUMENT(battery, 80, 0, 100, 0.001),
        INSTRUMENT(batteryPerExposure, 0.05, 0, 100, 0.001), INSTRUMENT(kvNoisePercent, 0.05, 0, 15, 0.001),
        INSTRUMENT(doseNoisePercent, 0.2, 0, 15, 0.001), INSTRUMENT(hvlNoisePercent, 0.3, 0, 15, 0.001),
        INSTRUMENT(timeNoiseMs, 0.02, 0, 100, 0.001), INSTRUMENT(pollsBeforeExposure, 2, 0, 100000, 1),
        INSTRUMENT(fluoroscopySeconds, 5, 1, 600, 1), INSTRUMENT(temperatureC, 22, 0, 50, 0.001),
        INSTRUMENT(pressureKpa, 101.325, 50, 120, 0.001),
        {"chamber", "volumeCm3", [](const Room& r) { return r.instruments.chamber.volumeCm3; }, 6, 0.01, 2000, 0.001},
        {"chamber", "factor", [](const Room& r) { return r.instruments.chamber.factor; }, 1, 0.01, 100, 0.001},
        {"chamber", "referenceTemperature", [](const Room& r) { return r.instruments.chamber.referenceTemperature; }, 20, 0, 40, 0.001},
        {"chamber", "leakageFa", [](const Room& r) { return r.instruments.chamber.leakageFa; }, 5, 0, 1000000, 0.001},
        {"chamber", "biasVolts", [](const Room& r) { return r.instruments.chamber.biasVolts; }, 300, -1000, 1000, 0.001},
        {"link", "lostAfterExposures", [](const Room& r) { return double(r.link.lostAfterExposures); }, 0, 0, 100000, 1},
        {"link", "waveformFailurePercent", [](const Room& r) { return r.link.waveformFailurePercent; }, 0, 0, 100, 0.001},
    };
    return quantities;
}
// clang-format on

std::optional<Room> With(const Quantity& quantity, double value) {
    std::string member = "{\"" + quantity.key + "\":" + std::to_string(value);
    if (quantity.step == 1) member.erase(member.find('.'));
    member += "}";
    if (quantity.block == "chamber")
        member = "\"instruments\":{\"chamber\":" + member + "}";
    else
        member = "\"" + quantity.block + "\":" + member;
    try {
        return ParseRoom("{\"room\":1," + member + "}", "room.json");
    } catch (const std::exception& error) {
        EXPECT_NE(std::string(error.what()).find(quantity.key), std::string::npos) << error.what();
        return std::nullopt;
    }
}

TEST(RoomBounds, EachNumberIsReadUpToItsBoundsAndRefusedBeyond) {
    for (const Quantity& quantity : Quantities()) {
        const std::string name = quantity.block + " " + quantity.key;
        EXPECT_EQ(quantity.value(Room()), quantity.good) << name;
        for (double bound : {quantity.lowest, quantity.highest}) {
            const auto room = With(quantity, bound);
            ASSERT_TRUE(room) << name << " at " << bound;
            EXPECT_NEAR(quantity.value(*room), bound, 1e-9) << name;
        }
        EXPECT_FALSE(With(quantity, quantity.lowest - quantity.step)) << name << " below its bound";
        EXPECT_FALSE(With(quantity, quantity.highest + quantity.step)) << name << " above its bound";
    }
}

TEST(RoomBounds, TheUnitsDifferInTheirRangeAndDistance) {
    const Room room;
    EXPECT_EQ(room.fluoroscopy.lowestKv, 40);
    EXPECT_EQ(room.fluoroscopy.highestKv, 125);
    EXPECT_EQ(room.fluoroscopy.distanceCm, 65);
    EXPECT_EQ(room.mammography.lowestKv, 20);
    EXPECT_EQ(room.mammography.highestKv, 40);
    EXPECT_EQ(room.mammography.distanceCm, 60);
    EXPECT_FALSE(room.instruments.decimalComma || room.instruments.charging);
    EXPECT_EQ(room.instruments.chamber.name, "IC 6");
    EXPECT_FALSE(room.radiography.ripplePercent);
}

}  // namespace
}  // namespace vorex
