#include <cstdio>
#include <iostream>
#include <nlohmann/json.hpp>

#include "app/commands.h"

void Complain(const std::string& sentence) {
    std::fprintf(stderr, "velquorne: %s\n", sentence.c_str());
}

void PrintJson(const nlohmann::ordered_json& json) {
    std::cout << json.dump(1, ' ', false, nlohmann::json::error_handler_t::replace) << "\n";
}
