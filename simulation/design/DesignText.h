#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "simulation/design/Design.h"

namespace simulation {

/// Reads the text form of a design. One statement a line; `#` starts a comment; words are split by blanks:
///
///     board-type 2626
///     info DESIGN_NAME "Quillon"
///     register AAAreaWidth 12 write 0
///
/// A register has its name, its width in bits, `write` or `read`, and its initial value (decimal, or hexadecimal
/// after 0x). On a refusal nothing is returned and \p why is `line N: ...`.
[[nodiscard]] std::optional<Design> parseDesignText(std::string_view text, std::string& why);

}  // namespace simulation
