/// A record as JSON: the header and every object of the stream, every field by its name.
#pragma once

#include <nlohmann/json.hpp>

#include "plugin/store/memory_handle.h"

/// `record` is expanded and in host order.  Fixed numbers are written as reals; a damaged stream ends with
/// an object `{"damaged": true}`.
nlohmann::ordered_json RecordToJson(MemoryHandle record);
