#include "files/element_file.h"

#include <algorithm>
#include <set>
#include <utility>

#include "files/atomic_file.h"
#include "files/element_check.h"
#include "files/element_document.h"
#include "files/element_merge.h"
#include "files/element_output.h"
#include "foundation/file_error.h"
#include "foundation/number_text.h"
#include "foundation/sequence_state.h"
#include "foundation/vocabulary.h"
#include "host/element_base.h"
#include "host/execution_pipe.h"

namespace vorex {

namespace {

constexpr std::string_view kFileVersion = "1";

using Elements = std::vector<std::shared_ptr<ITestElement>>;

/// Visits elements and all elements below them, parents first.
void ForEachElement(const Elements& elements,
                    const std::function<void(const std::shared_ptr<ITestElement>&)>& visit) {
    for (const auto& element : elements) {
        visit(element);
        if (const auto group = std::dynamic_pointer_cast<ITestContainer>(element))
            ForEachElement(group->NewEnum(), visit);
    }
}

struct MtiRow {
    std::string_view name;
    std::string MtiEntry::*text;
};

constexpr MtiRow kMtiTexts[] = {
    {tag::kPlugIn, &MtiEntry::plugIn},
    {tag::kName, &MtiEntry::name},
    {tag::kSerialNumber, &MtiEntry::serialNumber},
    {tag::kCalibrationDate, &MtiEntry::calibrationDate},
};

MtiEntry ReadMti(const IXmlElement& element) {
    MtiEntry entry;
    entry.number = ReadInteger(element.GetAttribute(tag::kNumber));
    for (const MtiRow& row : kMtiTexts) entry.*row.text = element.GetAttribute(row.name);
    return entry;
}

std::shared_ptr<IXmlElement> WriteInstruments(const IMtiList& list, OutputDocument& document) {
    const auto element = document.CreateElement(tag::kMtiList);
    for (const MtiEntry& entry : list.Entries()) {
        const auto child = document.CreateElement(tag::kMti);
        child->SetAttribute(tag::kNumber, PlainText(entry.number));
        for (const MtiRow& row : kMtiTexts) child->SetAttribute(row.name, entry.*row.text);
        element->AddChild(child);
    }
    return element;
}

std::shared_ptr<IXmlElement> WriteStandards(const std::vector<StandardName>& standards,
                                            OutputDocument& document) {
    const auto element = document.CreateElement(tag::kSelectedStandards);
    for (const StandardName& standard : standards) {
        const auto child = document.CreateElement(tag::kStandard);
        child->SetAttribute(tag::kName, standard.name);
        child->SetAttribute(tag::kVersion, standard.version);
        element->AddChild(child);
    }
    return element;
}

}  // namespace

ElementFile::ElementFile()
    : mInstruments(std::make_shared<vorex::MtiList>()), mSequence(std::make_shared<SequenceState>()) {}

ElementFile::~ElementFile() {
    for (const auto& element : mElements) element->Terminate();
}

// --------------------------------------------------------------------------------------------- load

std::unique_ptr<ElementFile> ElementFile::Load(const std::filesystem::path& path, IProgressLog* log,
                                               std::string* content) {
    return Build(XmlSource::Read(path, content), log);
}

std::unique_ptr<ElementFile> ElementFile::FromText(std::string_view text, std::string name,
                                                   IProgressLog* log) {
    return Build(XmlSource::FromText(text, std::move(name)), log);
}

std::unique_ptr<ElementFile> ElementFile::Build(std::unique_ptr<XmlSource> source, IProgressLog* log) {
    auto file = std::make_unique<ElementFile>();
    try {
        // Each test is built as soon as it is checked, while its nodes are still in the processor's cache.
        file->mPlainResults = CheckElementFile(*source, [&](pugi::xml_node element) {
            file->AddRoot(LoadTestElement(source->Element(element), log));
            source->ReleaseElements();
        });
        file->LoadFrame(*source->Element(ChildNamed(source->Document(), tag::kVorexSequence)));
    } catch (const ElementError& error) {
        throw FileError({source->FileName(), 0, error.Id()}, error.what());
    }
    file->mSequence->SetRoots(file->mElements);
    ForEachElement(file->mElements, [&](const auto& element) {
        if (const auto result = element->Result()) file->mLoadedResults[element->ID()] = result;
    });
    file->mSource = std::move(source);
    return file;
}

void ElementFile::LoadFrame(const IXmlElement& root) {
    for (const auto& standards : root.FindChild(tag::kSelectedStandards)) {
        mChosen.emplace();
        for (const auto& standard : standards->FindChild(tag::kStandard))
            mChosen->push_back({std::string(standard->GetAttribute(tag::kName)),
                                std::string(standard->GetAttribute(tag::kVersion))});
    }
    const auto lists = root.FindChild(tag::kMtiList);
    mHasInstrumentList = !lists.empty();
    for (const auto& list : lists)
        for (const auto& entry : list->FindChild(tag::kMti)) mInstruments->Add(ReadMti(*entry));
}

// --------------------------------------------------------------------------------------------- save

std::set<int32_t> ElementFile::UnmergedResults() const {
    std::set<int32_t> unmerged = mPlainResults;
    ForEachElement(mElements, [&](const auto& element) {
        const auto loaded = mLoadedResults.find(element->ID());
        if (loaded != mLoadedResults.end() && element->Result() != loaded->second.lock())
            unmerged.insert(element->ID());
    });
    return unmerged;
}

std::shared_ptr<OutputDocument> ElementFile::Written(const std::string& name) {
    NumberElements();
    auto document = std::make_shared<OutputDocument>();
    const auto root = document->Top().AddValue(tag::kVorexSequence, {});
    root->SetAttribute(tag::kVersion, kFileVersion);
    if (mChosen) root->AddChild(WriteStandards(*mChosen, *document));
    if (mHasInstrumentList || !mInstruments->Entries().empty())
        root->AddChild(WriteInstruments(*mInstruments, *document));
    const auto unmerged = std::make_shared<const std::set<int32_t>>(UnmergedResults());
    for (const auto& element : mElements) {
        const auto make = [element, name, unmerged](const std::shared_ptr<OutputDocument>& owner,
                                                    pugi::xml_node counterpart) {
            try {
                auto saved = element->Save(owner, 0);
                if (saved && counterpart)
                    MergeForeign(static_cast<OutputElement&>(*saved), counterpart, *unmerged);
                return saved;
            } catch (const std::exception& error) {
                throw FileError({name, 0, PlainText(element->ID())}, error.what());
            }
        };
        root->AddChild(document->Defer(tag::kTestElement, PlainText(element->ID()), make));
    }
    if (mSource) MergeForeign(*document, mSource->Document());
    return document;
}

void ElementFile::Save(const std::filesystem::path& path) {
    const auto document = Written(path.string());
    AtomicFile file(path);
    document->Write([&file](std::string_view piece) { file.Write(piece); });
    file.Commit();
}

std::string ElementFile::Text() {
    return Written({})->Text();
}

std::vector<std::string> ElementFile::TextPieces() {
    std::vector<std::string> pieces;
    Written({})->Write([&pieces](std::string_view piece) { pieces.emplace_back(piece); });
    return pieces;
}

// ------------------------------------------------------------------------------------------ content

void ElementFile::NumberElements() {
    std::set<int32_t> taken;
    std::vector<std::shared_ptr<ITestElement>> unnumbered;
    ForEachElement(mElements, [&](const auto& element) {
        if (element->ID() < 0 || !taken.insert(element->ID()).second) unnumbered.push_back(element);
    });
    int32_t next = taken.empty() ? 0 : *taken.rbegin();
    for (const auto& element : unnumbered) element->ID(++next);
}

void ElementFile::Add(const std::shared_ptr<ITestElement>& element) {
    AddRoot(element);
    mSequence->SetRoots(mElements);
    NumberElements();
}

void ElementFile::AddRoot(std::shared_ptr<ITestElement> element) {
    element->Sequence(mSequence);
    mElements.push_back(std::move(element));
}

void ElementFile::Remove(const std::shared_ptr<ITestElement>& element) {
    if (std::erase(mElements, element) == 0) return;
    mSequence->SetRoots(mElements);
    element->Sequence(nullptr);
    element->Terminate();
}

std::shared_ptr<ITestElement> ElementFile::FindElement(int32_t id) const {
    std::shared_ptr<ITestElement> found;
    ForEachElement(mElements, [&](const auto& element) {
        if (!found && element->ID() == id) found = element;
    });
    return found;
}

std::shared_ptr<IMtiList> ElementFile::Instruments() const {
    return mInstruments;
}

std::shared_ptr<ISelectedStandards> ElementFile::Selected() const {
    if (mChosen) return std::make_shared<SelectedStandards>(*mChosen);
    std::vector<StandardName> names;
    ForEachElement(mElements, [&](const auto& element) {
        const auto limits = element->Limits();
        const auto standards = limits ? limits->Standards() : nullptr;
        for (int32_t i = 0; standards && i < standards->Count(); ++i) {
            StandardName name{standards->Item(i)->Name(), standards->Item(i)->Version()};
            if (std::find(names.begin(), names.end(), name) == names.end()) names.push_back(std::move(name));
        }
    });
    return std::make_shared<SelectedStandards>(std::move(names));
}

}  // namespace vorex
