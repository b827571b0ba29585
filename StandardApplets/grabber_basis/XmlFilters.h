#pragma once

#include <string>

/// \return \p text reduced to letters, digits and underscores, the latter two not at its first position
[[nodiscard]] std::string xmlNameFilter(const std::string& text);

/// \return \p text with the five characters that XML reserves replaced by their entities; other bytes stay
[[nodiscard]] std::string xmlStringFilter(const std::string& text);
