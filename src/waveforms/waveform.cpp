#include "waveforms/waveform.h"

#include <algorithm>
#include <string>

#include "foundation/host_error.h"
#include "foundation/number_text.h"
#include "foundation/trace.h"

namespace vorex {

std::string CWaveform::JoinedSamples() const {
    std::string text;
    for (float sample : mValues) {
        if (!text.empty()) text.push_back(',');
        text += PlainText(sample);
    }
    return text;
}

void CWaveform::TakeSamples(std::string_view data) {
    mValues.clear();
    if (!data.empty())
        ForEachPart(data, ',', [&](std::string_view part) { mValues.push_back(ToSingle(ReadNumber(part))); });
    mValueCount = static_cast<int32_t>(mValues.size());
}

void CWaveform::Initialize(std::string_view data) {
    constexpr std::size_t kTracedCharacters = 500;
    TakeSamples(data);
    if (!HaveTraceWindow()) return;
    Trace("$IWaveform_Initialize$ - @Printing WaveformData");
    Trace(JoinedSamples().substr(0, kTracedCharacters));
    Trace("$IWaveform_Initialize$ - @Finished WaveformData");
}

void CWaveform::Load(const std::shared_ptr<IXmlElement>& element, IProgressLog* log) {
    if (log != nullptr) log->Position(element->Name(), "");
    const std::string_view samples = element->Text();
    if (samples.find(',') == std::string_view::npos) return;  // a single sample is no waveform
    if (const auto print = element->FindChild(tag::kPrintWaveform); !print.empty())
        mIncludeInReport = print.front()->Text() == kStoredTrue;
    if (const auto interval = element->FindChild(tag::kWaveformResolution); !interval.empty())
        mResolution = ToSingle(ReadNumber(interval.front()->Text()));
    TakeSamples(samples);
    if (log != nullptr) log->Advance(1);
}

std::shared_ptr<IXmlElement> CWaveform::Save(const std::shared_ptr<IXmlDocument>& owner) {
    const auto element = owner->CreateElement(mType == kMaWaveform ? tag::kMasWaveform : tag::kWaveform);
    if (!element) RaiseHostError(kErrorResultSave, "CWaveForm", 4);
    if (mValueCount >= 1) element->Text(JoinedSamples());
    element->AddValue(tag::kPrintWaveform, mIncludeInReport ? kStoredTrue : kStoredFalse);
    element->AddValue(tag::kWaveformResolution, PlainText(mResolution));
    return element;
}

}  // namespace vorex
