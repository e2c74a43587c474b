#include <benchmark/benchmark.h>

#include <algorithm>
#include <memory>
#include <numeric>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "cli/headless_operator.h"
#include "cli/operator_script.h"
#include "files/element_file.h"
#include "foundation/vocabulary.h"
#include "host/execution_pipe.h"
#include "workbench.h"

// One exposure in mid-run: from the event of the detector service to the row that is stored, judged against
// ten limits and shown in the guide.
//
// The run is complete, with the guide, the reference host and recorded instruments. Once the timed exposure
// has been delivered, the service raises its events again and again, and each time the exposure is computed,
// stored, judged and shown next to the others. Only the first time differs: the row does not exist yet.

namespace vorex::bench {
namespace {

/// Raises the events of an exposure once more, as often as the benchmark asks, while the run waits.
class Repeater {
  public:
    Repeater(benchmark::State& state, const RecordedExposure& exposure, int32_t number)
        : mState(state), mExposure(exposure), mNumber(number) {}

    void Watch(const std::shared_ptr<IDetectorService>& service) { mServices.push_back(service); }
    /// Has to be called once the element has connected: handlers run in the order of connection.
    void Connect() {
        for (const auto& service : std::exchange(mServices, {})) {
            DetectorEvents& events = service->events;
            if (mExposure.mas)
                events.vti_TestmAsDataReady.Connect([this, &events](const MasReading&) { Repeat(events); });
            else
                events.VTI_DataReady.Connect([this, &events](const ZrdReading&) { Repeat(events); });
        }
    }

  private:
    void Repeat(const DetectorEvents& events) {
        if (mRepeating || ++mDelivered != mNumber) return;
        mRepeating = true;
        for (auto _ : mState) {
            events.VTI_DataReady.Raise(*mExposure.detector);
            if (mExposure.mas) events.vti_TestmAsDataReady.Raise(*mExposure.mas);
        }
        mRepeating = false;
    }

    benchmark::State& mState;
    const RecordedExposure& mExposure;
    int32_t mNumber;
    int32_t mDelivered = 0;
    bool mRepeating = false;
    std::vector<std::shared_ptr<IDetectorService>> mServices;
};

/// By the time the operator is asked, element and guide have connected to their services.
class WatchingOperator : public HeadlessOperator {
  public:
    WatchingOperator(const std::string& script, const IInstruments& instruments, Repeater& repeater)
        : HeadlessOperator(ParseOperatorScript(script), instruments), mRepeater(repeater) {}
    bool OnIdle(IModalWindow& window) override {
        mRepeater.Connect();
        return HeadlessOperator::OnIdle(window);
    }

  private:
    Repeater& mRepeater;
};

/// A test holds at most 255 exposures: with all of them stored the last one is taken again by Redo.
void BM_Exposure(benchmark::State& state) {
    const auto kind = static_cast<int32_t>(state.range(0));
    const auto stored = static_cast<int32_t>(state.range(1));
    constexpr int32_t kMostExposures = 255;
    const bool full = stored == kMostExposures;
    const Scratch scratch;
    const std::string file = Sequence(Element(1, kRadioRepro, full ? stored : stored + 1, kTenLimits));
    const Recording recording =
        ParseRecording(RecordingHead(kind) + RecordedExposures(kind, stored + 1), "benchmark");
    RecordedInstruments instruments(recording);
    Repeater repeater(state, recording.exposures.back(), stored + 1);
    ReferenceHostOptions options;
    options.createDetectorService = [&] {
        auto service = instruments.CreateService();
        repeater.Watch(service);
        return service;
    };
    options.createDetectorLink = [&] { return instruments.CreateLink(); };
    const auto platform = Install(std::move(options));
    WatchingOperator person(full ? "start,redo 255,next" : "start,next", instruments, repeater);
    platform->Operator(&person);
    const auto elements = ElementFile::FromText(file, "benchmark");
    const auto pipe = std::make_shared<ExecutionPipe>(elements->Instruments(), elements->Selected());
    RunSequence(elements->Elements(), pipe);
    if (person.Ended() || instruments.ExposuresDelivered() != stored + 1)
        throw std::runtime_error("the run broke off: " + person.Error());
}
BENCHMARK(BM_Exposure)
    ->ArgNames({"kind", "stored"})
    ->Args({kZrd, 30})
    ->Args({kZrdAndMas, 255})
    ->Unit(benchmark::kMicrosecond);

/// The work that no program could avoid for an exposure: the texts of its statistics' columns are read and
/// summed, and two texts are written for each.
void BM_ExposureTextsOnly(benchmark::State& state) {
    const auto columns = static_cast<std::size_t>(state.range(0));
    const auto rows = static_cast<std::size_t>(state.range(1));
    std::vector<std::vector<std::string>> texts(columns);
    for (std::size_t column = 0; column < columns; ++column)
        for (std::size_t row = 0; row < rows; ++row)
            texts[column].push_back(std::to_string(column * 10) + "." + std::to_string(row % 10));
    for (auto _ : state) {
        std::vector<double> values(rows);
        for (const std::vector<std::string>& column : texts) {
            std::transform(column.begin(), column.end(), values.begin(), ReadNumber);
            const double mean =
                std::accumulate(values.begin(), values.end(), 0.0) / static_cast<double>(rows);
            benchmark::DoNotOptimize(PlainText(mean));
            benchmark::DoNotOptimize(PlainText(SampleStdDev(values) / mean));
        }
    }
}
BENCHMARK(BM_ExposureTextsOnly)
    ->ArgNames({"columns", "rows"})
    ->Args({7, 31})
    ->Args({11, 255})
    ->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace vorex::bench
