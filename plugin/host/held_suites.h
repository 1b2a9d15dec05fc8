/// The host's suites for the length of a call that is no message: of the panel's window, its size handler,
/// its flyout.
#pragma once

class HeldSuites {
public:
    /// Acquires with `globals->hostBasic`; within a call that holds them already this costs nothing.
    HeldSuites();
    ~HeldSuites();
    HeldSuites(const HeldSuites&) = delete;
    HeldSuites& operator=(const HeldSuites&) = delete;

    /// False: no suite may be called.  The user knows, if an alert could be shown.
    bool held() const { return held_; }

private:
    bool counted_ = false;
    bool held_ = false;
};
