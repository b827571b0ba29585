#include "NamePattern.h"

#include <fnmatch.h>

namespace quillon::tool {

NamePattern::NamePattern(const std::string& text) : mIsSelective(text.find_first_not_of("*?") != std::string::npos) {
    const bool hasWildcards = text.find_first_of("*?") != std::string::npos;
    mGlob = hasWildcards ? text : "*" + text + "*";
}

bool NamePattern::matches(const std::string& name, const std::string& prefix) const {
    const auto fits = [&](const std::string& glob) { return fnmatch(glob.c_str(), name.c_str(), FNM_CASEFOLD) == 0; };
    return fits(mGlob) || (!prefix.empty() && fits(prefix + mGlob));
}

}  // namespace quillon::tool
