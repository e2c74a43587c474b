#include "files/element_output.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "files/element_document.h"

namespace vorex {
namespace {

const std::string kHead = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

TEST(ElementOutputTest, ElementsAreIndentedByTwoBlanks) {
    OutputDocument document;
    const auto root = document.Top().AddValue("a", "");
    root->SetAttribute("k", "1");
    const auto child = document.CreateElement("b");
    root->AddChild(child);
    child->AddValue("c", "text");
    child->AddValue("d", "");
    EXPECT_EQ(document.Text(), kHead + "<a k=\"1\">\n  <b>\n    <c>text</c>\n    <d />\n  </b>\n</a>\n");
}

TEST(ElementOutputTest, TheDeepestElementsAreIndentedToo) {
    OutputDocument document;
    auto at = document.Top().AddValue("a", "");
    for (int depth = 1; depth <= 20; ++depth) at = at->AddValue("b", "");
    for (const int depth : {15, 16, 17, 19})
        EXPECT_NE(
            document.Text().find(">\n" + std::string(2U * static_cast<std::size_t>(depth), ' ') + "<b>\n"),
            std::string::npos)
            << depth;
}

TEST(ElementOutputTest, ATextIsNotBrokenByIndentation) {
    OutputDocument document;
    const auto root = document.Top().AddValue("a", "0,1");
    root->AddValue("b", "1");
    root->AddValue("c", "2");
    EXPECT_EQ(document.Text(), kHead + "<a>0,1<b>1</b>\n  <c>2</c>\n</a>\n");
}

TEST(ElementOutputTest, EveryTextReadsBackAsItWasWritten) {
    const std::string texts[] = {"<&>\"'",
                                 " lead and trail ",
                                 "two\nlines\tand a tab",
                                 "return\r\nfeed",
                                 "]]>",
                                 std::string(300'000, 'x'),  // longer than what is written at once
                                 "\xC2\xB0 \xE2\x82\xAC \xF0\x9F\x98\x80"};
    for (const std::string& text : texts) {
        OutputDocument document;
        const auto root = document.Top().AddValue("a", text);
        root->SetAttribute("k", text);
        const auto source = XmlSource::FromText(document.Text(), "a.xml");
        const auto read = source->Element(ChildNamed(source->Document(), "a"));
        EXPECT_EQ(read->Text(), text);
        EXPECT_EQ(read->GetAttribute("k"), text);
    }
}

TEST(ElementOutputTest, WhatIsNoCharacterIsReplacedSoThatTheFileStaysReadable) {
    OutputDocument document;
    document.Top().AddValue("a", std::string_view("x\0y\x01z\xFFw\xC3", 8));
    const auto source = XmlSource::FromText(document.Text(), "a.xml");
    EXPECT_STREQ(NodeText(ChildNamed(source->Document(), "a")),
                 "x\xEF\xBF\xBDy\xEF\xBF\xBDz\xEF\xBF\xBDw\xEF\xBF\xBD");
}

TEST(ElementOutputTest, AnElementNeedsANameAndHasOnePlace) {
    OutputDocument document;
    for (const char* name : {"", "a b", "1a", "a<", "-a"}) {
        EXPECT_EQ(document.CreateElement(name), nullptr) << name;
        EXPECT_EQ(document.Top().AddValue(name, "x"), nullptr) << name;
    }
    const auto root = document.CreateElement("a");
    const auto child = document.CreateElement("b");
    EXPECT_EQ(root->AddChild(child), child);
    EXPECT_THROW(root->AddChild(child), std::logic_error);
}

TEST(ElementOutputTest, ATreeCanBeReadBeforeItIsWritten) {
    OutputDocument document;
    const auto root = document.CreateElement("a");
    root->AddValue("b", "1");
    root->AddValue("c", "2");
    root->AddValue("b", "3");
    root->SetAttribute("k", "old");
    root->SetAttribute("k", "new");
    EXPECT_EQ(root->Children().size(), 3U);
    EXPECT_EQ(root->FindChild("b")[1]->Text(), "3");
    EXPECT_EQ(root->ReadValue("c", ""), "2");
    EXPECT_EQ(root->ReadValue("d", "none"), "none");
    EXPECT_EQ(root->GetAttribute("k"), "new");
    EXPECT_EQ(document.Text(), kHead + "\n") << "what has no place is not written";
}

}  // namespace
}  // namespace vorex
