#include "plugin/store/trace.h"

namespace {

void Trace(const char* /*name*/, const char* /*moment*/) {}

} // namespace

TraceScope::TraceScope(const char* name) : name_(name) {
    Trace(name_, "_START\r\n");
}

TraceScope::~TraceScope() {
    Trace(name_, "_END\r\n");
}
