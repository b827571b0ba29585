#include "Units.h"

#include <strings.h>

#include <algorithm>
#include <array>
#include <charconv>

namespace quillon::tool {

namespace {

enum class Measure { Time, Frequency, Pixels, Lines, Bits, Pulses };

/// All units that a value may carry, in the order in which messages list them. Scales are whole numbers of the
/// smallest unit, so that converting a decimal number stays as exact as a double is.
struct UnitRow {
    std::string_view name;
    Measure measure;
    double scale;
    bool isSpelling = false;  ///< another way to write the unit above
};
// clang-format off
constexpr std::array kUnits{
    UnitRow{"s", Measure::Time, 1e9},
    UnitRow{"ms", Measure::Time, 1e6},
    UnitRow{"us", Measure::Time, 1e3},
    UnitRow{"\u00B5s", Measure::Time, 1e3, true},
    UnitRow{"\u03BCs", Measure::Time, 1e3, true},
    UnitRow{"ns", Measure::Time, 1},
    UnitRow{"min", Measure::Time, 60e9},
    UnitRow{"Hz", Measure::Frequency, 1},
    UnitRow{"fps", Measure::Frequency, 1, true},
    UnitRow{"kHz", Measure::Frequency, 1e3},
    UnitRow{"MHz", Measure::Frequency, 1e6},
    UnitRow{"GHz", Measure::Frequency, 1e9},
    UnitRow{"pixels", Measure::Pixels, 1},
    UnitRow{"pixel", Measure::Pixels, 1, true},
    UnitRow{"px", Measure::Pixels, 1, true},
    UnitRow{"lines", Measure::Lines, 1},
    UnitRow{"line", Measure::Lines, 1, true},
    UnitRow{"bits", Measure::Bits, 1},
    UnitRow{"bit", Measure::Bits, 1, true},
    UnitRow{"pulses", Measure::Pulses, 1},
    UnitRow{"pulse", Measure::Pulses, 1, true},
};
// clang-format on

std::string_view trimmed(std::string_view text) {
    const size_t first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

const UnitRow* findUnit(std::string_view name) {
    const auto* found = std::find_if(kUnits.begin(), kUnits.end(), [&](const UnitRow& row) {
        return row.name.size() == name.size() && strncasecmp(row.name.data(), name.data(), name.size()) == 0;
    });
    return found == kUnits.end() ? nullptr : found;
}

}  // namespace

std::optional<Quantity> parseQuantity(std::string_view text) {
    text = trimmed(text);
    Quantity quantity;
    const auto [end, problem] = std::from_chars(text.data(), text.data() + text.size(), quantity.number);
    if (problem != std::errc()) return std::nullopt;
    const auto length = static_cast<size_t>(end - text.data());
    quantity.numberText = text.substr(0, length);
    quantity.unit = trimmed(text.substr(length));
    const bool isUnit = quantity.unit.find_first_of("0123456789.-+") == std::string_view::npos;
    return isUnit ? std::optional(quantity) : std::nullopt;
}

std::string_view unitOf(std::string_view label) {
    if (label.starts_with('[')) label.remove_prefix(1);
    if (label.ends_with(']')) label.remove_suffix(1);
    return label.find(',') == std::string_view::npos ? label : std::string_view();
}

std::optional<Conversion> conversion(std::string_view from, std::string_view to) {
    const UnitRow* source = findUnit(from);
    const UnitRow* target = findUnit(to);
    if (source == nullptr || target == nullptr || source->measure != target->measure) return std::nullopt;
    return Conversion{source->scale, target->scale};
}

std::string fittingUnits(std::string_view unit) {
    const UnitRow* own = findUnit(unit);
    if (own == nullptr) return std::string(unit);
    std::string names;
    for (const UnitRow& row : kUnits) {
        if (row.measure != own->measure || row.isSpelling) continue;
        if (!names.empty()) names += ", ";
        names += row.name;
    }
    return names;
}

}  // namespace quillon::tool
