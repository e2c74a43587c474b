#include "files/element_check.h"

#include <gmock/gmock.h>

#include <pugixml.hpp>
#include <sstream>

#include "host/host_fixture.h"
#include "support/file_fault.h"

namespace vorex::host_test {
namespace {

class ElementCheckTest : public HostTest {
  protected:
    /// What is wrong with a file; empty when nothing is.
    static std::string FaultOf(const std::string& text) {
        return test::MessageOf([&] { CheckElementFile(*XmlSource::FromText(text, "site.xml")); });
    }
};

std::string Result(const std::string& content) {
    return Sequence(Test100(7, "<ResultItem><Status>1</Status>" + content + "</ResultItem>"));
}
std::string Limits(const std::string& content) {
    return Sequence(
        Test100(7, "<ExpectedResult><Standard Name=\"Site\">" + content + "</Standard></ExpectedResult>"));
}

TEST_F(ElementCheckTest, AGoodFileHasNoFault) {
    EXPECT_EQ(FaultOf(Sequence(Group(0, Test100(1) + Group(2, "")))), "");
    EXPECT_EQ(
        FaultOf(Limits("<Limit Key=\"ER HVL\"><High Value=\" -5,5 \"/><Low Expression=\"CV\"/></Limit>")),
        "");
    EXPECT_EQ(FaultOf(Result("<Measurement Key=\"a\"><Value Type=\"5\">OL</Value></Measurement>"
                             "<Measurement Key=\"a\"><Value Type=\"1\">1e2</Value></Measurement>")),
              "");
}

TEST_F(ElementCheckTest, AMessageStaysOneShortLineWhateverTheFileHolds) {
    const auto withKv = [](const std::string& text) {
        std::string file = Sequence(Test100(1));
        return file.insert(file.find("</PlugInData>"), "<MachineKV>" + text + "</MachineKV>");
    };
    for (const char* number : {"80%", "80,5", "80,5 %", ""}) EXPECT_EQ(FaultOf(withKv(number)), "") << number;
    const std::string start = "site.xml: element 1: \"MachineKV\" is \"";
    EXPECT_EQ(FaultOf(withKv("80&#10;\x1B[31m")), start + "80??[31m\"; expected a number");
    EXPECT_EQ(FaultOf(withKv(std::string(5000, 'x'))),
              start + std::string(60, 'x') + "...\"; expected a number");
    EXPECT_EQ(FaultOf(withKv(std::string(59, 'x') + "\xC3\xA4")),
              start + std::string(59, 'x') + "...\"; expected a number")
        << "a character is not cut in two";
}

TEST_F(ElementCheckTest, AFaultIsNamedWithFileElementKeyAndWhatWasExpected) {
    const std::string number = "\"; expected a number";
    const std::pair<std::string, std::string> cases[] = {
        {Sequence(""), "site.xml: holds no test; expected at least one \"TestElement\""},
        {"<Foo/>", "site.xml: the root element is \"Foo\"; expected \"VorexSequence\""},
        {Sequence(Test100(1)) + "<b/>", "site.xml: a second root element \"b\"; expected one root element"},
        {"<!DOCTYPE a [<!ENTITY b 'c'>]>" + Sequence(Test100(1)),
         "site.xml: has a document type definition; expected a document without one"},
        {"<VorexSequence Version=\"two\">" + Test100(1) + "</VorexSequence>",
         "site.xml: attribute \"Version\" of \"VorexSequence\" is \"two\"; expected 1, the version that this "
         "program "
         "reads"},
        {Sequence("<MtiList><MTI Number=\"one\"/></MtiList>" + Test100(1)),
         "site.xml: attribute \"Number\" of \"MTI\" of \"one\" is \"one\"; expected a whole number"},
        {Sequence(Test100(1) + Test100(1)),
         "site.xml: element 1: its ID occurs twice; expected an ID for each element"},
        {Sequence(Test100(7, Test100(8))),
         "site.xml: element 8: is inside a test that is not a group; expected tests inside groups only"},
        {Sequence(Test100(7, "", "<MachineKV>high</MachineKV>")), "\"MachineKV\" is \"high" + number},
        {Sequence(Test100(7, "", "<MachinemA1>8O</MachinemA1>")), "\"MachinemA1\" is \"8O" + number},
        {Sequence(Test100(7, "", "<MeasurementPercentKV>256</MeasurementPercentKV>")),
         "\"MeasurementPercentKV\" is \"256\"; expected a whole number from 0 to 255"},
        {Sequence(Test100(7, "", "<MeasurementDelay>32768</MeasurementDelay>")),
         "\"MeasurementDelay\" is \"32768\"; expected a whole number from -32768 to 32767"},
        {Sequence(Test100(7, "", "<MachineKV>80</MachineKV><MachineKV>90</MachineKV>")),
         "\"MachineKV\" occurs twice; expected one"},
        {Sequence(Test100(7, "", "<MachineKV>8<!-- x -->0</MachineKV>")),
         "the text of \"MachineKV\" is in several pieces; expected one piece"},
        {Sequence(Test100(7, "<Filter Save=\"yes\"/>")),
         "attribute \"Save\" of \"Filter\" is \"yes\"; expected True or False"},
        {Sequence(Test100(7, "<Filter/><Filter/>")), "\"Filter\" occurs twice; expected one"},
        {Limits("<Limit Key=\"ER HVL\"><High Value=\"five\"/></Limit>"),
         "attribute \"Value\" of \"High\" of \"ER HVL\" is \"five" + number},
        {Limits("<Limit Key=\"ER HVL\"><Low Value=\"1\" Expression=\"Z\"/></Limit>"),
         "attribute \"Expression\" of \"Low\" of \"ER HVL\" is \"Z\"; expected one of Y, "
         "X+Y, X+(X*Y%), CV"},
        {Limits("<Limit/>"), "\"Limit\" has no attribute \"Key\"; expected a text"},
        {Result("<Measurement Key=\"HVL\"><Value Type=\"1\">three</Value></Measurement>"),
         "\"Value\" of \"HVL\" is \"three" + number},
        {Result("<Measurement Key=\"HVL\"><Value Type=\"1\"/></Measurement>"),
         "\"Value\" of \"HVL\" is \"" + number},
        {Result("<Measurement Key=\"HVL\"><Value Type=\"5\">3<!-- x -->1</Value></Measurement>"),
         "the text of \"Value\" of \"HVL\" is in several pieces; expected one piece"},
        {Result("<Measurement Key=\"HVL\"><Status>4</Status></Measurement>"),
         "\"Status\" of \"HVL\" is \"4\"; expected 0 (not tested), 1 (pass), 2 (fail) or 3 "
         "(not applicable)"},
        {Result("<Measurement/>"), "\"Measurement\" has no attribute \"Key\"; expected a text"},
        {Result("<Waveform>0,1<WaveformResolution>fine</WaveformResolution></Waveform>"),
         "\"WaveformResolution\" is \"fine" + number},
        {Sequence(Test100(7, "<ResultItem MTI=\"x\"/>")),
         "attribute \"MTI\" of \"ResultItem\" is \"x\"; expected a whole number"},
        {Sequence(Test100(7, "<a b='1' b='2'/>")), "attribute \"b\" occurs twice; expected one"},
    };
    for (const auto& [text, message] : cases)
        EXPECT_EQ(FaultOf(text), (message.starts_with("site.xml") ? "" : "site.xml: element 7: ") + message);
}

TEST_F(ElementCheckTest, AnElementIsAKnownTestWithItsConfiguration) {
    const std::pair<std::string, std::string> cases[] = {
        {"PlugIn='ZRD47500' TestID='400' ID='3'",
         "element 3: TestID 400 is not known; expected 0 for a group, or one of "
         "100, 200, 300, 500, 700, 900, 1100, 1200, 1300"},
        {"PlugIn='ZRD47500' TestID='1300' ID='3'",
         "element 3: has no \"PlugInData\"; expected the configuration of the test"},
        {"PlugIn='Other' TestID='100' ID='3'",
         "element 3: attribute \"PlugIn\" of \"TestElement\" is \"Other\"; expected ZRD47500"},
        {"PlugIn='ZRD47500' TestID='x' ID='3'",
         "element 3: attribute \"TestID\" of \"TestElement\" is \"x\"; expected a whole number"},
        {"PlugIn='ZRD47500' TestID='100' ID='three'",
         "element \"three\": attribute \"ID\" of \"TestElement\" is \"three\"; expected a whole number from "
         "0"},
        {"PlugIn='ZRD47500' TestID='100'",
         "element \"\": \"TestElement\" has no attribute \"ID\"; expected a whole number from 0"},
    };
    for (const auto& [attributes, message] : cases)
        EXPECT_EQ(FaultOf(Sequence("<TestElement " + attributes + "/>")), "site.xml: " + message);
}

TEST_F(ElementCheckTest, ExposuresCountFrom1To255) {
    const auto test = [](const std::string& content) {
        return Sequence("<TestElement PlugIn='ZRD47500' TestID='700' ID='7'><PlugInData PlugIn='ZRD47500'>" +
                        content + "</PlugInData></TestElement>");
    };
    const std::string place = "site.xml: element 7: ";
    const std::string expected = "expected a whole number from 1 to 255";
    for (const std::string count : {"0", "256", "2.5", "-1", "two", ""})
        EXPECT_EQ(FaultOf(test("<NumberOfExposures>" + count + "</NumberOfExposures>")),
                  place + "\"NumberOfExposures\" is \"" + count + "\"; " + expected);
    EXPECT_EQ(FaultOf(test("<NumberOfExposures>255</NumberOfExposures>")), "");
    EXPECT_EQ(FaultOf(test("")), place + "\"PlugInData\" has no \"NumberOfExposures\"; " + expected);
}

TEST_F(ElementCheckTest, ElementsAreNestedUpTo200Levels) {
    const auto nested = [](int levels) {
        std::string text;
        for (int i = 0; i < levels; ++i) text += "<a>";
        for (int i = 0; i < levels; ++i) text += "</a>";
        return Sequence(Test100(1) + text);
    };
    EXPECT_EQ(FaultOf(nested(199)), "") << "the root is the first level";
    EXPECT_NE(FaultOf(nested(200)).find("deeper than 200 levels"), std::string::npos);
}

TEST_F(ElementCheckTest, AFaultIsNamedWithItsLineInTheFile) {
    const std::string text =
        "<?xml version=\"1.0\"?>\n"
        "<VorexSequence Version=\"1\">\n"
        "  <TestElement PlugIn=\"ZRD47500\" TestID=\"100\" ID=\"7\">\n"
        "    <PlugInData PlugIn=\"ZRD47500\">\n"
        "      <!-- set\n by hand -->\n"
        "      <NumberOfExposures>2</NumberOfExposures>\n"
        "      <MachineKV>80</MachineKV>\n"
        "    </PlugInData>\n"
        "    <ResultItem>\n"
        "      <Measurement Key=\"kVp Avg\"><Status>1</Status></Measurement>\n"
        "    </ResultItem>\n"
        "  </TestElement>\n"
        "</VorexSequence>\n";
    const struct {
        std::string_view part, instead, place;
    } cases[] = {
        {"Version=\"1\">", "Version=\"2\">", ":2: attribute"},
        {"ID=\"7\"", "ID=\"x\"", ":3: element \"x\": attribute"},
        {"<PlugInData PlugIn=\"ZRD47500\">", "<PlugInData>", ":4: element 7: "},
        {">2<", ">0<", ":7: element 7: \"NumberOfExposures\""},
        {">80<", ">high<", ":8: element 7: \"MachineKV\""},
        {">1<", ">4<", ":11: element 7: \"Status\" of \"kVp Avg\""},
        {"</VorexSequence>\n", "</VorexSequence>\n<b/>", ":15: a second root"},
    };
    for (const auto& row : cases) {
        std::string broken = text;
        Write("site.xml", broken.replace(broken.find(row.part), row.part.size(), row.instead));
        const std::string file = (folder / "site.xml").string();
        EXPECT_THAT(test::MessageOf([&] { CheckElementFile(*XmlSource::Read(file)); }),
                    testing::StartsWith(file + std::string(row.place)));
    }
}

/// A file with every attribute that has a meaning.
const char* const kEveryAttribute = R"xml(<VorexSequence Version="1">
<SelectedStandards><Standard Name="Site" Version="1"/></SelectedStandards>
<MtiList><MTI Number="1" PlugIn="ZRD47500" Name="ZRD" SerialNumber="4711" CalibrationDate="2026-01-15"/></MtiList>
<TestElement PlugIn="ZRD47500" TestID="0" ID="1" Name="Group"><Filter Save="True" Print="True" Evaluate="True"/>
<TestElement PlugIn="ZRD47500" TestID="100" ID="2" Name="Test">
<PlugInData PlugIn="ZRD47500"><NumberOfExposures>1</NumberOfExposures></PlugInData>
<ExpectedResult><Standard Name="Site" Version="1"><Limit Key="ER kVp Avg" Unit="KV">
<High Value="5" Expression="X+(X*Y%)"/></Limit></Standard></ExpectedResult>
<ResultItem MTI="1"><Measurement Key="kVp Avg"><Value Type="1">80</Value><Status Extra="1">1</Status></Measurement>
<Status>1</Status><ServiceRecord Code="P"/>
<SupersededExposure Exposure="1" Order="1" Time="10:00"><Measurement Key="HVL" Missing="True"/></SupersededExposure>
<Run Start="9:00" End="10:00" Ending="Complete" Reason="" Planned="1" Program="1.0" Formulas="1"/>
<MeasuredBy Name="ZRD" SerialNumber="4711" CalibrationDate="2026-01-15"/>
<Technique><Setting Key="MachineKV">80</Setting></Technique>
<JudgedBy Time="10:00" Program="1.0" Formulas="1"/></ResultItem></TestElement></TestElement>
<TestElement PlugIn="ZRD47500" TestID="1300" ID="3" Name="Survey"><PlugInData PlugIn="ZRD47500"/>
<ResultItem MTI="1"><Status>1</Status></ResultItem></TestElement></VorexSequence>)xml";

TEST_F(ElementCheckTest, OnlyWhatCannotBeDoneWithoutIsRequiredAndOnlyTextsAreFree) {
    // Elements and attributes that a file must have, and those that can hold any text.
    const std::string required =
        ",Standard Name,MTI Number,TestElement PlugIn,TestElement TestID,TestElement ID,PlugInData PlugIn,"
        "Limit Key,Measurement Key,SupersededExposure Exposure,Run Ending,Run Planned,Setting Key,";
    const std::string free =
        ",Standard Name,Standard Version,MTI PlugIn,MTI Name,MTI SerialNumber,MTI CalibrationDate,"
        "TestElement Name,Limit Key,Limit Unit,Measurement Key,ServiceRecord Code,SupersededExposure Time,"
        "Run Start,Run End,Run Reason,Run Program,MeasuredBy Name,MeasuredBy SerialNumber,"
        "MeasuredBy CalibrationDate,Setting Key,JudgedBy Time,JudgedBy Program,";
    const auto faultWith = [&](const auto& change) {
        pugi::xml_document file;
        file.load_string(kEveryAttribute);
        change(file);
        std::ostringstream text;
        file.save(text);
        return FaultOf(text.str());
    };
    EXPECT_EQ(faultWith([](auto&) {}), "");
    pugi::xml_document file;
    ASSERT_TRUE(file.load_string(kEveryAttribute));
    const auto places = file.select_nodes("//@*");
    for (std::size_t i = 0; i < places.size(); ++i) {
        const std::string name =
            "," + std::string(places[i].parent().name()) + " " + places[i].attribute().name() + ",";
        const auto at = [&](pugi::xml_document& copy) { return copy.select_nodes("//@*")[i]; };
        const std::string absent =
            faultWith([&](auto& copy) { at(copy).parent().remove_attribute(at(copy).attribute().name()); });
        EXPECT_EQ(absent.empty(), required.find(name) == std::string::npos) << name << ": " << absent;
        const std::string strange = faultWith([&](auto& copy) { at(copy).attribute().set_value("?"); });
        EXPECT_EQ(strange.empty(), free.find(name) != std::string::npos) << name << ": " << strange;
    }
}

}  // namespace
}  // namespace vorex::host_test
