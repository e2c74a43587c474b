#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "foundation/tagged_value.h"

/// Everything that crosses the boundary between the library and its host.
///
/// The life of an element, in the order of the host's calls:
///   1. creation: the class builds its helper, a default configuration and its limits;
///   2. `Initialize`;
///   3. `Load`, for a saved sequence: once with the element's node, once more with its "ResultItem";
///   4. any number of configuration and limit dialogs;
///   5. `Perform`, again after navigating back;
///   6. `Save`;  7. `PrintReport`;
///   8. `Clone` at any time, `UpdateReferences` once the clone is in the tree;
///   9. `Terminate`.
///
/// All calls arrive on one thread. An empty reference is a legal answer of every getter of an object.
/// Operations are declared in slot order.
namespace vorex {

class IConfigData;
class ILimitData;
class IResultData;
class ITestElement;
class ITestGuideConfig;
class SequenceState;

// ------------------------------------------------------------------------------------ document and log

/// Progress of a load.
class IProgressLog {
  public:
    virtual ~IProgressLog() = default;
    virtual void Position(std::string_view key, std::string_view value) = 0;
    virtual void Advance(int32_t steps) = 0;
    virtual void LogMessage(uint32_t code, int32_t severity, std::string_view message) = 0;
};

class IXmlElement;
/// Takes child elements one by one.
class IXmlVisitor {
  public:
    virtual void Visit(const IXmlElement& child) = 0;

  protected:
    ~IXmlVisitor() = default;
};
using XmlElements = std::vector<std::shared_ptr<IXmlElement>>;

/// A node of the host's document. Views returned by `Name`, `GetAttribute` and `Text` hold until the element
/// is changed or its document ends.
class IXmlElement {
  public:
    virtual ~IXmlElement() = default;
    virtual std::string_view Name() const = 0;
    virtual void Name(std::string_view name) = 0;
    /// Empty when the attribute is absent.
    virtual std::string_view GetAttribute(std::string_view name) const = 0;
    virtual void SetAttribute(std::string_view name, std::string_view value) = 0;
    /// Child elements in document order.
    virtual XmlElements Children() const = 0;
    /// Adds an element, made by the same document, after the present children; returns it.
    virtual std::shared_ptr<IXmlElement> AddChild(const std::shared_ptr<IXmlElement>& child) = 0;
    /// Child elements of a name, in document order.
    virtual XmlElements FindChild(std::string_view name) const = 0;
    virtual std::string_view Text() const = 0;
    virtual void Text(std::string_view text) = 0;
    /// Adds a child element that holds a text: every persisted scalar goes through this.
    virtual std::shared_ptr<IXmlElement> AddValue(std::string_view name, std::string_view value) = 0;
    /// Text of the first child of a name, or the default when there is none.
    virtual std::string ReadValue(std::string_view name, std::string_view defaultValue) const = 0;
    /// Hands over the child elements in document order. A child is valid during its visit only, so that a
    /// host can reuse one object for all of them.
    virtual void VisitChildren(IXmlVisitor& visitor) const {
        for (const auto& child : Children()) visitor.Visit(*child);
    }
};

/// Calls a function with each child element; see VisitChildren.
template <typename Function>
void ForEachChild(const IXmlElement& element, Function&& function) {
    struct Visitor final : IXmlVisitor {
        explicit Visitor(Function& called) : mCalled(called) {}
        void Visit(const IXmlElement& child) override { mCalled(child); }
        Function& mCalled;
    } visitor(function);
    element.VisitChildren(visitor);
}

class IXmlDocument {
  public:
    virtual ~IXmlDocument() = default;
    /// A new element without a place; empty when it cannot be made.
    virtual std::shared_ptr<IXmlElement> CreateElement(std::string_view name) = 0;
};

// ------------------------------------------------------------------------------------------- texts

using TextArguments = std::span<const std::string>;

/// A form or control with captions.
class ICaptions {
  public:
    virtual ~ICaptions() = default;
    /// Calls the function with each caption. A caption is a text key until the function replaces it.
    virtual void ForEachCaption(const std::function<void(std::string&)>& function) = 0;
};

class ITextService {
  public:
    virtual ~ITextService() = default;
    /// The text of a key in the present language; the default after "::" if the tables have none. Arguments
    /// fill "%%1", "%%2".
    virtual std::string Translate(std::string_view section, std::string_view key,
                                  TextArguments args) const = 0;
    /// Replaces every caption of a form or control, which is a text key, by its text.
    virtual void TranslateControl(std::string_view section, ICaptions& control) const {
        control.ForEachCaption([&](std::string& caption) { caption = Translate(section, caption, {}); });
    }
    /// Text of a service record id; empty when there is none.
    virtual std::string ServiceRecordText(int32_t id, bool flag) const = 0;
};

class ISelectedStandards;
class IStandard;

/// What a report shows: bits of `IReportDocument::Options`.
inline constexpr int32_t kReportLimits = 2;
inline constexpr int32_t kReportComments = 4;
inline constexpr int32_t kReportWaveforms = 8;
inline constexpr int32_t kReportFailuresOnly = 16;
/// The only kind of report that prints waveforms.
inline constexpr int32_t kFullReport = 3;

/// Selectors of `IReportDocument::Metric`, in twips.
inline constexpr int32_t kTextWidth = -1;  ///< usable width of the page
inline constexpr int32_t kTableWidth = 7;  ///< the same without the margin columns of 560 on either side

/// Values of `IReportDocument::Alignment`.
inline constexpr int32_t kAlignLeft = 0;
inline constexpr int32_t kAlignCentre = 1;
inline constexpr int32_t kAlignRight = 2;

/// The report under way. Lengths are twips, 1440 an inch. Places are measured from the left edge of the
/// usable width and from the top of the usable height of the page. Operations are declared in slot order.
///
/// Tables are written in the mark-up of `report_markup.h`. Each call of `PrintTable` prints below what was
/// printed before, and successive calls with the same columns form one table. Rows never split. A table of
/// several rows that does not fit continues on the next page, below a copy of its first heading rows (rows in
/// which every non-empty cell is a heading). A caller that prints row by row asks `TableHeight` and
/// `SpaceLeft` first, and prints its headings again after `NewPage`. A renderer without pages has room for
/// everything.
class IReportDocument {
  public:
    virtual ~IReportDocument() = default;
    /// Place of the next print, from the top of the page.
    virtual int32_t Position() const = 0;
    virtual void Position(int32_t top) = 0;
    virtual int32_t Options() const = 0;
    virtual int32_t Kind() const = 0;
    /// The standards whose limits are printed next to the results; null for all standards of an element.
    virtual const ISelectedStandards* SelectedStandards() const = 0;
    /// Decimal sign of the language of the report, "." or ",".
    virtual char DecimalSign() const = 0;
    /// Height left on the page below the position.
    virtual int32_t SpaceLeft() const = 0;
    /// Height that `PrintTable` with these arguments would take.
    virtual int32_t TableHeight(std::string_view columns, std::string_view rows) = 0;
    /// Width of a text in the present size; 0 without pages, where nothing is measured.
    virtual int32_t TextWidth(std::string_view text) = 0;
    /// Size of the following text, 5 to 9 points.
    virtual void Style(int32_t points) = 0;
    virtual int32_t Metric(int32_t selector) const = 0;
    /// How `DrawText` aligns its text to its position, until the end of the figure; outside a figure, whether
    /// headings are centred.
    virtual void Alignment(int32_t alignment) = 0;
    /// A column definition, and rows. A width may reach beyond the page; rows may have fewer cells than
    /// columns.
    virtual void PrintTable(std::string_view columns, std::string_view rows) = 0;
    /// Heading of an element or page: its title, and its outcome (empty for none). Centred, it is the title
    /// of a form, with the outcome below. Not in mark-up.
    virtual void PrintHeading(std::string_view title, std::string_view outcome) = 0;
    /// A straight line. Outside a figure a renderer without pages draws a level one where it was printed.
    virtual void DrawLine(int32_t x1, int32_t y1, int32_t x2, int32_t y2) = 0;
    virtual void NewPage() = 0;
    /// A polyline; both spans are of one length.
    virtual void PlotPoints(std::span<const int32_t> x, std::span<const int32_t> y) = 0;
    /// A line of text, not in mark-up; `y` is its top. [inside a figure]
    virtual void DrawText(int32_t x, int32_t y, std::string_view text) = 0;
    /// Lines, points and texts up to `EndFigure` are one picture, which the caption describes. Starts a new
    /// page when the height does not fit; the position is then the top of the figure.
    virtual void BeginFigure(std::string_view caption, int32_t height) = 0;
    virtual void EndFigure() = 0;
    virtual std::string Translate(std::string_view section, std::string_view key,
                                  TextArguments args) const = 0;

    /// The standards whose limits are printed next to the results of the element that is being printed: its
    /// limits set them, its result reads them.
    std::vector<std::shared_ptr<IStandard>> SelectedStandardsForReport;
};

/// The host's report setup, which the library only passes on.
class IReportSetup {
  public:
    virtual ~IReportSetup() = default;
};

// ------------------------------------------------------------------------------------ dialogs, controls

/// How a control announces a change to its host.
class IControlCallback {
  public:
    virtual ~IControlCallback() = default;
    virtual void CallBack(std::string_view what) = 0;
};

/// Window handle of the platform; 0 is no window.
using WindowHandle = uintptr_t;

/// Limits to edit, and the element whose limits they are.
struct OwnedLimits {
    std::shared_ptr<ILimitData> limits;
    std::shared_ptr<ITestElement> owner;
    bool operator==(const OwnedLimits&) const = default;
};

/// The object that a control edits, with which it is initialised.
using ControlArgument = std::variant<std::monostate, std::shared_ptr<IConfigData>, OwnedLimits,
                                     std::shared_ptr<IResultData>, std::shared_ptr<ITestElement>>;

class ICustomControl {
  public:
    virtual ~ICustomControl() = default;
    virtual std::shared_ptr<IControlCallback> CallBack() const = 0;
    virtual void CallBack(std::shared_ptr<IControlCallback> callback) = 0;
    virtual WindowHandle hWnd() const = 0;
    virtual bool Visible() const = 0;
    virtual void Visible(bool visible) = 0;
    virtual bool Locked() const = 0;
    virtual void Locked(bool locked) = 0;
    virtual void Initialize(ControlArgument argument) = 0;
    virtual void Refresh() = 0;
    virtual void SetFocus() = 0;
};

class IDialog {
  public:
    virtual ~IDialog() = default;
    virtual std::shared_ptr<IControlCallback> CallBack() const = 0;
    virtual void CallBack(std::shared_ptr<IControlCallback> callback) = 0;
    virtual bool IsDocked() const = 0;
    virtual bool Locked() const = 0;
    virtual void Locked(bool locked) = 0;
    virtual void Initialize(ControlArgument argument) = 0;
    virtual void Hide() = 0;
    virtual void Show() = 0;
    virtual void Dock(WindowHandle parent) = 0;
    virtual void UnDock() = 0;
    virtual void Unload() = 0;
    virtual void Move(int32_t left, int32_t top, int32_t width, int32_t height) = 0;
    virtual void Refresh() = 0;
    virtual void SetFocus() = 0;
};

// ---------------------------------------------------------------------------------- standards, limits

inline constexpr int32_t kHighSide = 0;
inline constexpr int32_t kLowSide = 1;

/// A limit: the expected result of one limit key, with a high and a low side.
class IExpectedResult {
  public:
    virtual ~IExpectedResult() = default;
    virtual std::string Key() const = 0;
    virtual void Key(std::string_view limitKey) = 0;
    /// The number Y of a side; 0 if the side is not set.
    virtual float Value(int32_t side) const = 0;
    virtual bool IsSet(int32_t side) const = 0;
    virtual void Setup(std::string_view limitKey, std::string_view unit, std::string_view high,
                       std::string_view low) = 0;
    virtual void Expression(int32_t side, std::string_view text) = 0;
    virtual std::string Expression(int32_t side) const = 0;
    virtual std::string Unit() const = 0;
    virtual void Unit(std::string_view unit) = 0;
};

/// An expected result that can compute its limit from the preset of a measurement.
class IExpectedResult2 {
  public:
    virtual ~IExpectedResult2() = default;
    /// Computed in double precision, then taken as single.
    virtual float CalculateValue(float preset, int32_t side) const = 0;
};

using ExpectedResults = std::vector<std::shared_ptr<IExpectedResult>>;

/// Which quantity a judged value is. Sides with the expression "CV" judge coefficients of variation, and all
/// other sides judge all other values.
enum class JudgedAs { kValue, kVariation };

class IStandard {
  public:
    virtual ~IStandard() = default;
    virtual std::string Name() const = 0;
    virtual std::string Version() const = 0;
    virtual const ExpectedResults& Results() const = 0;
    virtual void AddExpectedResult(std::shared_ptr<IExpectedResult> limit) = 0;
    /// Removes every limit of a key.
    virtual void RemoveExpectedResults(std::string_view limitKey) = 0;
    /// 2 when a limit of the key fails the value, else 0. A value equal to a limit passes; a side that is not
    /// set is not tested; a standard without the key fails nothing.
    virtual int32_t Evaluate(std::string_view limitKey, float value, const TaggedValue& preset,
                             JudgedAs judgedAs) const = 0;
};

class IStandardCollection {
  public:
    virtual ~IStandardCollection() = default;
    virtual int32_t Count() const = 0;
    /// Index counts from 0; empty beyond the end.
    virtual std::shared_ptr<IStandard> Item(int32_t index) const = 0;
    /// The standard with a name and version; empty when there is none.
    virtual std::shared_ptr<IStandard> FindExpectedResult(int32_t flags, std::string_view name,
                                                          std::string_view version) const = 0;
    virtual void Add(std::shared_ptr<IStandard> standard) = 0;
    /// Removes the standard with a name and version, if there is one.
    virtual void Remove(std::string_view name, std::string_view version) = 0;
    virtual void Load(const std::shared_ptr<IXmlElement>& element) = 0;
    virtual std::shared_ptr<IXmlElement> Save(const std::shared_ptr<IXmlDocument>& owner) = 0;
    virtual void Clear() = 0;
    virtual std::shared_ptr<IStandardCollection> Clone() const = 0;
    /// Sets the element that the standards belong to.
    virtual void Owner(const std::shared_ptr<ITestElement>& element) = 0;
};

struct StandardName {
    std::string name;
    std::string version;
    bool operator==(const StandardName&) const = default;
};

/// The standards that the operator chose.
class ISelectedStandards {
  public:
    virtual ~ISelectedStandards() = default;
    virtual std::span<const StandardName> Standards() const = 0;
};

/// The host's limit editor, which the library fills with the rows of a test.
class ILimitView {
  public:
    virtual ~ILimitView() = default;
    virtual void ClearRows() = 0;
    virtual void AddRow(std::string_view expressions, std::string_view unit, std::string_view description,
                        std::string_view limitKey) = 0;
    virtual void Hint(bool show, std::string_view text) = 0;
    virtual void Reload(const std::shared_ptr<IStandardCollection>& standards) = 0;
};

class IMeasurement {
  public:
    virtual ~IMeasurement() = default;
    virtual std::string Description() const = 0;
    virtual std::string Key() const = 0;
    virtual std::string LimitKey() const = 0;
    virtual int32_t Status() const = 0;
    virtual std::string Unit() const = 0;
    virtual TaggedValue value() const = 0;
    virtual TaggedValue PresetValue() const = 0;
    virtual int32_t ValueType() const = 0;
    virtual std::string ValueFormat() const = 0;
    virtual int32_t Flags() const = 0;
    virtual std::string ToolTipText() const = 0;
    virtual void Load(const std::shared_ptr<IXmlElement>& element, IProgressLog* log) = 0;
    virtual std::shared_ptr<IXmlElement> Save(const std::shared_ptr<IXmlDocument>& owner) = 0;
};

/// Flags of the two value getters of `IMeasurement2`.
inline constexpr int32_t kCalculatedValue = 1;
inline constexpr int32_t kAsText = 2;
inline constexpr int32_t kWithUnit = 4;

class IMeasurement2 {
  public:
    virtual ~IMeasurement2() = default;
    virtual TaggedValue GetLimitValue(const IStandard& standard, int32_t side, int32_t flags) const = 0;
    virtual TaggedValue GetResultValue(int32_t flags) const = 0;
    virtual bool SupportsLimit(int32_t side) const = 0;
    virtual float CalculateLimitValue(const IExpectedResult& limit, int32_t side) const = 0;
    virtual int32_t ValidateLimits(const IStandard& standard) const = 0;
};

// ------------------------------------------------------------------------ configuration, limits, result

class IConfigData {
  public:
    virtual ~IConfigData() = default;
    virtual bool HasDialog() const = 0;
    virtual std::shared_ptr<IConfigData> Clone() = 0;
    virtual std::shared_ptr<IDialog> CreateDialog() = 0;
    virtual void Load(const std::shared_ptr<IXmlElement>& element, IProgressLog* log) = 0;
    virtual std::shared_ptr<IXmlElement> Save(const std::shared_ptr<IXmlDocument>& owner) = 0;
    /// Nothing without a report.
    virtual void PrintReport(IReportDocument* report, const std::shared_ptr<IReportSetup>& setup) = 0;
};

class ILimitData {
  public:
    virtual ~ILimitData() = default;
    virtual std::string Description() const = 0;
    virtual void Description(std::string_view text) = 0;
    virtual bool HasDialog() const = 0;
    virtual std::shared_ptr<IStandardCollection> Standards() const = 0;
    virtual void Owner(const std::shared_ptr<ITestElement>& element) = 0;
    virtual std::shared_ptr<ILimitData> Clone() const = 0;
    virtual std::shared_ptr<IDialog> CreateDialog() = 0;
    virtual std::shared_ptr<IStandard> CreateStandard(std::string_view name, std::string_view version) = 0;
    virtual void Load(const std::shared_ptr<IXmlElement>& element, IProgressLog* log) = 0;
    virtual std::shared_ptr<IXmlElement> Save(const std::shared_ptr<IXmlDocument>& owner) = 0;
    virtual void PrintReport(IReportDocument* report, const std::shared_ptr<IReportSetup>& setup) = 0;
    virtual void UpdateLimits(const std::shared_ptr<ITestElement>& owner) = 0;
    /// The selected standards that fail a measurement; empty when none does.
    virtual std::vector<std::shared_ptr<IStandard>> FindFailedStandards(
        const IMeasurement* measurement, const ISelectedStandards* selected) const = 0;
};

/// A note for the service technician about a failed or not applicable test.
class IServiceRecord {
  public:
    virtual ~IServiceRecord() = default;
    /// Code "F" or "NA", and the texts of the measurements, each preceded by "/".
    virtual void Initialize(std::string_view code, std::string_view list) = 0;
    virtual std::string Code() const = 0;
    virtual std::string Text() const = 0;
    virtual void Load(const std::shared_ptr<IXmlElement>& element) = 0;
    /// Empty when there is nothing to keep.
    virtual std::shared_ptr<IXmlElement> Save(const std::shared_ptr<IXmlDocument>& owner) = 0;
};

class IResultData {
  public:
    virtual ~IResultData() = default;
    virtual std::string Comment() const = 0;
    virtual void Comment(std::string_view comment) = 0;
    virtual bool HasDialog() const = 0;
    virtual int32_t Status() const = 0;
    /// Index counts from 0.
    virtual std::shared_ptr<IMeasurement> Measurement(int32_t index) const = 0;
    virtual std::shared_ptr<IMeasurement> Measurement(std::string_view key) const = 0;
    virtual int32_t MeasurementCount() const = 0;
    virtual std::shared_ptr<IServiceRecord> ServiceRecord() const = 0;
    virtual int32_t MTIID() const = 0;
    virtual std::shared_ptr<IDialog> CreateDialog() = 0;
    virtual void Load(const std::shared_ptr<IXmlElement>& element, IProgressLog* log) = 0;
    virtual std::shared_ptr<IXmlElement> Save(const std::shared_ptr<IXmlDocument>& owner) = 0;
    /// Nothing without a report.
    virtual void PrintReport(IReportDocument* report, const std::shared_ptr<IReportSetup>& setup) = 0;
};

// -------------------------------------------------------------------------------------- test elements

/// Bit of `IElementInfo::ServiceFlags`: keep a service record of failed and not applicable results.
inline constexpr int32_t kKeepServiceRecord = 1;

/// Descriptive data of an element.
class IElementInfo {
  public:
    virtual ~IElementInfo() = default;
    virtual std::string Name() const = 0;
    virtual void Name(std::string_view name) = 0;
    virtual int32_t ServiceFlags() const = 0;
};

/// The passes of the host (save, print, evaluate) in which an element takes part.
class IElementFilter {
  public:
    virtual ~IElementFilter() = default;
    virtual bool Save() const = 0;
    virtual bool Print() const = 0;
    virtual bool Evaluate() const = 0;
};

/// One measuring instrument of the host's list.
struct MtiEntry {
    int32_t number = 0;
    std::string plugIn;
    std::string name;
    std::string serialNumber;
    std::string calibrationDate;
    bool operator==(const MtiEntry&) const = default;
};

class IMtiList {
  public:
    virtual ~IMtiList() = default;
    virtual std::span<const MtiEntry> Entries() const = 0;
    virtual void Add(MtiEntry entry) = 0;
};

/// The connection of a running element to the sequencer.
class IExecutionPipe {
  public:
    virtual ~IExecutionPipe() = default;
    /// Navigation code: 0 next, 1 previous, 2 abort, 3 skip.
    virtual int32_t NextAction() const = 0;
    virtual void NextAction(int32_t code) = 0;
    virtual std::shared_ptr<IMtiList> MtiList() const = 0;
    virtual std::shared_ptr<ISelectedStandards> SelectedStandards() const = 0;
    /// Asked first by `Perform`; False keeps the element from running.
    virtual bool BeginElement(ITestElement& element) = 0;
    /// Called when a result has been stored.
    virtual void EndElement(ITestElement& element) = 0;
};

class ITestElement {
  public:
    virtual ~ITestElement() = default;
    virtual std::string PlugInID() const = 0;
    virtual int32_t TestID() const = 0;
    virtual int32_t ID() const = 0;
    virtual void ID(int32_t id) = 0;
    virtual std::shared_ptr<ITestElement> Parent() const = 0;
    virtual void Parent(const std::shared_ptr<ITestElement>& parent) = 0;
    virtual std::shared_ptr<IElementInfo> Info() const = 0;
    virtual std::shared_ptr<IElementFilter> Filter() const = 0;
    virtual std::shared_ptr<IResultData> Result() const = 0;
    virtual std::shared_ptr<ILimitData> Limits() const = 0;
    virtual std::shared_ptr<IConfigData> Configuration() const = 0;
    /// [once, after creation]
    virtual void Initialize(const std::shared_ptr<ITestElement>& parent, std::string_view plugInId,
                            int32_t testId) = 0;
    /// Deep copy of configuration and limits, without the result.
    virtual std::shared_ptr<ITestElement> Clone() = 0;
    /// Blocks until the operator has finished with the element.
    virtual void Perform(const std::shared_ptr<IExecutionPipe>& pipe) = 0;
    virtual void Load(const std::shared_ptr<IXmlElement>& element, IProgressLog* log) = 0;
    virtual std::shared_ptr<IXmlElement> Save(const std::shared_ptr<IXmlDocument>& owner,
                                              int32_t saveMode) = 0;
    virtual void PrintReport(IReportDocument* report, const std::shared_ptr<IReportSetup>& setup) = 0;
    virtual bool QuerySetParent(const std::shared_ptr<ITestElement>& parent) = 0;
    virtual void Terminate() = 0;
    virtual void UpdateReferences() = 0;
    virtual std::vector<std::string> GetMeasurementList() const = 0;
    /// The state that the elements of the open sequence share; never empty. An element with a parent has the
    /// parent's; a root has the one that it was given, or its own.
    virtual std::shared_ptr<SequenceState> Sequence() const = 0;
    /// Makes a root part of a sequence; empty gives it a state of its own.
    virtual void Sequence(std::shared_ptr<SequenceState> state) = 0;
};

/// Where a new child goes: after the relative, or at the end.
inline constexpr int32_t kAddAtEnd = 1;
inline constexpr int32_t kAddBehind = 2;

class ITestContainer {
  public:
    virtual ~ITestContainer() = default;
    virtual int32_t Count() const = 0;
    /// Index counts from 1; empty beyond the end.
    virtual std::shared_ptr<ITestElement> Item(int32_t index) const = 0;
    virtual void Add(const std::shared_ptr<ITestElement>& child,
                     const std::shared_ptr<ITestElement>& relative, int32_t relation) = 0;
    /// The element with an id, at any depth; empty when there is none.
    virtual std::shared_ptr<ITestElement> FindElement(int32_t elementId) const = 0;
    virtual void Remove(const std::shared_ptr<ITestElement>& element) = 0;
    virtual std::vector<std::shared_ptr<ITestElement>> NewEnum() const = 0;
};

/// The host's element helper: each element of the library has one and leaves all bookkeeping to it.
class ITestElementBase {
  public:
    virtual ~ITestElementBase() = default;
    virtual std::shared_ptr<IConfigData> Configuration() const = 0;
    virtual void Configuration(std::shared_ptr<IConfigData> configuration) = 0;
    virtual std::shared_ptr<ILimitData> Limits() const = 0;
    virtual void Limits(std::shared_ptr<ILimitData> limits) = 0;
    virtual std::shared_ptr<IResultData> Result() const = 0;
    /// Empty discards the result.
    virtual void Result(std::shared_ptr<IResultData> result) = 0;
    virtual std::shared_ptr<IElementInfo> Info() const = 0;
    virtual std::shared_ptr<IElementFilter> Filter() const = 0;
    virtual std::shared_ptr<ITestElement> Parent() const = 0;
    virtual void Parent(const std::shared_ptr<ITestElement>& parent) = 0;
    virtual std::string PlugInID() const = 0;
    virtual int32_t TestID() const = 0;
    virtual int32_t ID() const = 0;
    virtual void ID(int32_t id) = 0;
    /// A new base with cloned configuration and limits, and no result.
    virtual std::shared_ptr<ITestElementBase> Clone() = 0;
    virtual void Initialize(const std::shared_ptr<ITestElement>& parent, std::string_view plugInId,
                            int32_t testId) = 0;
    /// Reads the frame of a "TestElement" and hands its blocks to configuration and limits; hands a
    /// "ResultItem" to the result.
    virtual void Load(const std::shared_ptr<IXmlElement>& element, IProgressLog* log) = 0;
    virtual std::shared_ptr<IXmlElement> Save(const std::shared_ptr<IXmlDocument>& owner,
                                              int32_t saveMode) = 0;
    virtual void PrintReport(IReportDocument* report, const std::shared_ptr<IReportSetup>& setup) = 0;
    virtual void Terminate() = 0;
};

/// The host's standard group.
class ITestContainerBase : public virtual ITestElementBase {
  public:
    virtual int32_t Count() const = 0;
    virtual std::shared_ptr<ITestElement> Item(int32_t index) const = 0;
    virtual void Add(const std::shared_ptr<ITestElement>& child,
                     const std::shared_ptr<ITestElement>& relative, int32_t relation) = 0;
    virtual std::shared_ptr<ITestElement> FindElement(int32_t elementId) const = 0;
    virtual std::vector<std::shared_ptr<ITestElement>> NewEnum() const = 0;
    virtual void Remove(const std::shared_ptr<ITestElement>& element) = 0;
    virtual void UpdateReferences() = 0;
};

/// Settings of the test guide, kept by the host: a bit set, 1 the Skip button, 2 the NA button.
inline constexpr int32_t kSkipButtonBit = 1;
inline constexpr int32_t kNaButtonBit = 2;

class ITestGuideConfig {
  public:
    virtual ~ITestGuideConfig() = default;
    virtual int32_t Buttons() const = 0;
    virtual void Buttons(int32_t bits) = 0;
    virtual std::shared_ptr<ITestGuideConfig> Clone() const = 0;
    virtual void Load(const std::shared_ptr<IXmlElement>& element) = 0;
    virtual std::shared_ptr<IXmlElement> Save(const std::shared_ptr<IXmlDocument>& owner) = 0;
};

// -------------------------------------------------------------------------------------- value services

/// The stored form of values and statuses.
class IMeasurementCodec {
  public:
    virtual ~IMeasurementCodec() = default;
    virtual std::shared_ptr<IXmlElement> WriteStatus(const std::shared_ptr<IXmlDocument>& owner,
                                                     int32_t status, int32_t extra) = 0;
    virtual void ReadStatus(const IXmlElement& element, int32_t& status, int32_t& extra) = 0;
    virtual void ReadValue(const IXmlElement& element, TaggedValue& value, int32_t& type) = 0;
    virtual std::shared_ptr<IXmlElement> WriteValue(const std::shared_ptr<IXmlDocument>& owner,
                                                    const TaggedValue& value, int32_t type) = 0;
};

class IValueFormatter {
  public:
    virtual ~IValueFormatter() = default;
    virtual std::string ToText(const TaggedValue& value) const = 0;
};

/// The machine-wide settings: a path has named values. Reading never fails: a missing value is empty.
class ISettingsRegistry {
  public:
    virtual ~ISettingsRegistry() = default;
    /// Number of values below a path; 0 for a path that does not exist.
    virtual int32_t ValueCount(std::string_view path) const = 0;
    virtual TaggedValue ReadValue(std::string_view path, std::string_view name) const = 0;
};

/// A plug-in that introduces itself to the library.
class IPlugIn {
  public:
    virtual ~IPlugIn() = default;
    virtual std::string PlugInID() const = 0;
};

/// The plug-in object of the sister library.
class IZRD47500PlugIn : public virtual IPlugIn {
  public:
    /// A standard with the limits of a test; empty when the plug-in has none of that name. It may complete
    /// name and version.
    virtual std::shared_ptr<IStandard> LoadStandard(int32_t testId, std::string& alphaName,
                                                    std::string& completeName) = 0;
    /// The same for one element: a limit that depends on its settings is there with the number for them.
    virtual std::shared_ptr<IStandard> LoadStandardFor(const ITestElement& element, std::string& alphaName,
                                                       std::string& completeName) {
        return LoadStandard(element.TestID(), alphaName, completeName);
    }
};

}  // namespace vorex
