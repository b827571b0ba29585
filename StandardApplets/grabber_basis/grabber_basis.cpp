#include "StandardApplets/grabber_basis/grabber_basis.h"

#include <memory>
#include <new>

#include "StandardApplets/grabber_basis/FabrixBoard.h"
#include "StandardApplets/grabber_basis/Fg_StdMaster.h"
#include "StandardApplets/grabber_basis/RSFx4/RSControl.h"
#include "fabrix/result_codes.h"

namespace {

/// Takes the design over at once, so that it is unloaded exactly once whatever fails.
Fg_Master* createGrabber(FgDevice* hwhandle, UniqueDesign design, int* err, const char* logfile, bool isSlave) {
    auto board = std::make_unique<Fg_FabrixBoard>(design.get(), hwhandle, logfile);
    static_cast<void>(design.release());  // the board's now
    *err = initBoardSettings(board.get());
    if (*err < 0) return nullptr;
    auto master = std::make_unique<Fg_StdMaster>(std::move(board));
    *err = master->Fg_configure(isSlave);
    if (*err < 0) return nullptr;
    master->getController()->initRegisters();
    *err = initMaster(master.get());
    if (*err < 0) return nullptr;
    return master.release();
}

}  // namespace

Fg_Master* grabberAlloc(const char* /*appletname*/, FgDevice* hwhandle, fpga_design* design, int* err,
                        const char* logfile, bool /*dual*/, bool isSlave) {
    *err = FG_OK;
    UniqueDesign owned(design);
    try {
        return createGrabber(hwhandle, std::move(owned), err, logfile, isSlave);
    } catch (const std::bad_alloc&) {
        *err = FG_OUT_OF_RESOURCES;
    } catch (...) {
        *err = FG_ERROR;
    }
    return nullptr;
}
