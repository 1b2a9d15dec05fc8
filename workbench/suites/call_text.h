/// A call's arguments and result as readable text, for the trace and for faults.
#pragma once

#include <cstdint>
#include <string>
#include <type_traits>

#include "suites/art.h"
#include "suites/draw.h"
#include "suites/host_types.h"
#include "suites/panel.h"
#include "suites/raster.h"
#include "suites/text.h"

namespace workbench {

std::string HandleText(const void* handle);                      ///< "0x10040", "none"
std::string BadHandleText(const char* what, const void* handle); ///< for a handle that names no such thing
std::string ErrorText(HostError error);                          ///< "done", "not found", a number
std::string TextText(UnicodeStringHandle text);                  ///< with its content, if it is living
std::string NumberText(double number);
std::string QuotedText(const char* text); ///< cut at 40 bytes
std::string ValueText(const HostPoint& point);
std::string ValueText(const HostRect& rect);
std::string ValueText(const HostMatrix& matrix);
std::string ValueText(const HostColor& color);
std::string ValueText(const HostPathSegment& segment);
std::string ValueText(const HostPathStyle& style);
std::string ValueText(const HostGradientStop& stop);
std::string ValueText(const HostCustomColor& color);
std::string ValueText(const HostDrawData& data);
std::string ValueText(const HostPlaceRequest& request);
std::string ValueText(const HostRasterRecord& record);
std::string ValueText(const HostTileSlice& slice);
std::string ValueText(const HostTile& tile);
std::string ValueText(const HostFontRecord& record);
std::string ValueText(const HostTextDash& dash);
std::string ValueText(const HostSize& size);

template <typename T>
concept Complete = requires {
    sizeof(T);
};

/// One argument; `outputs`: also what an out pointer points at.
template <typename T>
std::string ArgumentText(const T& value, bool outputs) {
    if constexpr (std::is_same_v<T, UnicodeStringHandle>) {
        return TextText(value);
    } else if constexpr (std::is_same_v<T, const char*>) {
        return QuotedText(value);
    } else if constexpr (std::is_arithmetic_v<T>) {
        return NumberText(static_cast<double>(value));
    } else if constexpr (!std::is_pointer_v<T>) {
        return ValueText(value);
    } else {
        using Target = std::remove_pointer_t<T>;
        if constexpr (std::is_function_v<Target>) {
            return value ? "a function" : "none";
        } else if constexpr (std::is_void_v<std::remove_cv_t<Target>> || !Complete<Target>) {
            return HandleText(value);
        } else {
            if (!value) return "null";
            constexpr bool bytes = std::is_same_v<std::remove_cv_t<Target>, uint8_t> ||
                                   std::is_same_v<std::remove_cv_t<Target>, char>;
            if constexpr (bytes)
                return "...";
            else if constexpr (std::is_const_v<Target>)
                return ArgumentText<std::remove_cv_t<Target>>(*value, true);
            else
                return outputs ? "-> " + ArgumentText<Target>(*value, true) : "->";
        }
    }
}

/// An argument whose type is known by the function alone: some hundred entries share what goes over them.
struct TracedArgument {
    template <typename T>
    static TracedArgument Of(const T& value) {
        return {&value, [](const void* it, bool outputs) {
                    return ArgumentText(*static_cast<const T*>(it), outputs);
                }};
    }

    const void* value;
    std::string (*text)(const void* value, bool outputs);
};

} // namespace workbench
