/// The trace of store and capture operations.
#pragma once

/// Gives the name with "_START\r\n" to the trace hook, and with "_END\r\n" when the scope is left.  The hook
/// discards both: there is no log.
class TraceScope {
public:
    explicit TraceScope(const char* name);
    ~TraceScope();
    TraceScope(const TraceScope&) = delete;
    TraceScope& operator=(const TraceScope&) = delete;

private:
    const char* name_;
};
