#pragma once

#include <string>

namespace quillon::tool {

/// Chooses names as a person types them: a part of the name, or with * and ? the whole of it, in any letter case. An
/// empty pattern chooses every name.
class NamePattern {
public:
    explicit NamePattern(const std::string& text);

    /// \param prefix beginning of the name that may be left out, for example "FG_"
    [[nodiscard]] bool matches(const std::string& name, const std::string& prefix = "") const;
    /// \return whether it can tell one name from another
    [[nodiscard]] bool isSelective() const { return mIsSelective; }

private:
    std::string mGlob;
    bool mIsSelective;
};

}  // namespace quillon::tool
