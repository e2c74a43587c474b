#pragma once

#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "config/config_common.h"
#include "execution/test_common.h"
#include "foundation/sequence_state.h"
#include "guide/test_guide_form.h"
#include "host/execution_pipe.h"
#include "support/fake_detector.h"
#include "support/fake_platform.h"
#include "support/library_test.h"

namespace vorex::test {

/// Elements in the reference host, performed with instruments that answer what a test sets, and operated by
/// steps that a test gives: one for each time that a guide is idle.
class ExecutionTest : public LibraryTest {
  protected:
    using Step = std::function<void(FZRD47500TestGuide&)>;

    ExecutionTest() {
        ReferenceHostOptions options;
        options.platform = platform;
        options.createDetectorService = [room = room] { return std::make_shared<FakeDetector>(room); };
        options.createDetectorLink = [room = room] { return std::make_shared<FakeLink>(room); };
        options.exposureStored = [this](const StoredExposure& stored) {
            if (onStored) onStored(stored);
        };
        InstallReferenceHost(options);
        room->onPoll = [this](DetectorEvents& events) { OnPoll(events); };
        platform->onIdle = [this] { OnIdle(); };
    }

    std::shared_ptr<CTestCommon> Make(int32_t testId, uint8_t exposures, int32_t kind = kZrd) {
        auto element = CTestCommon::Create();
        element->Initialize(nullptr, kPlugInId, testId);
        CConfigCommon& config = ConfigOf(*element);
        config.DefaultValues(testId);
        config.pNoOfExposures = exposures;
        config.DetectorName = kind;
        room->kind = kind;
        return element;
    }
    static CConfigCommon& ConfigOf(const CTestCommon& element) {
        return *std::dynamic_pointer_cast<CConfigCommon>(element.Configuration());
    }
    static std::shared_ptr<CResultCommon> ResultOf(const CTestCommon& element) {
        return std::dynamic_pointer_cast<CResultCommon>(element.Result());
    }

    /// Performs an element; when the steps are used up, the guide is left by Next.
    void Perform(ITestElement& element, std::deque<Step> operations) {
        steps = std::move(operations);
        element.Perform(pipe);
    }
    static Step Press(int32_t button) {
        return [button](FZRD47500TestGuide& guide) { EXPECT_TRUE(guide.PressButton(button)) << button; };
    }
    static Step Start() { return Press(guide_button::kStart); }

    /// A reading of the ZRD 47500 for the next tick of a run, and a waveform of a type.
    void Expose(const std::string& kvp, const std::string& time = "100", uint8_t waveform = 0) {
        ZrdReading reading;
        reading.kvpAvg = kvp;
        reading.kvpMax = reading.kvPpv = kvp;
        reading.exposure = "10";
        reading.exposureRate = "100";
        reading.exposureTime = time;
        reading.hvl = "3.1";
        Queue(
            [reading, waveform](DetectorEvents& events) {
                events.VTI_DataReady.Raise(reading);
                if (waveform != 0) events.vti_CheckExposureWaveform.Raise(waveform);
            },
            true);
    }
    /// Something that a tick of a run brings.
    void Queue(std::function<void(DetectorEvents&)> happening, bool done = false) {
        polls.push_back({std::move(happening), done});
        room->exposureDone = polls.front().second;
    }

    FZRD47500TestGuide& Guide() { return dynamic_cast<FZRD47500TestGuide&>(*platform->shown); }

    std::shared_ptr<FakePlatform> platform = std::make_shared<FakePlatform>();
    std::shared_ptr<FakeInstruments> room = std::make_shared<FakeInstruments>();
    std::shared_ptr<class MtiList> instruments = std::make_shared<class MtiList>();
    std::shared_ptr<ExecutionPipe> pipe =
        std::make_shared<ExecutionPipe>(instruments, std::make_shared<class SelectedStandards>());
    std::function<void(const StoredExposure&)> onStored;
    std::deque<Step> steps;
    std::deque<std::pair<std::function<void(DetectorEvents&)>, bool>> polls;
    DetectorEvents* runEvents = nullptr;  ///< of the service that the latest run polled

  private:
    void OnIdle() {
        if (steps.empty()) {
            if (!Guide().PressButton(guide_button::kNext)) Guide().Visible(false);
            return;
        }
        const Step step = std::move(steps.front());
        steps.pop_front();
        step(Guide());
    }
    void OnPoll(DetectorEvents& events) {
        if (!Guide().Element()->Sequence()->gRunActive) return;
        runEvents = &events;
        if (polls.empty()) return;
        const auto happening = std::move(polls.front().first);
        polls.pop_front();
        happening(events);
        room->exposureDone = !polls.empty() && polls.front().second;
    }
};

}  // namespace vorex::test
