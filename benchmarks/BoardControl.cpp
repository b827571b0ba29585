#include "BoardControl.h"

#include "BenchApplet.h"

namespace bench {

const BoardControl& boardControl() {
    static const BenchApplet library(QUILLON_STAGE "/lib/libtavo_hw.so");
    static const BoardControl control{
        library.function<decltype(&::tavo_sim_open)>("tavo_sim_open"),
        library.function<decltype(&::tavo_sim_mode)>("tavo_sim_mode"),
        library.function<decltype(&::tavo_sim_camera_scene)>("tavo_sim_camera_scene"),
        library.function<decltype(&::tavo_sim_set_geometry)>("tavo_sim_set_geometry"),
        library.function<decltype(&::tavo_sim_camera_rate)>("tavo_sim_camera_rate"),
        library.function<decltype(&::tavo_sim_get_statistics)>("tavo_sim_get_statistics"),
    };
    return control;
}

}  // namespace bench
