#include <gmock/gmock.h>

#include <map>
#include <set>

#include "execution/execution_fixture.h"
#include "views/result_table.h"

namespace vorex::test {
namespace {

std::string MenuText(const std::vector<MenuItem>& items) {
    std::string text;
    for (const MenuItem& item : items)
        text += item.caption + (item.enabled ? "+" : "-") + (item.checked ? "x" : "") + "(" +
                MenuText(item.items) + ")";
    return text;
}

std::string RowText(const ResultRow& row) {
    std::string text = row.caption;
    for (const ResultCell& cell : row.cells)
        text += "|" + cell.text + "/" + std::to_string(cell.status) + (cell.checked ? "x" : "");
    return text;
}

/// What a window shows of a part of a guide, as text; the number is that of a row or channel.
std::string PartText(const IModalWindow& guide, WindowPart part, std::size_t number) {
    std::string text;
    const IResultTable& table = *guide.ShownTable();
    switch (part) {
        case WindowPart::kWindow:
            return guide.Visible() ? "shown" : "hidden";
        case WindowPart::kToolbar:
            for (const WindowButton& button : guide.Buttons())
                text += std::to_string(button.key) + button.caption + (button.visible ? "v" : "") +
                        (button.enabled ? "e" : "") + (button.checked ? "c" : "") + " ";
            return text;
        case WindowPart::kStatusText:
            return guide.StatusLine();
        case WindowPart::kStatus:
            return std::to_string(guide.StatusShown());
        case WindowPart::kLines:
            return testing::PrintToString(guide.VisibleLines());
        case WindowPart::kColumns:
            for (const ResultColumn& column : table.Columns())
                text += column.caption + std::to_string(column.width) + (column.hidden ? "h" : "") + " ";
            return text;
        case WindowPart::kTable:
            text = std::to_string(table.SelectedExposure());
            for (const ResultRow& statistic : table.Statistics()) text += RowText(statistic);
            return text;
        case WindowPart::kTableRow:
            return RowText(table.Rows()[number - 1]);
        case WindowPart::kWaveform:
            for (const WindowTab& tab : guide.Tabs())
                if (tab.type == number)
                    text = (tab.visible ? "v" : "") +
                           std::to_string(tab.waveform ? tab.waveform->ValueCount() : -1);
            return text;
        case WindowPart::kOverlay:
            return guide.OverlayText();
        case WindowPart::kDetails:
            return testing::PrintToString(guide.Details());
        case WindowPart::kMenu:
            return MenuText(guide.MenuItems());
    }
    return text;
}

/// The parts of a guide as a window keeps them: it draws those again that are reported.
class Drawing {
  public:
    explicit Drawing(const IModalWindow& guide) : mGuide(guide) {}

    void Redraw(WindowChange change) {
        if (mGuide.ShownTable() == nullptr) return;  // the guide is unloaded
        const std::size_t rows = mGuide.ShownTable()->Rows().size();
        if (change.part == WindowPart::kTable) {
            std::erase_if(parts, [](const auto& part) {
                return part.first.first == static_cast<int>(WindowPart::kTableRow);
            });
            for (std::size_t row = 1; row <= rows; ++row) Draw(WindowPart::kTableRow, row);
        }
        if (change.part != WindowPart::kTableRow)
            return Draw(change.part, change.part == WindowPart::kWaveform ? change.number : 0);
        if (change.number >= 1 && change.number <= rows) Draw(change.part, change.number);
        Draw(WindowPart::kTable, 0);  // the statistics below change with a row
    }
    void RedrawAll() {
        parts.clear();
        for (int part = 0; part <= static_cast<int>(WindowPart::kMenu); ++part)
            if (const auto each = static_cast<WindowPart>(part);
                each != WindowPart::kTableRow && each != WindowPart::kWaveform)
                Redraw({each});
        for (uint8_t type : {kKvWaveform, kMaWaveform}) Redraw({WindowPart::kWaveform, type});
    }

    std::map<std::pair<int, std::size_t>, std::string> parts;  ///< by part and number

  private:
    void Draw(WindowPart part, std::size_t number) {
        parts[{static_cast<int>(part), number}] = PartText(mGuide, part, number);
    }

    const IModalWindow& mGuide;
};

/// Compares, after each event of a run and each step, what was redrawn with what there is.
class GuideChangeTest : public ExecutionTest {
  protected:
    void Attach(FZRD47500TestGuide& guide) {
        drawn = std::make_unique<Drawing>(guide);
        drawn->RedrawAll();
        listening = guide.Changed.Listen([this](WindowChange change) {
            seen.insert(static_cast<int>(change.part));
            drawn->Redraw(change);
        });
    }
    void Compare(const std::string& after) {
        if (!drawn || !platform->shown->Visible()) return;
        Drawing full(Guide());
        full.RedrawAll();
        EXPECT_EQ(drawn->parts, full.parts) << where << ", after " << after;
        drawn->parts = full.parts;  // a fault is reported once
    }
    void ExposeAll(int32_t kind, const std::string& kvp) {
        ZrdReading zrd;
        zrd.kvpAvg = zrd.kvpMax = zrd.kvPpv = kvp;
        zrd.exposure = "10";
        zrd.exposureRate = "100";
        zrd.exposureTime = "100";
        zrd.hvl = "3.1";
        const PelomarkReading dose{"22.1", "760", "1.01", "0.2", "12.3", "123.0", "300"};
        const MasReading mas{"200", "20.1", "0", "0.61"};
        Queue([this](DetectorEvents&) { Compare("a tick"); });
        Queue(
            [=](DetectorEvents& events) {
                if (HasZrd(kind)) events.VTI_DataReady.Raise(zrd);
                if (HasPelomark(kind)) events.vti_TestSWDataReady.Raise(dose);
                if (HasMasMeter(kind)) events.vti_TestmAsDataReady.Raise(mas);
                if (HasZrd(kind)) events.vti_CheckExposureWaveform.Raise(kKvWaveform);
                if (HasMasMeter(kind)) events.vti_CheckExposureWaveform.Raise(kMaWaveform);
            },
            true);
    }

    std::unique_ptr<Drawing> drawn;
    Connection listening;
    std::set<int> seen;
    std::string where;
};

TEST_F(GuideChangeTest, WhatIsReportedIsAllThatChanges) {
    room->waveform = "0,40,80";
    room->targetFilters = {"Mo/Mo", "Mo/Rh"};
    room->defaultTargetFilter = "Mo/Mo";
    room->serialNumbers = "4711,88";
    int32_t menuChoice = 0;
    platform->onMenu = [&](const std::vector<MenuItem>&) { return menuChoice; };
    const auto choose = [&](int32_t id) {
        return Step([&menuChoice, id](FZRD47500TestGuide& guide) {
            menuChoice = id;
            guide.OpenMenu();
        });
    };
    for (int32_t test : {kRadioRepro, kRadioAccuracy, kRadioLinearity, kFluoroAccuracy, kFluoroExposure,
                         kMammoAccRepro, kMammoAec, kMammoRadiation}) {
        for (int32_t kind : {kZrd, kMasMeter, kPelomark, kZrdAndMas, kPelomarkAndMas}) {
            where = "test " + std::to_string(test) + ", kind " + std::to_string(kind);
            const auto element = Make(test, 2, kind);
            CConfigCommon& config = ConfigOf(*element);
            config.TestGuideConfig()->Buttons(kSkipButtonBit | kNaButtonBit);
            config.MASInputOverride = true;
            for (uint8_t row : {0, 1}) config.SetValue(row, ExposureColumn::kImport, "1");
            const auto table = [](FZRD47500TestGuide& guide) -> ResultTable& {
                return dynamic_cast<ResultTable&>(*guide.Table());
            };
            const auto run = [&](int exposures, int32_t button) {
                return Step([this, kind, exposures, button](FZRD47500TestGuide& guide) {
                    polls.clear();
                    for (int i = 0; i < exposures; ++i) ExposeAll(kind, std::to_string(80 + i));
                    if (button != 0) Queue([this, button](DetectorEvents&) { Guide().PressButton(button); });
                    guide.PressButton(guide_button::kStart);
                });
            };
            std::deque<Step> script = {
                Step([this](FZRD47500TestGuide& guide) { Attach(guide); }),
                run(1, guide_button::kStop),
                run(2, 0),
                Step([&](FZRD47500TestGuide& guide) {
                    table(guide).Press({1, 2});
                }),
                Step([&](FZRD47500TestGuide& guide) {
                    table(guide).PressRight({2, 3});
                    table(guide).ToggleCheck({1, 1});
                    table(guide).ToggleCheck({2, 2});
                }),
                Step([this, kind](FZRD47500TestGuide& guide) {
                    ExposeAll(kind, "95");
                    EXPECT_TRUE(guide.RedoExposure(1));
                }),
                choose(guide_menu::kShowAll),
                choose(guide_button::kFirstTargetFilter + 1),
                Step([&](FZRD47500TestGuide& guide) {
                    for (int32_t button : {guide_button::kManual, guide_button::kShunt, guide_button::kClamp,
                                           guide_button::kManual})
                        guide.PressButton(button);
                    for (uint8_t column = 1; column <= table(guide).Columns().size(); ++column)
                        table(guide).Edit({1, column}, "21");
                }),
                Step([&](FZRD47500TestGuide&) {
                    runEvents->vti_ZeroingmAs.Raise(true);
                    runEvents->vti_AddWakeUpButton.Raise(true);
                }),
                Step([&](FZRD47500TestGuide& guide) { guide.PressButton(guide_button::kWakeUp); }),
                Step([&](FZRD47500TestGuide& guide) { guide.PressButton(guide_button::kDisconnect); }),
            };
            std::deque<Step> compared;
            int number = 0;
            for (Step& step : script)
                compared.push_back(
                    [this, step = std::move(step), number = ++number](FZRD47500TestGuide& guide) {
                        step(guide);
                        Compare("step " + std::to_string(number));
                    });
            for (int32_t button : {guide_button::kNa, guide_button::kSkip}) {
                std::deque<Step> all = compared;
                all.push_back(Press(button));
                Perform(*element, std::move(all));
                listening.Disconnect();
                drawn.reset();
            }
        }
    }
    EXPECT_EQ(seen.size(), static_cast<std::size_t>(WindowPart::kMenu) + 1) << "every part was reported";
}

}  // namespace
}  // namespace vorex::test
