/// How one attribute of a set goes out to a plug-in and comes in, for the two tables of features.
///
/// Values that an attribute can't have come from stored data and are refused without a fault.
#pragma once

#include <cmath>
#include <cstdint>

#include "workbench/suites/text_references.h"

namespace workbench {

/// The engine numbers caps and joins from 1, all others from 0, so that who mixes them is found out.
constexpr int32_t kEngineNumberBase = 1;
constexpr int32_t kCapsOrJoins = 3;

inline bool IsAnyReal(double value) {
    return std::isfinite(value);
}
inline bool IsNotNegative(double value) {
    return std::isfinite(value) && value >= 0;
}
inline bool IsPositive(double value) {
    return std::isfinite(value) && value > 0;
}
inline bool IsNotZero(double value) {
    return std::isfinite(value) && value != 0;
}

template <typename Features, typename Which, typename Value>
HostError GetValue(Features& features, Value& out) {
    const auto* value = features.values.template Get<Which>();
    if (!value) return kHostNotFound;
    out = static_cast<Value>(*value);
    return kHostNoError;
}

template <typename Features, typename Which>
HostError GetFlag(SuiteCall&, Features& features, int32_t& flag) {
    return GetValue<Features, Which>(features, flag);
}

template <typename Features, typename Which>
HostError SetFlag(SuiteCall&, Features& features, int32_t flag) {
    features.values.template Set<Which>(flag != 0);
    return kHostNoError;
}

template <typename Features, typename Which>
HostError GetReal(SuiteCall&, Features& features, double& real) {
    return GetValue<Features, Which>(features, real);
}

template <typename Features, typename Which, bool (*isGood)(double)>
HostError SetReal(SuiteCall&, Features& features, double real) {
    if (!isGood(real)) return kHostBadParameter;
    features.values.template Set<Which>(real);
    return kHostNoError;
}

template <typename Features, typename Which>
HostError GetInteger(SuiteCall&, Features& features, int32_t& number) {
    return GetValue<Features, Which>(features, number);
}

template <typename Features, typename Which, int32_t least, int32_t greatest>
HostError SetInteger(SuiteCall&, Features& features, int32_t number) {
    if (number < least || number > greatest) return kHostBadParameter;
    features.values.template Set<Which>(number);
    return kHostNoError;
}

} // namespace workbench
