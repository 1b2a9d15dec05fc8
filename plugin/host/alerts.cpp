#include "plugin/host/alerts.h"

#include <cstring>

#include "plugin/host/host_string.h"
#include "plugin/host/suite_slots.h"
#include "plugin/host/suite_table.h"
#include "plugin/host/suites.h"

namespace {

/// Holds the suite for texts, which is the last row of the table: an acquire that ends early doesn't reach
/// it, and without it the alert that says so could not be worded.
class TextSuiteLoan {
public:
    explicit TextSuiteLoan(const HostBasic* basic) : basic_(basic) {
        if (AIUnicodeStringSlot) return;
        const SuiteRow& row = Row();
        borrowed_ = basic_->AcquireSuite(row.name, row.version, row.slot) == kHostNoError;
    }
    ~TextSuiteLoan() {
        if (!borrowed_) return;
        const SuiteRow& row = Row();
        basic_->ReleaseSuite(row.name, row.version);
        AIUnicodeStringSlot = nullptr;
    }
    TextSuiteLoan(const TextSuiteLoan&) = delete;
    TextSuiteLoan& operator=(const TextSuiteLoan&) = delete;

    bool held() const { return AIUnicodeStringSlot != nullptr; }

private:
    static const SuiteRow& Row() { return SuiteTable().back(); }

    const HostBasic* basic_;
    bool borrowed_ = false;
};

constexpr int32_t kAnswerYes = 1;

void Show(const HostBasic* basic, const char* text, int32_t encoding,
          HostError (*AIUserSuite::*alert)(UnicodeStringHandle)) {
    if (!CanShowAlert()) return;
    const TextSuiteLoan loan(basic);
    if (!loan.held()) return;
    const HostString string(text, std::strlen(text), encoding);
    if (string.get()) (UserSuite().*alert)(string.get());
}

} // namespace

bool CanShowAlert() {
    return AIUserSlot != nullptr;
}

void ShowMessageAlert(const HostBasic* basic, const char* text, int32_t encoding) {
    Show(basic, text, encoding, &AIUserSuite::MessageAlert);
}

void ShowErrorAlert(const HostBasic* basic, const char* text, int32_t encoding) {
    Show(basic, text, encoding, &AIUserSuite::ErrorAlert);
}

bool AskYesNoAlert(const char* question, int32_t encoding) {
    if (!CanShowAlert()) return false;
    const HostString string(question, std::strlen(question), encoding);
    int32_t answer = 0;
    return string.get() && UserSuite().YesNoAlert(string.get(), &answer) == kHostNoError &&
           answer == kAnswerYes;
}
