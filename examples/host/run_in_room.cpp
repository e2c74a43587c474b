// A second program on the application layer, on one page: it runs an element file in a simulated X-ray room
// and prints the verdict of each element. Nothing is saved.
//
//   run_in_room FILE [ROOM]

#include <exception>
#include <iostream>
#include <memory>

#include "app/instrument_choice.h"
#include "app/open_file.h"
#include "app/run.h"
#include "execution/test_guide_contract.h"
#include "foundation/utilities.h"
#include "host/headless_platform.h"

/// Presses Start, then Next. If Next is not enabled, the guide is closed.
class Presser : public vorex::IOperator, public vorex::IHeadlessOperator {
    bool OnIdle(vorex::IModalWindow& guide) override {
        if (guide.PressButton(vorex::guide_button::kNext)) return true;
        if (mStarted == guide.Element() || !guide.PressButton(vorex::guide_button::kStart))
            guide.Visible(false);
        mStarted = guide.Element();
        return true;
    }
    std::shared_ptr<vorex::ITestElement> mStarted;
};

class Printer : public vorex::IAppListener {
    void ElementEnded(const vorex::ITestElement& element) override {
        std::cout << element.ID() << " " << element.Info()->Name() << ": "
                  << vorex::StatusText(element.Result() ? element.Result()->Status() : 0) << "\n";
    }
    void Faulted(const vorex::AppFault& fault) override { std::cerr << fault.text << "\n"; }
};

int main(int argc, char** argv) try {
    if (argc < 2) {
        std::cerr << "run_in_room: no element file; expected run_in_room FILE [ROOM]\n";
        return 2;
    }
    const auto platform = std::make_shared<vorex::HeadlessPlatform>();
    vorex::Session session({"en", platform});
    const auto file = vorex::OpenFile::Load(argv[1]);
    const vorex::SimulatedRoom room{1, argc > 2 ? argv[2] : ""};
    vorex::Run run(session, vorex::MakeInstruments(room, [&] { return session.AtConsole(); }));
    Presser person;
    platform->Operator(&person);
    Printer printer;
    const vorex::RunOutcome outcome = run.Perform(*file, person, printer);
    if (outcome.end != vorex::RunEnd::kFinished) return 4;
    return file->Verdict() == vorex::FileVerdict::kBad ? 1 : 0;
} catch (const std::exception& error) {
    std::cerr << "run_in_room: " << error.what() << "\n";
    return 2;
}
