#pragma once

#include <string>

#include "StandardApplets/grabber_basis/PSFx4/PSCamPort.h"
#include "tests/core/Described.h"
#include "tests/core/GrabberTest.h"

/// Arguments of a camera port, and the cameras that the tests connect.
struct CamPortArguments {
    bool isArea, isMedium, isColor, isBayer, isFull;
};
inline constexpr CamPortArguments kFull{true, true, false, false, true};
inline constexpr CamPortArguments kMedium{true, true, false, false, false};
inline constexpr CamPortArguments kMediumColor{true, true, true, false, false};
inline constexpr CamPortArguments kMediumBayer{true, true, true, true, false};
inline constexpr CamPortArguments kBaseGray{true, false, false, false, false};
inline constexpr CamPortArguments kBaseColor{true, false, true, false, false};
inline constexpr CamPortArguments kBaseBayer{true, false, true, true, false};

/// Input formats of a gray camera in the base configuration.
inline constexpr const char* kBaseEntries =
    "8 Bit Single Tap=8 FG_CL_SINGLETAP_8_BIT, 10 Bit Single Tap=10 FG_CL_SINGLETAP_10_BIT, "
    "12 Bit Single Tap=12 FG_CL_SINGLETAP_12_BIT, 14 Bit Single Tap=14 FG_CL_SINGLETAP_14_BIT, "
    "16 Bit Single Tap=16 FG_CL_SINGLETAP_16_BIT, 8 Bit Dual Tap=108 FG_CL_DUALTAP_8_BIT, "
    "10 Bit Dual Tap=110 FG_CL_DUALTAP_10_BIT, 12 Bit Dual Tap=112 FG_CL_DUALTAP_12_BIT, default 8";

/// One camera port on a master without other feature modules.
class CamPortTest : public ModuleTest {
protected:
    PSCamPort& addCamera(const CamPortArguments& camera) {
        PSCamPort& module =
            add<PSCamPort>(camera.isArea, camera.isMedium, camera.isColor, camera.isBayer, camera.isFull);
        board.clearEvents();
        return module;
    }
    void giveLiteRegisters() {
        board.registers.push_back({"AACamPortLite", 1, 1});
        board.registers.push_back({"ABCamPortLite", 1, 1});
    }
    /// \return the writes since the last call, in one line
    std::string writes() {
        std::string line;
        for (const std::string& write : board.writes()) line += (line.empty() ? "" : ", ") + write;
        board.clearEvents();
        return line;
    }
    std::string tree(int port) { return treeOf(master().getHeader()->getRegisterInfo(port)); }
};

/// A fixture per row of a table: each camera needs a grabber of its own.
template <class Row>
class CamPortTable : public CamPortTest, public testing::WithParamInterface<Row> {};
