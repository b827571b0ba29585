#include "PictureSource.h"

#include <fmt/format.h>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "Session.h"
#include "ToolError.h"

namespace quillon::tool {

PictureSource::PictureSource(CLI::App& options) {
    auto* camera =
        options.add_option("--camera", mCamera, "pictures that the software board's camera delivers, in name order")
            ->type_name("FOLDER");
    auto* geometry =
        options
            .add_option("--geometry", mGeometry,
                        "readout geometry of the software board's camera, for example SMODE_TAB8_0; the picture is "
                        "right when FG_SENSORREADOUT names the same")
            ->type_name("NAME");
    options
        .add_flag("--generator", mUsesGenerator,
                  "take pictures from the board's generator; the FG_GEN_ parameters shape them")
        ->excludes(camera, geometry);
}

void PictureSource::prepareCamera() const {
    if (!mGeometry.empty()) setenv("TAVO_SIM_GEOMETRY", mGeometry.c_str(), 1);
    if (mCamera.empty()) return;
    std::error_code ignored;
    if (!std::filesystem::is_directory(mCamera, ignored)) {
        throw ToolError(kExitEnvironment, fmt::format("the camera folder {} does not exist or is no folder", mCamera));
    }
    setenv("TAVO_SIM_CAMERA", mCamera.c_str(), 1);
    unsetenv("TAVO_SIM_SCENE");  // the camera looks at one of them
}

void PictureSource::select(host::Grabber& grabber) const {
    if (mUsesGenerator) applySetting(grabber, "FG_GEN_ENABLE=FG_GENERATOR");
}

}  // namespace quillon::tool
