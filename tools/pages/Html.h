#pragma once

#include <string>
#include <string_view>

namespace quillon::pages {

/// \return \p text with the characters escaped that have a meaning in HTML
[[nodiscard]] std::string escaped(std::string_view text);

/// \param path the page's own path below the documentation root, which decides how far up the root is
/// \param body HTML
/// \return a complete page in the frame that all pages share
[[nodiscard]] std::string page(std::string_view path, std::string_view title, std::string_view body);

}  // namespace quillon::pages
