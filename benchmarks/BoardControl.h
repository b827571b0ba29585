#pragma once

#include "fabrix/tavo_hw.h"
#include "simulation/tavo_hw/tavo_sim.h"

namespace bench {

/// The control interface of the software board that the applet of the installation tree has loaded.
struct BoardControl {
    decltype(&::tavo_sim_open) open = nullptr;
    decltype(&::tavo_sim_mode) mode = nullptr;
    decltype(&::tavo_sim_camera_scene) scene = nullptr;
    decltype(&::tavo_sim_set_geometry) geometry = nullptr;
    decltype(&::tavo_sim_camera_rate) rate = nullptr;
    decltype(&::tavo_sim_get_statistics) statistics = nullptr;
};

/// \throws std::runtime_error when the library does not open or has no such function
[[nodiscard]] const BoardControl& boardControl();

}  // namespace bench
