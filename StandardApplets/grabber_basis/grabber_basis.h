/// \file
/// Creation of a grabber, shared by all applets of the family, and the two hooks that each applet supplies.
#pragma once

#include "fabrix/types.h"

class Fg_FabrixBoard;
class Fg_Master;
class Fg_StdMaster;

/// Creates a grabber: board, master, FPGA configuration, composition.
/// \param appletname not used
/// \param hwhandle borrowed \param design taken over, also when the creation fails; may be null
/// \param err receives 0 or the code of the refusal \param logfile handed to the log \param dual not used
/// \return the grabber, or null with \p err set to FG_OUT_OF_RESOURCES, FG_ERROR or the code of the failing step
Fg_Master* grabberAlloc(const char* appletname, FgDevice* hwhandle, fpga_design* design, int* err, const char* logfile,
                        bool dual, bool isSlave);

/// Supplied by the applet: stores its identity on the board.
/// \return 0, or a negative code that refuses the grabber
int initBoardSettings(Fg_FabrixBoard* board);

/// Supplied by the applet: describes the camera, adds the feature modules and brings parameters and registers to
/// their initial state.
/// \return 0, or a negative code that refuses the grabber
int initMaster(Fg_StdMaster* fgMaster);
