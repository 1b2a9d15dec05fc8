/// Records as the commands that list them show them.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "app/database_view.h"

nlohmann::ordered_json RecordListJson(const std::string& group, const RecordSummary& record);

/// A line on standard output, with the group in front if `withGroup` is set.
void PrintRecordLine(const std::string& group, const RecordSummary& record, bool withGroup);
