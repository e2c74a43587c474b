#pragma once

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>

#include "foundation/host_contract.h"
#include "foundation/vocabulary.h"

namespace vorex {

/// The text of a key in the language of the report, if given, or of the program.
std::string Translate(std::string_view textKey, const IReportDocument* report = nullptr);
/// The same with "%%1", "%%2" filled.
std::string Translate(std::string_view textKey, std::initializer_list<std::string> arguments,
                      const IReportDocument* report = nullptr);
/// The default English text of a key with its placeholders filled: what is shown without a language table.
std::string DefaultText(std::string_view textKey, TextArguments arguments);
/// Replaces the text keys in the captions of a form or control by their texts.
void TranslateControl(ICaptions& control);
/// The text with "%%1", "%%2" filled.
std::string FillPlaceholders(std::string_view text, TextArguments arguments);

/// Text of a choice for a person; an unknown value shows the fallback of its enumeration.
std::string DisplayText(const Choice& choice, int32_t value, const IReportDocument* report = nullptr);
/// Stored form of a choice: its code in decimal, or, with a report, its text in the report's language.
std::string StoredText(const Choice& choice, int32_t value, const IReportDocument* report = nullptr);

/// Text key of the name of a test for a person; that of a group for any other identifier.
std::string_view TitleKey(int32_t testId);
/// True for a name that a person gave an element: a new element has the English name of its test.
bool IsOwnName(std::string_view name, int32_t testId);
/// A message as a file keeps it, so that each reader sees it in their own language: its key and the arguments
/// for the key's placeholders, separated by "|". Only the last argument may hold a "|", and may be such a
/// message itself.
std::string StoredMessage(std::string_view textKey, std::initializer_list<std::string> arguments = {});
/// A stored message in words; any other text as it is.
std::string MessageText(std::string_view stored, const IReportDocument* report = nullptr);
/// The same in the default English.
std::string DefaultMessageText(std::string_view stored);

/// The name of an element: its own, or that of its test.
std::string ElementTitle(std::string_view name, int32_t testId, const IReportDocument* report = nullptr);

/// The text of a status: "Pass", "Fail", "NA"; empty for not tested.
std::string StatusText(int32_t status, const IReportDocument* report = nullptr);

/// False only when the text is, ignoring case, the over-range or the under-range mark of the detector.
bool IsValidReading(std::string_view reading);

/// Dose and dose rate units of the Pelomark in words; charge is measured in amperes as a rate.
std::string DosimeterDoseUnit(int32_t doseUnit, const IReportDocument* report = nullptr);
std::string DosimeterRateUnit(int32_t doseUnit, int32_t rateUnit, const IReportDocument* report = nullptr);
/// The same as it is saved: one key, or the keys of its parts joined by "/" (`25114::R/25116::/Sec`).
std::string DosimeterRateUnitKey(int32_t doseUnit, int32_t rateUnit);
/// A saved unit in words: the texts of its parts, joined. A unit without a key is shown as it is.
std::string UnitText(std::string_view unit, const IReportDocument* report = nullptr);
/// The same in the default English, without a language table.
std::string DefaultUnitText(std::string_view unit);

/// A comment holds at most one marker: the operator's words are before it, the log of edited values, a
/// line each, after it.
std::string CommentWords(std::string_view comment);
std::string CommentLog(std::string_view comment);
/// The log in words. Its lines are stored messages; older files have them in words.
std::string LogWords(std::string_view log, const IReportDocument* report = nullptr);
/// The comment with a text put after its marker; a comment without one gets the marker first.
std::string AppendComment(std::string_view comment, std::string_view text);

/// A time-out of the detector in ms, from minutes of the settings store; the default when it reads as 0.
int32_t SleepTimeOut();
int32_t ShutdownTimeOut();
/// An integer of the plug-in's settings; the default when the value is missing or no number.
int32_t ReadSetting(std::string_view name, int32_t defaultValue);
/// Fixes the exposure caption at the start of the application. One version of the host needs captions of nine
/// characters.
void FixExposureCaption();

/// Registers the plug-in object; any plug-in other than this library's is ignored.
void SetPlugIn(const std::shared_ptr<IPlugIn>& plugIn);
/// A standard of the plug-in for an element; empty without a plug-in or when it has none of that name.
std::shared_ptr<IStandard> LoadStandard(const ITestElement& element, std::string& name, std::string& version);

}  // namespace vorex
