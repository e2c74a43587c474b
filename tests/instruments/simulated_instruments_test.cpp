#include "instruments/simulated_instruments.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "support/detector_notes.h"

namespace vorex {
namespace {

using Texts = std::vector<std::string>;

/// Everything ready at once, and a technique that every unit accepts.
Room QuickRoom() {
    Room room;
    room.instruments.pollsBeforeExposure = 1;
    room.instruments.fluoroscopySeconds = 1;
    return room;
}

Console ConsoleFor(int32_t kind, UnitKind unit) {
    Technique technique;
    technique.unit = unit;
    technique.detectorKind = kind;
    technique.kv = 80;
    technique.ma = unit == UnitKind::kFluoroscopic ? 3 : 200;
    technique.mas = 20;
    technique.distanceCm = 100;
    return [technique] { return technique; };
}

TEST(SimulatedInstruments, EachKindNamesItsInstrumentsAndAnnouncesWhatItDoes) {
    struct Case {
        int32_t kind;
        bool fluoroscopy, resets;
        const char *serials, *dates;
        Texts names;
        Texts heard;  ///< the first word, and the state of a signal
    };
    // clang-format off
    const Case cases[] = {
        {kZrd, false, false, "4711", "2026-01-15", {"ZRD 47500WD"}, {"detector", "waveform 1"}},
        {kMasMeter, false, false, "88", "2026-02-01", {"mAs meter"},
         {"zeroing on", "zeroing off", "mas", "waveform 3"}},
        {kPelomark, false, false, "2205", "2026-01-20", {"Pelomark"}, {"dosimeter"}},
        {kPelomark, false, true, "2205", "2026-01-20", {"Pelomark"},
         {"sensorReset on", "sensorReset off", "dosimeter"}},
        {kZrdAndMas, false, false, "4711,88", "2026-01-15,2026-02-01", {"ZRD 47500WD", "mAs meter"},
         {"zeroing on", "zeroing off", "detector", "mas", "waveform 1", "waveform 3"}},
        {kPelomarkAndMas, false, true, "2205,88", "2026-01-20,2026-02-01", {"Pelomark", "mAs meter"},
         {"zeroing on", "zeroing off", "sensorReset on", "sensorReset off", "dosimeter", "mas", "waveform 3"}},
        {kZrd, true, false, "4711", "2026-01-15", {"ZRD 47500WD"},
         {"stopButton on", "stopButton off", "detector", "waveform 1"}},
    };
    // clang-format on
    for (const Case& c : cases) {
        const UnitKind unit = c.fluoroscopy ? UnitKind::kFluoroscopic : UnitKind::kRadiographic;
        Room room = QuickRoom();
        room.instruments.chamber.name = "A6";
        SimulatedInstruments instruments(room, 1, ConsoleFor(c.kind, unit));
        const auto service = instruments.CreateService();
        EXPECT_EQ(service->IonChamberName(), "A6");
        EXPECT_EQ(service->SerialNumbers(), c.serials) << c.kind;
        EXPECT_EQ(service->CalibrationDates(), c.dates) << c.kind;
        for (std::size_t i = 0; i < c.names.size(); ++i)
            EXPECT_EQ(service->InstrumentName(static_cast<int32_t>(i)), c.names[i]) << c.kind;
        EXPECT_EQ(service->InstrumentName(static_cast<int32_t>(c.names.size())), "") << c.kind;
        EXPECT_EQ(service->FirmwareVersion(), 12);

        Texts heard;
        test::Note(*service, heard);
        service->Mode(c.fluoroscopy ? "FLUORO" : "RADIO");
        DosimeterSettings settings;
        settings.autoReset = c.resets ? 1 : 0;
        service->SyncDosimeter(settings);
        service->Armed(true);
        service->BeginRun();
        for (int poll = 0; poll < 20; ++poll) {
            const bool done = service->ExposureDone();
            ASSERT_TRUE(service->Poll(0, 0)) << c.kind;
            if (done) break;
        }
        for (std::string& words : heard)
            if (words.starts_with("detector") || words.starts_with("mas") || words.starts_with("dosimeter"))
                words.resize(words.find(' '));
        EXPECT_EQ(heard, c.heard) << c.kind;
    }
}

TEST(SimulatedInstruments, AnExposureThatNeedsNoPollIsDoneAtOnce) {
    Room room = QuickRoom();
    room.instruments.pollsBeforeExposure = 0;
    SimulatedInstruments instruments(room, 1, ConsoleFor(kZrd, UnitKind::kRadiographic));
    const auto service = instruments.CreateService();
    service->Armed(true);
    service->BeginRun();
    EXPECT_TRUE(service->ExposureDone());
}

}  // namespace
}  // namespace vorex
