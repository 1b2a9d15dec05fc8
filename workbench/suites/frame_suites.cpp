// The tables of suites/frame.h: alerts, texts, file paths.

#include "suites/frame.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "workbench/suites/suite_call.h"
#include "workbench/suites/text_encoding.h"

namespace workbench {

namespace {

// AI User Suite

HostError ShowAlert(SuiteCall& call, const HostText& text, bool error) {
    call.host().alerts.push_back({.error = error, .text = text.utf8});
    if (call.host().frame) call.host().frame->ShowAlert(text.utf8, error);
    return kHostNoError;
}

HostError MessageAlert(SuiteCall& call, HostText& text) {
    return ShowAlert(call, text, false);
}

HostError ErrorAlert(SuiteCall& call, HostText& text) {
    return ShowAlert(call, text, true);
}

HostError YesNoAlert(SuiteCall& call, HostText& text, int32_t& answer) {
    HostState& host = call.host();
    host.alerts.push_back({.error = false, .text = text.utf8, .question = true});
    bool yes = false;
    if (!host.answers.empty()) {
        yes = host.answers.front();
        host.answers.pop_front();
    } else if (host.frame) {
        yes = host.frame->AskYesNo(text.utf8);
    }
    answer = yes ? 1 : 0;
    return kHostNoError;
}

struct UnitOfRuler {
    RulerUnit unit;
    double points;
    const char* suffix;
};

constexpr UnitOfRuler kRulerUnits[] = {
    {RulerUnit::kInch, 72, " in"}, {RulerUnit::kCentimetre, 72 / 2.54, " cm"},
    {RulerUnit::kPoint, 1, " pt"}, {RulerUnit::kMillimetre, 72 / 25.4, " mm"},
    {RulerUnit::kPixel, 1, " px"}, {RulerUnit::kQuarterMillimetre, 72 / 101.6, " H"},
};

/// Picas and points are told apart by a "p".
std::string PicaText(double points) {
    const double picas = std::trunc(points / 12);
    return NumberText(picas) + "p" + NumberText(std::abs(points - picas * 12));
}

HostError FormatRulerLength(SuiteCall& call, double points, int32_t, HostText& text) {
    const RulerUnit unit = call.host().rulerUnit;
    if (unit == RulerUnit::kPica) {
        text.utf8 = PicaText(points);
        return kHostNoError;
    }
    const auto row = std::ranges::find(kRulerUnits, unit, &UnitOfRuler::unit);
    text.utf8 = NumberText(points / row->points) + row->suffix;
    return kHostNoError;
}

// AI Unicode String Suite

HostError NewString(SuiteCall& call, const char* bytes, uint64_t length, int32_t encoding,
                    UnicodeStringHandle& string) {
    if (!bytes && length > 0) return call.Fault(kHostBadParameter, "a pointer is missing");
    auto text = std::make_unique<HostText>();
    auto utf8 = DecodeText({bytes ? bytes : "", static_cast<size_t>(length)}, encoding);
    if (!utf8) return call.Fault(kHostBadParameter, "no such encoding");
    text->utf8 = std::move(*utf8);
    string = call.host().Lend<UnicodeStringHandle>(HandleType::kText, std::move(text));
    return kHostNoError;
}

HostError NewEmptyString(SuiteCall& call, UnicodeStringHandle& string) {
    string = call.host().Lend<UnicodeStringHandle>(HandleType::kText, std::make_unique<HostText>());
    return kHostNoError;
}

HostError DisposeString(SuiteCall& call, HostText& text) {
    call.host().TakeBack(text);
    return kHostNoError;
}

HostError AssignString(SuiteCall&, HostText& target, HostText& source) {
    target.utf8 = source.utf8;
    return kHostNoError;
}

HostError GetBytes(SuiteCall& call, HostText& text, int32_t encoding, char* bytes, uint64_t capacity,
                   uint64_t& length) {
    if (!bytes && capacity > 0) return call.Fault(kHostBadParameter, "a pointer is missing");
    const auto encoded = EncodeText(text.utf8, encoding);
    if (!encoded) return call.Fault(kHostBadParameter, "no such encoding");
    const size_t written = static_cast<size_t>(std::min<uint64_t>(capacity, encoded->size()));
    if (written > 0) std::memcpy(bytes, encoded->data(), written);
    length = encoded->size();
    return kHostNoError;
}

// AI File Path Suite

HostError NewPath(SuiteCall& call, HostText& text, FilePathHandle& path) {
    auto made = std::make_unique<HostFilePath>();
    made->utf8 = text.utf8;
    path = call.host().Lend<FilePathHandle>(HandleType::kFilePath, std::move(made));
    return kHostNoError;
}

HostError DisposePath(SuiteCall& call, HostFilePath& path) {
    call.host().TakeBack(path);
    return kHostNoError;
}

} // namespace

const void* UserSuiteTable() {
    static constexpr AIUserSuite table{
        Entry<"AI User Suite", "MessageAlert", MessageAlert>::Run,
        Entry<"AI User Suite", "ErrorAlert", ErrorAlert>::Run,
        Entry<"AI User Suite", "YesNoAlert", YesNoAlert>::Run,
        Entry<"AI User Suite", "FormatRulerLength", FormatRulerLength>::Run,
    };
    return &table;
}

const void* UnicodeStringSuiteTable() {
    static constexpr AIUnicodeStringSuite table{
        Entry<"AI Unicode String Suite", "New", NewString>::Run,
        Entry<"AI Unicode String Suite", "NewEmpty", NewEmptyString>::Run,
        Entry<"AI Unicode String Suite", "Dispose", DisposeString, EntryKind::kDisposal>::Run,
        Entry<"AI Unicode String Suite", "Assign", AssignString>::Run,
        Entry<"AI Unicode String Suite", "GetBytes", GetBytes>::Run,
    };
    return &table;
}

const void* FilePathSuiteTable() {
    static constexpr AIFilePathSuite table{
        Entry<"AI File Path Suite", "New", NewPath>::Run,
        Entry<"AI File Path Suite", "Dispose", DisposePath, EntryKind::kDisposal>::Run,
    };
    return &table;
}

} // namespace workbench
