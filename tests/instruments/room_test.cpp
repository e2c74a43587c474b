#include "instruments/room.h"

#include <gtest/gtest.h>

#include <string>

#include "foundation/number_text.h"
#include "support/file_fault.h"

namespace vorex {
namespace {

/// A number of a room file: the key, the field that it sets, the value of a good room, and the bounds.
template <typename Group, typename Number>
struct Bounds {
    const char* key;
    Number Group::*field;
    Number good, lowest, highest;
};

constexpr double kAboveZero = 0.01;

constexpr Bounds<UnitSettings, double> kLowestKv[] = {
    {"lowestKv", &UnitSettings::lowestKv, 40, kAboveZero, 200}};
constexpr Bounds<UnitSettings, double> kHighestKv[] = {
    {"highestKv", &UnitSettings::highestKv, 150, kAboveZero, 200}};
constexpr Bounds<UnitSettings, double> kUnit[] = {
    {"kvpErrorPercent", &UnitSettings::kvpErrorPercent, 0.5, -50, 50},
    {"kvpVariation", &UnitSettings::kvpVariation, 0.002, 0, 0.15},
    {"outputVariation", &UnitSettings::outputVariation, 0.004, 0, 0.15},
    {"outputPercent", &UnitSettings::outputPercent, 100, kAboveZero, 1000},
    {"maVariationPercent", &UnitSettings::maVariationPercent, 0.5, 0, 15},
    {"riseMs", &UnitSettings::riseMs, 1, 0, 100},
    {"fallMs", &UnitSettings::fallMs, 1, 0, 100},
    {"timerErrorMs", &UnitSettings::timerErrorMs, 0.2, -100, 100},
    {"timerErrorPercent", &UnitSettings::timerErrorPercent, 0.5, -90, 900},
    {"timerDriftPercent", &UnitSettings::timerDriftPercent, 0, 0, 100},
    {"addedFiltrationMm", &UnitSettings::addedFiltrationMm, 1.5, 0, 10},
    {"distanceCm", &UnitSettings::distanceCm, 100, kAboveZero, 1000},
    {"aecMas", &UnitSettings::aecMas, 80, kAboveZero, 1000},
    {"aecVariation", &UnitSettings::aecVariation, 0.005, 0, 0.15},
    {"aecSwingPercent", &UnitSettings::aecSwingPercent, 0, 0, 90},
    {"entranceRate", &UnitSettings::entranceRate, 43, kAboveZero, 1000},
    {"highestRate", &UnitSettings::highestRate, 80, kAboveZero, 1000},
    {"highestRateHighLevel", &UnitSettings::highestRateHighLevel, 160, kAboveZero, 1000},
    {"phantomCm", &UnitSettings::phantomCm, 30, 0, 60},
    {"phantomDoublingCm", &UnitSettings::phantomDoublingCm, 3.5, kAboveZero, 60},
    {"pulseRate", &UnitSettings::pulseRate, 15, kAboveZero, 120},
    {"pulseWidthMs", &UnitSettings::pulseWidthMs, 8, kAboveZero, 100},
};
constexpr Bounds<InstrumentSettings, double> kInstruments[] = {
    {"battery", &InstrumentSettings::battery, 80, 0, 100},
    {"batteryPerExposure", &InstrumentSettings::batteryPerExposure, 0.05, 0, 100},
    {"kvNoisePercent", &InstrumentSettings::kvNoisePercent, 0.05, 0, 15},
    {"doseNoisePercent", &InstrumentSettings::doseNoisePercent, 0.2, 0, 15},
    {"hvlNoisePercent", &InstrumentSettings::hvlNoisePercent, 0.3, 0, 15},
    {"timeNoiseMs", &InstrumentSettings::timeNoiseMs, 0.02, 0, 100},
    {"temperatureC", &InstrumentSettings::temperatureC, 22, 0, 50},
    {"pressureKpa", &InstrumentSettings::pressureKpa, 101.325, 50, 120},
};
constexpr Bounds<InstrumentSettings, int32_t> kWholeInstruments[] = {
    {"kind", &InstrumentSettings::kind, 0, 0, 5},
    {"pollsBeforeExposure", &InstrumentSettings::pollsBeforeExposure, 2, 0, 100000},
    {"fluoroscopySeconds", &InstrumentSettings::fluoroscopySeconds, 5, 1, 600},
};
constexpr Bounds<ChamberSettings, double> kChamber[] = {
    {"volumeCm3", &ChamberSettings::volumeCm3, 6, kAboveZero, 2000},
    {"factor", &ChamberSettings::factor, 1, kAboveZero, 100},
    {"referenceTemperature", &ChamberSettings::referenceTemperature, 20, 0, 40},
    {"leakageFa", &ChamberSettings::leakageFa, 5, 0, 1000000},
    {"biasVolts", &ChamberSettings::biasVolts, 300, -1000, 1000},
};
constexpr Bounds<LinkSettings, double> kLink[] = {
    {"waveformFailurePercent", &LinkSettings::waveformFailurePercent, 0, 0, 100},
};
constexpr Bounds<LinkSettings, int32_t> kWholeLink[] = {
    {"lostAfterExposures", &LinkSettings::lostAfterExposures, 0, 0, 100000},
};

/// Each number is accepted at its bounds and refused beyond them. "#" in the text is its place.
template <typename Group, typename Number, std::size_t N, typename GroupOf>
void ExpectBounds(const Bounds<Group, Number> (&rows)[N], const std::string& around, GroupOf groupOf) {
    const auto room = [&](const Bounds<Group, Number>& row, double number) {
        std::string text = around;
        const std::string member = "\"" + std::string(row.key) + "\":" + PlainText(number);
        return ParseRoom(text.replace(text.find('#'), 1, member), "room.json");
    };
    for (const Bounds<Group, Number>& row : rows) {
        EXPECT_EQ(groupOf(ParseRoom(R"({"room":1})", "room.json")).*row.field, row.good) << row.key;
        for (const Number number : {row.lowest, row.highest})
            EXPECT_EQ(groupOf(room(row, number)).*row.field, number) << row.key;
        for (const double beyond : {row.lowest - 0.005, row.highest + 0.005}) {
            const std::string fault = test::MessageOf([&] { room(row, beyond); });
            EXPECT_NE(fault.find(row.key), std::string::npos) << row.key << beyond << fault;
        }
    }
}

TEST(Room, EveryNumberHasTheValueOfAGoodRoomAndItsBounds) {
    const auto radiography = [](const Room& room) { return room.radiography; };
    const auto instruments = [](const Room& room) { return room.instruments; };
    const auto chamber = [](const Room& room) { return room.instruments.chamber; };
    const auto link = [](const Room& room) { return room.link; };
    ExpectBounds(kLowestKv, R"({"room":1,"radiography":{"highestKv":200,#}})", radiography);
    ExpectBounds(kHighestKv, R"({"room":1,"radiography":{"lowestKv":0.01,#}})", radiography);
    ExpectBounds(kUnit, R"({"room":1,"radiography":{#}})", radiography);
    ExpectBounds(kInstruments, R"({"room":1,"instruments":{#}})", instruments);
    ExpectBounds(kWholeInstruments, R"({"room":1,"instruments":{#}})", instruments);
    ExpectBounds(kChamber, R"({"room":1,"instruments":{"chamber":{#}}})", chamber);
    ExpectBounds(kLink, R"({"room":1,"link":{#}})", link);
    ExpectBounds(kWholeLink, R"({"room":1,"link":{#}})", link);
}

TEST(Room, EachUnitHasItsOwnVoltagesAndDistance) {
    const Room room =
        ParseRoom(R"({"room":1,"fluoroscopy":{"riseMs":3},"mammography":{"riseMs":4}})", "room.json");
    EXPECT_EQ(room.radiography.riseMs, 1);
    EXPECT_EQ(room.fluoroscopy.riseMs, 3);
    EXPECT_EQ(room.fluoroscopy.lowestKv, 40);
    EXPECT_EQ(room.fluoroscopy.highestKv, 125);
    EXPECT_EQ(room.fluoroscopy.distanceCm, 65);
    EXPECT_EQ(room.mammography.riseMs, 4);
    EXPECT_EQ(room.mammography.lowestKv, 20);
    EXPECT_EQ(room.mammography.highestKv, 40);
    EXPECT_EQ(room.mammography.distanceCm, 60);
}

TEST(Room, StationsFlagsAndWordsAreRead) {
    const Room room = ParseRoom(
        R"({"room":1,"radiography":{"generator":"6-pulse","ripplePercent":13,
            "maStations":[{"mA":200,"errorPercent":-30},{"mA":2000,"errorPercent":900}]},
            "instruments":{"decimalComma":true,"charging":true,"chamber":{"name":"IC 60"}}})",
        "room.json");
    EXPECT_EQ(room.radiography.generator, Generator::kSixPulse);
    EXPECT_EQ(room.radiography.ripplePercent, 13);
    ASSERT_EQ(room.radiography.maStations.size(), 2U);
    EXPECT_EQ(room.radiography.maStations[0].ma, 200);
    EXPECT_EQ(room.radiography.maStations[1].errorPercent, 900);
    EXPECT_TRUE(room.instruments.decimalComma);
    EXPECT_TRUE(room.instruments.charging);
    EXPECT_EQ(room.instruments.chamber.name, "IC 60");
    EXPECT_EQ(room.mammography.generator, Generator::kHighFrequency);
    EXPECT_FALSE(room.mammography.ripplePercent) << "what is usual for the generator";
}

}  // namespace
}  // namespace vorex
