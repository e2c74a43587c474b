#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "foundation/class_registry.h"
#include "foundation/host_services.h"
#include "guide/test_guide_form.h"
#include "host/execution_pipe.h"
#include "host/test_guide_config.h"
#include "support/fake_detector.h"
#include "support/fake_element.h"
#include "support/fake_platform.h"
#include "support/library_test.h"
#include "support/limits.h"
#include "support/result_row.h"
#include "views/result_table.h"

namespace vorex::test {

class GuideLimits : public FakeLimits {
  public:
    std::shared_ptr<IStandardCollection> Standards() const override { return list; }
    std::shared_ptr<StandardCollection> list = std::make_shared<StandardCollection>();
};

/// An element as the guide sees it.
class GuideElement : public ResultElement {
  public:
    std::shared_ptr<ILimitData> Limits() const override { return guideLimits; }

    std::shared_ptr<GuideLimits> guideLimits = std::make_shared<GuideLimits>();
};

/// A guide opened for a test; events are kept as words, in order.
class GuideTest : public LibraryTest {
  protected:
    GuideTest() {
        static constexpr ClassEntry kClasses[] = {
            {"XResultListView", [] { return std::shared_ptr<LibraryObject>(new XResultListView); }},
            {"XResultFlxGrid", [] { return std::shared_ptr<LibraryObject>(new XResultFlxGrid); }},
            {"XResultMQSA", [] { return std::shared_ptr<LibraryObject>(new XResultListView); }},
        };
        HostServices services;
        services.platform = platform;
        services.createTestGuideConfig = [] { return std::make_shared<TestGuideConfig>(); };
        services.createDetectorService = [room = room] { return std::make_shared<FakeDetector>(room); };
        services.createDetectorLink = [room = room] { return std::make_shared<FakeLink>(room); };
        services.log = [this](std::string_view line) { log.emplace_back(line); };
        Install(services);
        InstallClasses(kClasses);
    }
    ~GuideTest() override { guide.reset(); }

    /// Detector option 0 leaves the kind to the detector.
    void Configure(int32_t testId, int32_t kind, int32_t option) {
        room->kind = kind;
        config = std::make_shared<CConfigCommon>();
        config->DefaultValues(testId);
        config->DetectorName = kind;
        config->DetectorOption = option;
        config->pMeasurementExposure = kUnitR;
        config->pMeasurementExposureRateUnit = 1;
        config->pMeasurementFluoroType = kContinuous;
        config->pMeasurementTimeUnit = kMilliseconds;
        element->config = config;
        element->result = std::make_shared<CResultCommon>();
        element->result->Initialize(config);
    }

    /// Gives the element a standard and selects it.
    void Select(std::initializer_list<std::shared_ptr<ExpectedResult>> limits) {
        element->guideLimits->list->Add(StandardOf("Site", limits));
        pipe = std::make_shared<ExecutionPipe>(
            nullptr, std::make_shared<SelectedStandards>(std::vector<StandardName>{{"Site", "1"}}));
    }
    void Open() {
        guide = std::make_shared<FZRD47500TestGuide>();
        Record();
        guide->Load();
        guide->ToolbarState(GuideState::kIdle, false);
        guide->Initialize(element, pipe, {"line 1", "line 2", "line 3"});
        guide->BuildColumns(config, false);
    }
    void Open(int32_t testId, int32_t kind = kZrd, int32_t option = kNoDetector) {
        Configure(testId, kind, option);
        Open();
    }

    /// Takes an exposure as a running element does: a row for the result, judged and shown.
    void Expose(uint8_t number, const std::string& row, int32_t source = kSourceZrd) {
        element->result->StoreResult(RowInOrder(*element->result, row, source), source);
        element->result->UpdateStatus(*element, pipe->SelectedStandards().get(), number);
        guide->ShowResult(element, number);
    }

    ResultTable& Table() { return dynamic_cast<ResultTable&>(*guide->Table()); }
    const WindowButton& Button(int32_t key) { return *guide->Button(key); }
    /// The events since the last call, joined by blanks.
    std::string Events() {
        std::string all;
        for (const std::string& event : mEvents) all += (all.empty() ? "" : " ") + event;
        mEvents.clear();
        return all;
    }

    std::shared_ptr<FakePlatform> platform = std::make_shared<FakePlatform>();
    std::shared_ptr<FakeInstruments> room = std::make_shared<FakeInstruments>();
    std::shared_ptr<GuideElement> element = std::make_shared<GuideElement>();
    std::shared_ptr<ExecutionPipe> pipe =
        std::make_shared<ExecutionPipe>(nullptr, std::make_shared<SelectedStandards>());
    std::shared_ptr<CConfigCommon> config;
    std::shared_ptr<FZRD47500TestGuide> guide;
    std::vector<std::string> log;

  private:
    void Record() {
        TestGuideEvents& events = guide->events;
        const auto note = [this](std::string word) { return [this, word] { mEvents.push_back(word); }; };
        events.StartTest.Connect(note("Start"));
        events.StopTest.Connect(note("Stop"));
        events.AbortTest.Connect(note("Abort"));
        events.Skip.Connect(note("Skip"));
        events.NextTest.Connect(note("Next"));
        events.Previous.Connect(note("Previous"));
        events.NA.Connect(note("NA"));
        events.WakeUpDetector.Connect(note("WakeUp"));
        events.DisplayIonChamber.Connect(note("IonChamber"));
        events.MASInputChanged.Connect(note("MASInputChanged"));
        events.ConnectionLost.Connect(note("ConnectionLost"));
        events.ItemClicked.Connect(
            [this](bool flag) { mEvents.push_back(flag ? "ItemClicked1" : "ItemClicked0"); });
        events.ReDoExposure.Connect([this](uint8_t n) { mEvents.push_back("Redo" + std::to_string(n)); });
        events.TargetFilterChangedEvent.Connect([this](const std::string& name) { mEvents.push_back(name); });
        events.DrawWaveForm.Connect([this](uint8_t n, bool current, uint8_t type) {
            mEvents.push_back("Draw" + std::to_string(n) + (current ? "+" : "-") + std::to_string(type));
        });
    }

    std::vector<std::string> mEvents;
};

}  // namespace vorex::test
