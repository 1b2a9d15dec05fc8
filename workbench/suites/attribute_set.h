/// Attributes of characters or paragraphs, each with a value or without.
#pragma once

#include <cstdint>
#include <memory>
#include <tuple>
#include <utility>
#include <vector>

#include "workbench/document/text_data.h"

namespace workbench {

/// One attribute; `index`: of an array's, else -1.
template <auto member, int index = -1>
struct Field {
    static auto& Of(auto& attributes) {
        if constexpr (index < 0)
            return attributes.*member;
        else
            return (attributes.*member)[index];
    }
};

template <typename Attributes>
struct FieldsOf;

template <>
struct FieldsOf<CharacterAttributes> {
    using C = CharacterAttributes;
    using All =
        std::tuple<Field<&C::fill>, Field<&C::stroke>, Field<&C::fillColor>, Field<&C::strokeColor>,
                   Field<&C::fillOverprint>, Field<&C::strokeOverprint>, Field<&C::lineCap>,
                   Field<&C::lineJoin>, Field<&C::lineWidth>, Field<&C::miterLimit>, Field<&C::dashOffset>,
                   Field<&C::dashes>, Field<&C::font>, Field<&C::fontSize>, Field<&C::leading>,
                   Field<&C::autoLeading>, Field<&C::baselineShift>, Field<&C::tracking>,
                   Field<&C::horizontalScale>, Field<&C::verticalScale>, Field<&C::japaneseAlternate>>;
};

template <>
struct FieldsOf<ParagraphAttributes> {
    using P = ParagraphAttributes;
    using All = std::tuple<Field<&P::firstLineIndent>, Field<&P::startIndent>, Field<&P::endIndent>,
                           Field<&P::justification>, Field<&P::autoHyphenation>, Field<&P::hyphenBefore>,
                           Field<&P::hyphenAfter>, Field<&P::hyphenLimit>, Field<&P::wordSpacing, 0>,
                           Field<&P::wordSpacing, 1>, Field<&P::wordSpacing, 2>, Field<&P::letterSpacing, 0>,
                           Field<&P::letterSpacing, 1>, Field<&P::letterSpacing, 2>, Field<&P::hangingRoman>,
                           Field<&P::autoLeading>, Field<&P::repeatedCharacters>, Field<&P::bunriKinshi>,
                           Field<&P::burasagari>, Field<&P::kinsoku>>;
};

inline bool SameValue(const auto& a, const auto& b) {
    return a == b;
}

/// Patterns and gradients never count as alike.
bool SameValue(const HostColor& a, const HostColor& b);

template <typename Attributes>
class AttributeSet {
    using All = typename FieldsOf<Attributes>::All;
    static constexpr size_t kCount = std::tuple_size_v<All>;

public:
    using Shared = std::shared_ptr<const Attributes>;

    /// None has a value.
    AttributeSet() : values_(std::make_shared<const Attributes>()) {}

    /// All have one.
    explicit AttributeSet(Shared values) : values_(std::move(values)), assigned_((1u << kCount) - 1) {}

    bool empty() const { return assigned_ == 0; }

    /// Null for one without a value.
    template <typename Which>
    auto* Get() const {
        auto& value = Which::Of(*values_);
        return (assigned_ & Bit<Which>()) ? &value : nullptr;
    }

    template <typename Which>
    void Set(auto value) {
        auto changed = std::make_shared<Attributes>(*values_);
        Which::Of(*changed) = std::move(value);
        values_ = std::move(changed);
        assigned_ |= Bit<Which>();
    }

    /// Takes the value from those that `other` has differently.
    void KeepCommon(const Shared& other) {
        if (other == values_) return;
        ForEach([&]<typename Which>(uint32_t bit) {
            if (!SameValue(Which::Of(*values_), Which::Of(*other))) assigned_ &= ~bit;
        });
    }

    /// `base` with the values of this set in place of its own.
    Shared Over(const Shared& base) const {
        if (empty()) return base;
        auto result = std::make_shared<Attributes>(*base);
        ForEach([&]<typename Which>(uint32_t bit) {
            if (assigned_ & bit) Which::Of(*result) = Which::Of(*values_);
        });
        return result;
    }

    /// The values of `over` too, in place of this set's own.
    void Add(const AttributeSet& over) {
        values_ = over.Over(values_);
        assigned_ |= over.assigned_;
    }

private:
    static_assert(kCount < 32);

    template <typename Which, size_t... at>
    static constexpr uint32_t BitOf(std::index_sequence<at...>) {
        return ((std::is_same_v<Which, std::tuple_element_t<at, All>> ? 1u << at : 0u) | ...);
    }
    template <typename Which>
    static constexpr uint32_t Bit() {
        constexpr uint32_t bit = BitOf<Which>(std::make_index_sequence<kCount>());
        static_assert(bit != 0);
        return bit;
    }
    static void ForEach(auto&& visit) {
        [&]<size_t... at>(std::index_sequence<at...>) {
            (visit.template operator()<std::tuple_element_t<at, All>>(1u << at), ...);
        }
        (std::make_index_sequence<kCount>());
    }

    Shared values_;
    uint32_t assigned_ = 0;
};

} // namespace workbench
