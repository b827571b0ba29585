#pragma once

#include "fabrix/types.h"

/// What a host holds of a grabber: it can be destroyed and asked for its design.
class Fg_Master {
public:
    Fg_Master() = default;
    Fg_Master(const Fg_Master&) = delete;
    Fg_Master& operator=(const Fg_Master&) = delete;
    virtual ~Fg_Master() = default;

    /// \return the loaded design, which stays the grabber's; may be null
    [[nodiscard]] virtual fpga_design* getDesign() const = 0;
};
