#include "files/element_file.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <algorithm>

#include "execution/test_group.h"
#include "foundation/class_registry.h"
#include "foundation/number_text.h"
#include "foundation/vocabulary.h"
#include "host/element_base.h"
#include "host/host_fixture.h"
#include "support/fake_element.h"
#include "support/file_fault.h"

namespace vorex::host_test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

class ElementFileTest : public HostTest {
  protected:
    static std::unique_ptr<ElementFile> Loaded(const std::string& text) {
        return ElementFile::FromText(text, "site.xml");
    }
    /// The text of a file after loading and saving it; saving again must change nothing.
    static std::string Saved(const std::string& text) {
        std::string saved = Loaded(text)->Text();
        EXPECT_EQ(Loaded(saved)->Text(), saved);
        return saved;
    }
};

std::string Measured(const std::string& key, const std::string& value, const std::string& extra = {}) {
    return "<Measurement Key=\"" + key + "\"><Value Type=\"5\">" + value + "</Value><Status>1</Status>" +
           extra + "</Measurement>";
}

TEST_F(ElementFileTest, AFileKeepsItsElementsResultsInstrumentsAndStandards) {
    const auto file = Loaded(
        Sequence("<SelectedStandards><Standard Name=\"Site\" Version=\"2\"/></SelectedStandards>"
                 "<MtiList><MTI Number=\"3\" PlugIn=\"ZRD47500\" Name=\"ZRD\" SerialNumber=\"4711\" "
                 "CalibrationDate=\"2026-01-15\"/></MtiList>" +
                 Group(5, Test100(6, "<ResultItem MTI=\"3\"><Status>2</Status><Comment>warm</Comment>" +
                                         Measured("kVp Avg", "80.1") + "</ResultItem>"))));
    ASSERT_EQ(file->Elements().size(), 1U);
    const auto test = file->FindElement(6);
    ASSERT_TRUE(test && test->Result());
    EXPECT_EQ(test->Parent(), file->Elements()[0]);
    EXPECT_EQ(test->Result()->Status(), kFailed);
    EXPECT_EQ(test->Result()->Comment(), "warm");
    EXPECT_EQ(test->Result()->MTIID(), 3);
    EXPECT_THAT(file->Instruments()->Entries(),
                ElementsAre(MtiEntry{3, "ZRD47500", "ZRD", "4711", "2026-01-15"}));
    EXPECT_THAT(file->Selected()->Standards(), ElementsAre(StandardName{"Site", "2"}));
    EXPECT_EQ(file->FindElement(7), nullptr);
}

TEST_F(ElementFileTest, WithoutAChoiceEveryStandardOfTheFileIsSelectedOnce) {
    const auto standards = [](const std::string& names) {
        return "<ExpectedResult>" + names + "</ExpectedResult>";
    };
    const std::string a = "<Standard Name=\"A\" Version=\"1\"/>";
    const std::string b = "<Standard Name=\"B\" Version=\"1\"/>";
    const auto file = Loaded(Sequence(Group(1, Test100(2, standards(b + a))) + Test100(3, standards(a)) +
                                      Test100(4, standards("<Standard Name=\"A\" Version=\"2\"/>"))));
    EXPECT_THAT(file->Selected()->Standards(),
                ElementsAre(StandardName{"B", "1"}, StandardName{"A", "1"}, StandardName{"A", "2"}));
    EXPECT_THAT(file->Text(), Not(HasSubstr("SelectedStandards")));
    EXPECT_TRUE(
        Loaded(Sequence("<SelectedStandards/>" + Test100(3, standards(a))))->Selected()->Standards().empty());
}

TEST_F(ElementFileTest, ForeignContentIsWrittenBackWhereItWas) {
    // Each row has a line of the saved file and the foreign line that is expected after it.
    struct Case {
        std::string content, before, foreign;
    };
    const std::string standard = "<Standard Name=\"Site\" Version=\"1\">";
    const Case cases[] = {
        {Sequence("<!-- first -->" + Test100(1)), "<VorexSequence Version=\"1\">", "<!-- first -->"},
        {"<!-- top -->" + Sequence(Test100(1)), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>", "<!-- top -->"},
        {"<?go on?>" + Sequence(Test100(1)), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>", "<?go on?>"},
        {Sequence(Test100(1)) + "<!-- end -->", "</VorexSequence>", "<!-- end -->"},
        {Sequence("<Site Room=\"3\"/>" + Test100(1)), "<VorexSequence Version=\"1\">", "<Site Room=\"3\" />"},
        {Sequence("<MtiList><MTI Number=\"1\"/><Note>x</Note></MtiList>" + Test100(1)),
         "<MTI Number=\"1\" PlugIn=\"\" Name=\"\" SerialNumber=\"\" CalibrationDate=\"\" />",
         "<Note>x</Note>"},
        {Sequence(Group(1, "<Note>x</Note>" + Test100(2))),
         "<TestElement PlugIn=\"ZRD47500\" TestID=\"0\" ID=\"1\">", "<Note>x</Note>"},
        {Sequence(Test100(1, "", "<Room>3</Room>")), "<NumberOfExposures>2</NumberOfExposures>",
         "<Room>3</Room>"},
        {Sequence(
             Test100(1, "", "<TestGuideSettings><Buttons>1</Buttons><Sound>1</Sound></TestGuideSettings>")),
         "<Buttons>1</Buttons>", "<Sound>1</Sound>"},
        {Sequence(Test100(1, "<ExpectedResult>" + standard +
                                 "<Limit Key=\"ER HVL\" Unit=\"\"><Low Value=\"2\"/>"
                                 "<!-- c --></Limit></Standard></ExpectedResult>")),
         "<Low Value=\"2\" />", "<!-- c -->"},
        {Sequence(Test100(1, "<ExpectedResult>" + standard +
                                 "<Limit Key=\"ER HVL\" Unit=\"\"/><Author>me</Author>"
                                 "</Standard></ExpectedResult>")),
         "<Limit Key=\"ER HVL\" Unit=\"\" />", "<Author>me</Author>"},
        {Sequence(Test100(1, "<ResultItem><Status>1</Status>" + Measured("kVp Avg", "80") +
                                 "<Photo>1.png</Photo>" + Measured("kVp Max", "81") + "</ResultItem>")),
         "</Measurement>", "<Photo>1.png</Photo>"},
        {Sequence(Test100(1, "<ResultItem><Status>1</Status>" +
                                 Measured("kVp Avg", "80", "<Raw><Count>12</Count></Raw>") +
                                 "</ResultItem>")),
         "<Status>1</Status>", "<Raw>"},
        {Sequence(Test100(1,
                          "<ResultItem><Status>3</Status><ServiceRecord Code=\"NA\">x</ServiceRecord><Mail/>"
                          "</ResultItem>")),
         "<ServiceRecord Code=\"NA\">x</ServiceRecord>", "<Mail />"},
    };
    for (const Case& c : cases) {
        const std::string saved = Saved(c.content);
        std::vector<std::string_view> lines;
        for (std::string_view line : SplitText(saved, '\n')) lines.push_back(Trimmed(line));
        const auto at = std::find(lines.begin(), lines.end(), c.foreign);
        ASSERT_NE(at, lines.end()) << c.foreign << " in\n" << saved;
        EXPECT_EQ(*(at - 1), c.before) << saved;
        EXPECT_EQ(std::count(lines.begin(), lines.end(), c.foreign), 1) << saved;
    }
}

TEST_F(ElementFileTest, ATextBetweenElementsStaysAndDoesNotGrow) {
    EXPECT_THAT(Saved(Sequence("kept" + Test100(1))),
                HasSubstr("<VorexSequence Version=\"1\">kept<TestElement PlugIn"));
}

TEST_F(ElementFileTest, ForeignAttributesStayAndAttributesKeepTheirOrder) {
    const std::string saved =
        Saved(Sequence("<MtiList><MTI Colour=\"red\" Name=\"ZRD\" Number=\"1\"/>"
                       "</MtiList><TestElement ID=\"1\" TestID=\"100\" Locked=\"1\" "
                       "PlugIn=\"ZRD47500\"><PlugInData PlugIn=\"ZRD47500\">"
                       "<NumberOfExposures by=\"me\">2</NumberOfExposures></PlugInData><ResultItem><Status "
                       "checked=\"1\" Extra=\"4\">1"
                       "</Status></ResultItem></TestElement>"));
    EXPECT_THAT(saved,
                HasSubstr("<MTI Colour=\"red\" Name=\"ZRD\" Number=\"1\" PlugIn=\"\" SerialNumber=\"\" "
                          "CalibrationDate=\"\" />"))
        << "what the file lacked follows";
    EXPECT_THAT(saved, HasSubstr("<TestElement ID=\"1\" TestID=\"100\" Locked=\"1\" PlugIn=\"ZRD47500\">"));
    EXPECT_THAT(saved, HasSubstr("<NumberOfExposures by=\"me\">2</NumberOfExposures>"));
    EXPECT_THAT(saved, HasSubstr("<Status checked=\"1\" Extra=\"4\">1</Status>"));
}

TEST_F(ElementFileTest, WhatIsKnownAndNoLongerWrittenDoesNotComeBack) {
    // Rows beyond the exposure count, the old name of the import flag, a limit side and a measurement's
    // preset.
    const std::string saved = Saved(Sequence(
        Test100(1, "<ResultItem><Status>3</Status>" + Measured("kVp Avg", "80") + "</ResultItem>",
                "<ImportWaveformStatus0>1</ImportWaveformStatus0><NumberOfExposures9>1</NumberOfExposures9>"
                "<MachineKV7>80</MachineKV7>")));
    for (const char* gone : {"ImportWaveformStatus0", "NumberOfExposures9", "MachineKV7", "<Measurement "})
        EXPECT_THAT(saved, Not(HasSubstr(gone)));

    const auto file =
        Loaded(Sequence(Test100(1,
                                "<ExpectedResult><Standard Name=\"S\" Version=\"1\"/></ExpectedResult>"
                                "<ResultItem><Status>1</Status></ResultItem>") +
                        Test100(2)));
    file->FindElement(1)->Limits()->Standards()->Clear();
    file->Remove(file->FindElement(2));
    EXPECT_THAT(file->Text(), Not(HasSubstr("<Standard")));
    EXPECT_THAT(file->Text(), Not(HasSubstr("ID=\"2\"")));
}

/// An element that can be given another result, as a new run does.
class ResultElement : public test::FakeElement, public LibraryObject {
  public:
    int32_t ID() const override { return base.ID(); }
    std::shared_ptr<IResultData> Result() const override { return base.Result(); }
    void Initialize(const std::shared_ptr<ITestElement>& parent, std::string_view plugInId,
                    int32_t testId) override {
        base.Initialize(parent, plugInId, testId);
        base.Result(std::make_shared<CResultTestGroup>());
    }
    void Load(const std::shared_ptr<IXmlElement>& element, IProgressLog* log) override {
        base.Load(element, log);
    }
    std::shared_ptr<IXmlElement> Save(const std::shared_ptr<IXmlDocument>& owner, int32_t mode) override {
        return base.Save(owner, mode);
    }

    TestElementBase base;
};

TEST_F(ElementFileTest, NothingOfAReplacedResultIsTakenOver) {
    static constexpr ClassEntry kClasses[] = {
        {"CTestGroup", []() -> std::shared_ptr<LibraryObject> { return std::make_shared<ResultElement>(); }}};
    InstallClasses(kClasses);
    const auto file = Loaded(Sequence(Group(1, "<ResultItem from=\"2025\"><Old/></ResultItem><Kept/>")));
    EXPECT_THAT(file->Text(), HasSubstr("<ResultItem from=\"2025\">"));
    std::dynamic_pointer_cast<ResultElement>(file->FindElement(1))
        ->base.Result(std::make_shared<CResultTestGroup>());
    EXPECT_THAT(file->Text(), HasSubstr("<ResultItem>"));
    EXPECT_THAT(file->Text(), Not(HasSubstr("Old")));
    EXPECT_THAT(file->Text(), HasSubstr("<Kept />"));
}

TEST_F(ElementFileTest, MeasurementsArePairedByKeyAndRow) {
    // The second row has lost its first measurement, and the mark belongs to the second "kVp Max".
    const std::string saved = Saved(Sequence(
        Test100(1, "<ResultItem><Status>1</Status>" + Measured("kVp Avg", "80") + Measured("kVp Max", "81") +
                       Measured("kVp Avg", "82") + Measured("kVp Max", "83", "<Mark/>") + "</ResultItem>")));
    const std::size_t mark = saved.find("<Mark />");
    ASSERT_NE(mark, std::string::npos);
    EXPECT_LT(saved.find(">83<"), mark);
    EXPECT_LT(saved.find(">82<"), saved.find(">83<"));
}

TEST_F(ElementFileTest, SavingIsTheSameEveryTime) {
    Write("a.xml",
          Sequence("<!-- x -->" + Test100(1,
                                          "<ExpectedResult><Standard Name=\"S\" Version=\"1\"><Limit "
                                          "Key=\"ER HVL\"><High Value=\"2.50\" Expression=\"X+Y\"/></Limit>"
                                          "</Standard></ExpectedResult>")));
    const auto file = ElementFile::Load(folder / "a.xml");
    file->Save(folder / "b.xml");
    const std::string first = Read("b.xml");
    file->Save(folder / "b.xml");
    EXPECT_EQ(Read("b.xml"), first);
    EXPECT_EQ(file->Text(), first);
    EXPECT_THAT(first, HasSubstr("<High Value=\"2.50\" Expression=\"X+Y\" />")) << "a limit keeps its digits";
    EXPECT_EQ(FileCount(), 2U) << "no temporary file stays";
}

TEST_F(ElementFileTest, AnElementThatCannotBeLoadedIsNamed) {
    std::string rows = "<ResultItem><Status>1</Status>";
    for (int i = 0; i < 256; ++i) rows += Measured("kVp Avg", "80");
    const auto fault = test::FileFaultOf([&] {
        Loaded(
            Sequence(Group(1, Test100(8, "<ResultItem></ResultItem>") + Test100(9, rows + "</ResultItem>"))));
    });
    ASSERT_TRUE(fault);
    EXPECT_EQ(fault->File(), "site.xml");
    EXPECT_EQ(fault->Element(), "9");
    EXPECT_THAT(fault->Fault(), HasSubstr("255"));
}

TEST_F(ElementFileTest, ANewFileNumbersItsElements) {
    ElementFile file;
    const auto first = CreateTestElement(kRadioRepro);
    const auto second = CreateTestElement(kGroupId);
    file.Add(first);
    file.Add(second);
    EXPECT_EQ(first->ID(), 1);
    EXPECT_EQ(second->ID(), 2);
    const auto copy = first->Clone();
    file.Add(copy);
    EXPECT_EQ(copy->ID(), 3);
    const auto saved = Loaded(file.Text());
    EXPECT_EQ(saved->FindElement(3)->TestID(), kRadioRepro);
}

TEST_F(ElementFileTest, AGroupThatIsNotToBeSavedIsNotWritten) {
    const std::string text =
        Loaded(Sequence(Test100(1) + Group(2, "<Filter Save=\"False\"/>" + Test100(3))))->Text();
    EXPECT_THAT(text, HasSubstr("ID=\"1\""));
    EXPECT_THAT(text, Not(HasSubstr("ID=\"2\"")));
}

}  // namespace
}  // namespace vorex::host_test
