#pragma once

#include <string>

namespace CLI {
class App;
}

namespace quillon::tool {

/// \return the manual page of the program, for man(1): made of what --help prints, and so always the same
std::string manualPage(const CLI::App& program);

}  // namespace quillon::tool
