#include "results/result_record.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "foundation/host_services.h"
#include "foundation/number_text.h"
#include "foundation/vocabulary.h"

namespace vorex {

namespace {

struct EndingRow {
    RunEnding ending;
    std::string_view text;
};

constexpr EndingRow kEndings[] = {
    {RunEnding::kComplete, kEndedComplete},
    {RunEnding::kStopped, kEndedStopped},
    {RunEnding::kBroken, kEndedBroken},
};

void SetUnlessEmpty(IXmlElement& element, std::string_view name, std::string_view text) {
    if (!text.empty()) element.SetAttribute(name, text);
}

void SaveOrigin(const Origin& origin, IXmlElement& element) {
    SetUnlessEmpty(element, tag::kProgram, origin.program);
    if (origin.formulas != 0) element.SetAttribute(tag::kFormulas, PlainText(origin.formulas));
}

Origin LoadOrigin(const IXmlElement& element) {
    return {std::string(element.GetAttribute(tag::kProgram)),
            ReadInteger(element.GetAttribute(tag::kFormulas))};
}

}  // namespace

Origin PresentOrigin() {
    return {Services().program, kFormulaVersion};
}

std::string PresentTime() {
    return Services().platform ? Services().platform->TimeStamp() : std::string();
}

SettingTexts TechniqueOf(const CConfigCommon& config) {
    SettingTexts texts = config.PersistedTexts();
    for (auto& [key, text] : texts)
        if (IsNumber(text)) text = WithPoint(text);
    return texts;
}

void RunRecord::AddInstrument(const CMtiData2& instrument) {
    const bool known = std::any_of(instruments.begin(), instruments.end(), [&](const CMtiData2& other) {
        return other.Name() == instrument.Name() && other.SerialNumber() == instrument.SerialNumber() &&
               other.CalibrationDate() == instrument.CalibrationDate();
    });
    if (!known) instruments.push_back(instrument);
}

void RunRecord::Save(IXmlElement& result, const std::shared_ptr<IXmlDocument>& owner) const {
    const auto run = owner->CreateElement(tag::kRun);
    SetUnlessEmpty(*run, tag::kStart, start);
    SetUnlessEmpty(*run, tag::kEnd, end);
    for (const EndingRow& row : kEndings)
        if (row.ending == ending) run->SetAttribute(tag::kEnding, row.text);
    SetUnlessEmpty(*run, tag::kReason, reason);
    run->SetAttribute(tag::kPlanned, PlainText(planned));
    SaveOrigin(origin, *run);
    result.AddChild(run);
    for (const CMtiData2& instrument : instruments) {
        const auto element = owner->CreateElement(tag::kMeasuredBy);
        element->SetAttribute(tag::kName, instrument.Name());
        element->SetAttribute(tag::kSerialNumber, instrument.SerialNumber());
        SetUnlessEmpty(*element, tag::kCalibrationDate, instrument.CalibrationDate());
        result.AddChild(element);
    }
    if (technique.empty()) return;
    const auto settings = owner->CreateElement(tag::kTechnique);
    for (const auto& [key, text] : technique)
        settings->AddValue(tag::kSetting, text)->SetAttribute(tag::kKey, key);
    result.AddChild(settings);
}

void RunRecord::LoadRun(const IXmlElement& element) {
    start = element.GetAttribute(tag::kStart);
    end = element.GetAttribute(tag::kEnd);
    for (const EndingRow& row : kEndings)
        if (row.text == element.GetAttribute(tag::kEnding)) ending = row.ending;
    reason = element.GetAttribute(tag::kReason);
    planned = ReadInteger(element.GetAttribute(tag::kPlanned));
    origin = LoadOrigin(element);
}

void RunRecord::LoadInstrument(const IXmlElement& element) {
    CMtiData2& instrument = instruments.emplace_back();
    instrument.Name(std::string(element.GetAttribute(tag::kName)));
    instrument.SerialNumber(std::string(element.GetAttribute(tag::kSerialNumber)));
    instrument.CalibrationDate(std::string(element.GetAttribute(tag::kCalibrationDate)));
}

void RunRecord::LoadTechnique(const IXmlElement& element) {
    const XmlElements settings = element.FindChild(tag::kSetting);
    technique.reserve(technique.size() + settings.size());
    for (const auto& setting : settings)
        technique.emplace_back(setting->GetAttribute(tag::kKey), setting->Text());
}

void Judgement::Save(IXmlElement& result, const std::shared_ptr<IXmlDocument>& owner) const {
    const auto element = limits ? limits->Save(owner) : owner->CreateElement(tag::kJudgedBy);
    if (!element) return;
    element->Name(tag::kJudgedBy);
    SetUnlessEmpty(*element, tag::kTime, time);
    SaveOrigin(origin, *element);
    result.AddChild(element);
}

void Judgement::Load(const std::shared_ptr<IXmlElement>& element) {
    time = element->GetAttribute(tag::kTime);
    origin = LoadOrigin(*element);
    if (!Services().createStandards) return;
    limits = Services().createStandards();
    limits->Load(element);
}

Judgement PresentJudgement(const ITestElement& owner, const ISelectedStandards* selected) {
    Judgement judgement{PresentTime(), PresentOrigin(), nullptr};
    const auto limits = owner.Limits();
    const auto standards = limits ? limits->Standards() : nullptr;
    if (!standards || selected == nullptr || !Services().createStandards) return judgement;
    judgement.limits = Services().createStandards();
    const auto copies = standards->Clone();
    for (const StandardName& name : selected->Standards())
        if (auto copy = copies->FindExpectedResult(0, name.name, name.version))
            judgement.limits->Add(std::move(copy));
    return judgement;
}

}  // namespace vorex
