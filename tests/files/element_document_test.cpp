#include "files/element_document.h"

#include "host/host_fixture.h"
#include "support/file_fault.h"

namespace vorex::host_test {
namespace {

using ElementDocumentTest = XmlTest;

TEST_F(ElementDocumentTest, OnlyTheEntitiesOfXmlAreExpanded) {
    EXPECT_EQ(Element("<a>&lt;&amp;&#65;&#x42;&foo;</a>")->Text(), "<&AB&foo;");
}

TEST_F(ElementDocumentTest, ChildrenAreElementsOnlyInDocumentOrder) {
    const auto root = Element("<a>x<b>1</b><!-- c --><d/><b>2</b></a>");
    ASSERT_EQ(root->Children().size(), 3U);
    EXPECT_EQ(root->Children()[1]->Name(), "d");
    ASSERT_EQ(root->FindChild("b").size(), 2U);
    EXPECT_EQ(root->FindChild("b")[1]->Text(), "2");
    EXPECT_EQ(root->ReadValue("b", "none"), "1");
    EXPECT_EQ(root->ReadValue("e", "none"), "none");
    EXPECT_THROW(root->Text("x"), std::logic_error) << "a loaded document cannot be changed";
    EXPECT_THROW(root->SetAttribute("k", "x"), std::logic_error);
    EXPECT_THROW(root->AddValue("b", "3"), std::logic_error);
}

TEST_F(ElementDocumentTest, CharacterDataAndLoneBlanksAreText) {
    const auto root = Element("<a><b><![CDATA[1 < 2]]></b><c> </c></a>");
    EXPECT_EQ(root->ReadValue("b", ""), "1 < 2");
    EXPECT_EQ(root->ReadValue("c", ""), " ");
}

TEST_F(ElementDocumentTest, WhatIsNoDocumentIsNamedWithItsLine) {
    struct Case {
        std::string text;
        int32_t line;
        std::string fault;
    };
    const Case cases[] = {
        {"<a>\n<b>\n</a>", 3, "mismatch"},
        {"", 1, "No document element"},
        {"\n<!-- x -->\n", 2, "No document element"},
        {"hello", 1, "text outside"},
        {"x\n<a/>", 1, "text outside"},
        {"<a/>\n<!-- x -->\nequence>\n", 2, "text outside"},  // what a shorter file left of a longer one
        {"<a>\n\xC3(</a>", 2, "no UTF-8"},                    // a lead byte without its continuation
        {"<a>\n\n\xED\xA0\x80</a>", 3, "no UTF-8"},           // half of a surrogate pair
        {std::string("<a>\n\0</a>", 9), 2, "no UTF-8"},       // a zero byte
        {"<a>\xC0\xBC</a>", 1, "no UTF-8"},                   // "<" in two bytes
        {"<a>\xF4\x90\x80\x80</a>", 1, "no UTF-8"},           // beyond the last character
    };
    for (const Case& c : cases) {
        Write("a.xml", c.text);
        const auto fault = test::FileFaultOf([&] { XmlSource::Read(folder / "a.xml"); });
        ASSERT_TRUE(fault) << c.text;
        EXPECT_EQ(fault->Line(), c.line) << c.text;
        EXPECT_NE(fault->Fault().find(c.fault), std::string::npos) << fault->what();
        EXPECT_EQ(fault->File(), (folder / "a.xml").string());
    }
    EXPECT_NO_THROW(XmlSource::FromText("<a>\xE2\x82\xAC \xF0\x9F\x98\x80 \xC2\xB0</a>", "a.xml"));
}

TEST_F(ElementDocumentTest, LinesAreThoseOfTheFileWhereTheParserWorkedInItsText) {
    Write("a.xml", "<a\n  b='&#10;x\n'>\r\n<c\n/>\n&lt;\n<d/></a>");
    source = XmlSource::Read(folder / "a.xml");
    EXPECT_EQ(source->LineOf(source->Document().first_child().child("c")), 4);
    EXPECT_EQ(source->LineOf(source->Document().first_child().child("d")), 7);
}

TEST_F(ElementDocumentTest, AFileThatCannotBeReadSaysWhy) {
    std::filesystem::resize_file((Write("large.xml", ""), folder / "large.xml"), kLargestFile + 1);
    for (const auto& [name, words] : {std::pair("missing.xml", "No such file"), std::pair(".", "directory"),
                                      std::pair("large.xml", "is larger than 512 MB")}) {
        const std::string fault = test::MessageOf([&, &name = name] { XmlSource::Read(folder / name); });
        EXPECT_NE(fault.find(words), std::string::npos) << fault;
    }
}

}  // namespace
}  // namespace vorex::host_test
