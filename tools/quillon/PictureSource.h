#pragma once

#include <string>

#include "host/Grabber.h"

namespace CLI {
class App;
}

namespace quillon::tool {

/// Where pictures come from: the options --camera, --geometry and --generator of a command. It must stay where it is
/// until the command line has been read.
class PictureSource {
public:
    explicit PictureSource(CLI::App& options);
    PictureSource(const PictureSource&) = delete;
    PictureSource& operator=(const PictureSource&) = delete;

    /// Tells the software board what its camera shows; takes effect when the board opens.
    /// \throws ToolError for a camera folder that does not exist
    void prepareCamera() const;
    /// Switches the board to the generator where that is asked for.
    /// \throws ToolError when the applet refuses, or has no generator
    void select(host::Grabber& grabber) const;

private:
    std::string mCamera;
    std::string mGeometry;
    bool mUsesGenerator = false;
};

}  // namespace quillon::tool
