#include "workbench/suites/suite_call.h"

#include <cstring>
#include <utility>

namespace workbench {

SuiteCall::SuiteCall(size_t suite, const char* operation)
    : state_(CurrentState()), suite_(suite), operation_(operation) {}

SuiteCall::~SuiteCall() = default;

HostError SuiteCall::Begin(bool canBeRefused) {
    if (!state_) return kHostRefused; // a table that outlived its host
    number_ = ++state_->calls;
    previouslyLent_ = std::move(state_->lentTexts[suite_]);
    if (state_->allUses == 0) return Fault(kHostSuiteNotFound, "called while no suite is acquired");
    if (state_->uses[suite_] == 0) return Fault(kHostSuiteNotFound, "called while the suite isn't acquired");
    const bool chosen =
        state_->refuseFirst != 0 && number_ >= state_->refuseFirst && number_ <= state_->refuseLast;
    if (!chosen || !canBeRefused) return kHostNoError;
    refused_ = state_->refused = true;
    return kHostRefused;
}

HostError SuiteCall::Fault(HostError error, const std::string& what) {
    state_->Fault("call " + std::to_string(number_) + ": " + Title() + ": " + what);
    return error;
}

HostError SuiteCall::FaultUnlessRefused(HostError error, const std::string& what) {
    return state_->refused ? error : Fault(error, what);
}

const char* SuiteCall::Lend(const std::string& text) {
    // A block of its own, freed at the next call, so that a sanitizer sees a text that is kept too long.
    auto& lent = state_->lentTexts[suite_];
    lent = std::make_unique<char[]>(text.size() + 1);
    std::memcpy(lent.get(), text.c_str(), text.size() + 1);
    return lent.get();
}

void SuiteCall::Trace(std::initializer_list<TracedArgument> arguments, bool outputs,
                      const std::string& result) {
    std::string line = std::to_string(number_) + ' ' + Title() + '(';
    const char* separator = "";
    for (const TracedArgument& argument : arguments) {
        line += separator + argument.text(argument.value, outputs);
        separator = ", ";
    }
    line += ')';
    if (!result.empty()) line += " = " + result;
    state_->trace(line);
}

std::string SuiteCall::Title() const {
    return std::string(SuppliedSuites()[suite_].name) + ' ' + operation_;
}

} // namespace workbench
