#include "instruments/room.h"

#include <iterator>

#include "files/json_reader.h"

namespace vorex {

namespace {

constexpr int32_t kVersion = 1;
constexpr std::string_view kExpected = R"(a room such as {"room":1,"radiography":{"kvpErrorPercent":8}})";

/// Reads a number into a field of the target, within its sensible bounds.
template <auto Field, int Lowest, int Highest, typename Target>
void ReadNumberInto(In in, const JsonValue& value, Target& to) {
    to.*Field = in.Number(value, Lowest, Highest);
}
/// The same for a divisor: more than 0.
template <auto Field, int Highest, typename Target>
void ReadPositiveInto(In in, const JsonValue& value, Target& to) {
    constexpr double kLowest = 0.01;
    to.*Field = in.Number(value, kLowest, Highest);
}
/// A coefficient of variation. Six deviations, the largest random value, still leave a tenth of the quantity.
template <auto Field, typename Target>
void ReadVariationInto(In in, const JsonValue& value, Target& to) {
    constexpr double kHighest = 0.15;
    to.*Field = in.Number(value, 0, kHighest);
}
template <auto Field, int Lowest, int Highest, typename Target>
void ReadWholeInto(In in, const JsonValue& value, Target& to) {
    to.*Field = in.Whole(value, Lowest, Highest);
}
template <auto Field, typename Target>
void ReadFlagInto(In in, const JsonValue& value, Target& to) {
    to.*Field = in.Flag(value);
}

struct GeneratorName {
    std::string_view name;
    Generator generator;
};
constexpr GeneratorName kGenerators[] = {
    {"single phase", Generator::kSinglePhase},
    {"6-pulse", Generator::kSixPulse},
    {"12-pulse", Generator::kTwelvePulse},
    {"high frequency", Generator::kHighFrequency},
};

void ReadGenerator(In in, const JsonValue& value, UnitSettings& to) {
    const GeneratorName* row = FindNamed(kGenerators, in.Text(value));
    if (!row) in.Refuse(value, "one of " + ListOfNames(kGenerators));
    to.generator = row->generator;
}

constexpr MemberRow<MaStation> kStationMembers[] = {
    {"mA", ReadPositiveInto<&MaStation::ma, 2000>, kRequired},
    {"errorPercent", ReadNumberInto<&MaStation::errorPercent, -90, 900>, kRequired},
};

void ReadStations(In in, const JsonValue& value, UnitSettings& to) {
    to.maStations.clear();
    for (const JsonValue& item : in.List(value)) {
        MaStation station;
        in.Members(item, "an mA station", kStationMembers, station);
        to.maStations.push_back(station);
    }
}

using U = UnitSettings;
using I = InstrumentSettings;
using C = ChamberSettings;

/// Keys of one X-ray unit. All three units have the same keys, so that no key is refused because of its unit.
constexpr MemberRow<U> kUnitMembers[] = {
    {"lowestKv", ReadPositiveInto<&U::lowestKv, 200>},
    {"highestKv", ReadPositiveInto<&U::highestKv, 200>},
    {"generator", ReadGenerator},
    {"ripplePercent", ReadNumberInto<&U::ripplePercent, 0, 100>},
    {"kvpErrorPercent", ReadNumberInto<&U::kvpErrorPercent, -50, 50>},
    {"kvpVariation", ReadVariationInto<&U::kvpVariation>},
    {"outputVariation", ReadVariationInto<&U::outputVariation>},
    {"outputPercent", ReadPositiveInto<&U::outputPercent, 1000>},
    {"maVariationPercent", ReadNumberInto<&U::maVariationPercent, 0, 15>},
    {"maStations", ReadStations},
    {"riseMs", ReadNumberInto<&U::riseMs, 0, 100>},
    {"fallMs", ReadNumberInto<&U::fallMs, 0, 100>},
    {"timerErrorMs", ReadNumberInto<&U::timerErrorMs, -100, 100>},
    {"timerErrorPercent", ReadNumberInto<&U::timerErrorPercent, -90, 900>},
    {"timerDriftPercent", ReadNumberInto<&U::timerDriftPercent, 0, 100>},
    {"addedFiltrationMm", ReadNumberInto<&U::addedFiltrationMm, 0, 10>},
    {"distanceCm", ReadPositiveInto<&U::distanceCm, 1000>},
    {"aecMas", ReadPositiveInto<&U::aecMas, 1000>},
    {"aecVariation", ReadVariationInto<&U::aecVariation>},
    {"aecSwingPercent", ReadNumberInto<&U::aecSwingPercent, 0, 90>},
    {"entranceRate", ReadPositiveInto<&U::entranceRate, 1000>},
    {"highestRate", ReadPositiveInto<&U::highestRate, 1000>},
    {"highestRateHighLevel", ReadPositiveInto<&U::highestRateHighLevel, 1000>},
    {"phantomCm", ReadNumberInto<&U::phantomCm, 0, 60>},
    {"phantomDoublingCm", ReadPositiveInto<&U::phantomDoublingCm, 60>},
    {"pulseRate", ReadPositiveInto<&U::pulseRate, 120>},
    {"pulseWidthMs", ReadPositiveInto<&U::pulseWidthMs, 100>},
};

constexpr MemberRow<C> kChamberMembers[] = {
    {"name", [](In in, const JsonValue& value, C& to) { to.name = in.Text(value); }},
    {"volumeCm3", ReadPositiveInto<&C::volumeCm3, 2000>},
    {"factor", ReadPositiveInto<&C::factor, 100>},
    {"referenceTemperature", ReadNumberInto<&C::referenceTemperature, 0, 40>},
    {"leakageFa", ReadNumberInto<&C::leakageFa, 0, 1000000>},
    {"biasVolts", ReadNumberInto<&C::biasVolts, -1000, 1000>},
};

constexpr MemberRow<I> kInstrumentMembers[] = {
    {"kind", ReadWholeInto<&I::kind, kNoDetector, kPelomarkAndMas>},
    {"decimalComma", ReadFlagInto<&I::decimalComma>},
    {"battery", ReadNumberInto<&I::battery, 0, 100>},
    {"batteryPerExposure", ReadNumberInto<&I::batteryPerExposure, 0, 100>},
    {"charging", ReadFlagInto<&I::charging>},
    {"kvNoisePercent", ReadNumberInto<&I::kvNoisePercent, 0, 15>},
    {"doseNoisePercent", ReadNumberInto<&I::doseNoisePercent, 0, 15>},
    {"hvlNoisePercent", ReadNumberInto<&I::hvlNoisePercent, 0, 15>},
    {"timeNoiseMs", ReadNumberInto<&I::timeNoiseMs, 0, 100>},
    {"pollsBeforeExposure", ReadWholeInto<&I::pollsBeforeExposure, 0, 100000>},
    {"fluoroscopySeconds", ReadWholeInto<&I::fluoroscopySeconds, 1, 600>},
    {"temperatureC", ReadNumberInto<&I::temperatureC, 0, 50>},
    {"pressureKpa", ReadNumberInto<&I::pressureKpa, 50, 120>},
    {"chamber", [](In in, const JsonValue& value,
                   I& to) { in.Members(value, value.name, kChamberMembers, to.chamber); }},
};

constexpr MemberRow<LinkSettings> kLinkMembers[] = {
    {"lostAfterExposures", ReadWholeInto<&LinkSettings::lostAfterExposures, 0, 100000>},
    {"waveformFailurePercent", ReadNumberInto<&LinkSettings::waveformFailurePercent, 0, 100>},
};

template <auto Unit>
void ReadUnit(In in, const JsonValue& value, Room& to) {
    UnitSettings& unit = to.*Unit;
    in.Members(value, value.name, kUnitMembers, unit);
    if (unit.lowestKv > unit.highestKv)
        in.Fail(value, "found " + value.name + " with \"lowestKv\" above \"highestKv\"", "at most the same");
}

constexpr MemberRow<Room> kRoomMembers[] = {
    {"room", [](In in, const JsonValue& value, Room&) { in.Version(value, kVersion); }},
    {"description", [](In in, const JsonValue& value, Room&) { in.Text(value); }},
    {"radiography", ReadUnit<&Room::radiography>},
    {"fluoroscopy", ReadUnit<&Room::fluoroscopy>},
    {"mammography", ReadUnit<&Room::mammography>},
    {"instruments", [](In in, const JsonValue& value,
                       Room& to) { in.Members(value, value.name, kInstrumentMembers, to.instruments); }},
    {"link",
     [](In in, const JsonValue& value, Room& to) { in.Members(value, value.name, kLinkMembers, to.link); }},
};

}  // namespace

UnitSettings Room::DefaultFluoroscopy() {
    UnitSettings unit;
    unit.highestKv = 125;
    unit.distanceCm = 65;
    return unit;
}

UnitSettings Room::DefaultMammography() {
    UnitSettings unit;
    unit.lowestKv = 20;
    unit.highestKv = 40;
    unit.distanceCm = 60;
    return unit;
}

Room ParseRoom(std::string_view text, std::string_view file) {
    Room room;
    room.file = file;
    const JsonReader in(file);
    const JsonValue content = in.Parse(text, kExpected);
    if (!content.Find("room")) in.Refuse(content, kExpected);
    in.Members(content, "the room", kRoomMembers, room);
    return room;
}

Room LoadRoom(const std::string& path) {
    return ParseRoom(ReadWholeFile(path, "a room", kMaxRoomBytes), path);
}

}  // namespace vorex
