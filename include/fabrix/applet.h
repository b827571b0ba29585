/// \file
/// The functions that the applet library exports, beside the operations of tavo_hw.h and haprt.h.
///
/// Unless stated otherwise a result is 0 (or a non-negative number) or a negative code of result_codes.h, and it
/// becomes the grabber's last error. The host serialises the calls on one grabber; only
/// Fg_getLastPicNumberBlockingEx may run while another thread calls Fg_stopAcquireEx. `Fg` and its `Master` must be
/// valid. Ports are 0 and 1.
#pragma once

#include <stddef.h>

#include "fabrix/cc_signals.h"
#include "fabrix/lookup_tables.h"
#include "fabrix/parameter_ids.h"
#include "fabrix/parameter_info.h"
#include "fabrix/result_codes.h"
#include "fabrix/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/// Creates the grabber of a board: loads the design, configures the FPGA and brings every parameter to its default.
/// \param hwhandle board device handle, borrowed for the life of the grabber
/// \param err receives 0 or the code of the refusal; may be null
/// \param isSlave must be 0; else the code is FG_INVALID_ARGUMENT
/// \return the grabber, which the host stores in Fg_Struct_s::Master and gives back with Fg_FreeGrabber; or null
FABRIX_EXPORT Fg_Master* Std_entry(FgDevice* hwhandle, int* err, int isSlave);

/// Answers one question about the applet; needs no grabber.
/// \param cmd the question
/// \param arg1 port type of GET_NR_OF_PORTS (0 or 1); not used else
/// \param arg2 not used
/// \param vptr receives an `int`, for the two handle questions a pointer-sized value; may be null
/// \param vptrptr receives a pointer to static data of the applet; may be null
/// \return the answer, or 0 where it goes to a target; FG_NOT_SUPPORTED for any other question
FABRIX_EXPORT int Info(const enum AppletInfos cmd, const int arg1, const int arg2, void* vptr, const void** vptrptr);

/// \return the applet identifier 172032096; records no error
FABRIX_EXPORT int Fg_getAppletId(Fg_Struct* Fg, const char* Appletname);

/// Writes a parameter. The first test that fails gives the result and changes nothing: unknown identifier
/// FG_INVALID_ARGUMENT, port FG_INVALID_PORT, access FG_NOT_WRITABLE, running acquisition FG_ACQUISITION_RUNNING,
/// null value FG_INVALID_ARGUMENT, tag FG_INVALID_ARGUMENT, limits FG_VALUE_OUT_OF_RANGE, step FG_NOT_A_STEP.
/// \param Value a 32-bit integer, a double or a text, as the parameter's type says
/// \param type an integer tag for integers and enumerations, FG_PARAM_TYPE_DOUBLE for doubles, or
///        FG_PARAM_TYPE_AUTO for any
FABRIX_EXPORT int Fg_setParameterWithType(Fg_Struct* Fg, int Param, void* Value, int CamPort,
                                          const enum FgParamTypes type);

/// Reads a parameter, or with a selector of parameter_ids.h its limits or access bits.
/// \param Value receives what the parameter's type says: a 32-bit integer, a double, or a text of at most 1024 bytes
///        with its terminator. The string queries FG_DOC_URL, FG_PARAM_DESCR and FG_REG_VALUE_STRING first read a
///        name of at most 511 characters from it.
/// \param type not consulted
/// \return FG_INVALID_ARGUMENT for an unknown identifier, FG_INVALID_PORT, or FG_NOT_SUPPORTED for limits of a
///         parameter that has none
FABRIX_EXPORT int Fg_getParameterWithType(Fg_Struct* Fg, int Param, void* Value, int CamPort,
                                          const enum FgParamTypes type);

/// Describes the parameters of a port as a GenICam GenApi document. Records no error.
/// \param infoBuffer null asks for the size
/// \param infoBufferSize bytes of the buffer; becomes the length of the document plus 1
/// \return FG_OUT_OF_RESOURCES when the buffer is too small, which leaves buffer and size as they were;
///         FG_INVALID_PORT; FG_INVALID_ARGUMENT without a size
FABRIX_EXPORT int Fg_getParameterInfoXML(Fg_Struct* Fg, int port, char* infoBuffer, size_t* infoBufferSize);

/// \return the number of parameters; records no error, as the three functions below
FABRIX_EXPORT int Fg_getNrOfParameter(Fg_Struct* Fg);
/// \return the identifier of the parameter at a position in ascending order of identifiers, or 0
FABRIX_EXPORT int Fg_getParameterId(Fg_Struct* Fg, int index);
/// \return the FG_ name of the parameter at a position, owned by the grabber, or null
FABRIX_EXPORT const char* Fg_getParameterName(Fg_Struct* Fg, int index);
/// \return the identifier of the parameter with this FG_ name, or 0
FABRIX_EXPORT int Fg_getParameterIdByName(Fg_Struct* Fg, const char* name);

/// Status of a port; records only a refused port.
/// \param Param 100: 1 while no acquisition is started, 0 while one is; any other is FG_INVALID_ARGUMENT
FABRIX_EXPORT frameindex_t Fg_getStatusEx(Fg_Struct* Fg, int Param, frameindex_t nData, int CamPort, dma_mem* pMem);

/// Saves the parameters to a file whose name contains ".mcf".
FABRIX_EXPORT int Fg_saveConfig(Fg_Struct* Fg, const char* Filename);
/// Loads the parameters from a file whose name contains ".mcf".
FABRIX_EXPORT int Fg_loadConfig(Fg_Struct* Fg, const char* Filename);

/// Starts an acquisition into the host's buffers.
/// \param PicCount number of pictures
/// \param nFlag 1 continuous, 2 with each buffer handed back; else FG_INVALID_ARGUMENT
/// \return FG_NOT_CONFIGURED, FG_ALREADY_STARTED, or the code with which the DMA refused to start
FABRIX_EXPORT int Fg_AcquireEx(Fg_Struct* Fg, int CamPort, frameindex_t PicCount, int nFlag, dma_mem* memHandle);
/// Stops the acquisition. `CamPort` and `nFlag` play no part on this one-camera design.
/// \return FG_INVALID_ARGUMENT for null buffers, FG_NOT_CONFIGURED, FG_NOT_STARTED or FG_DMA_STOP_FAILED
FABRIX_EXPORT int Fg_stopAcquireEx(Fg_Struct* Fg, int CamPort, dma_mem* memHandle, int nFlag);
/// \return the number of the last complete picture; FG_INVALID_ARGUMENT for null buffers, FG_BUFFER_STATUS_FAILED
FABRIX_EXPORT frameindex_t Fg_getLastPicNumberEx(Fg_Struct* Fg, int CamPort, dma_mem* pMem);
/// Waits until picture `PicNr` has arrived.
/// \param Timeout seconds, 0 or more; no lock is held, so another thread may stop the acquisition
/// \return the last picture number; FG_INVALID_ARGUMENT for null buffers or a negative time-out; or the
///         hardware-access library's code for a time-out or a stopped transfer
FABRIX_EXPORT frameindex_t Fg_getLastPicNumberBlockingEx(Fg_Struct* Fg, frameindex_t PicNr, int CamPort, int Timeout,
                                                         dma_mem* pMem);

/// Destroys the grabber; the handle itself stays the host's. Null, or a null `Master`, is accepted.
/// \return 0
FABRIX_EXPORT int Fg_FreeGrabber(Fg_Struct* Fg);

/// \return the result that was recorded last
FABRIX_EXPORT int Fg_getLastErrorNumber(Fg_Struct* Fg);

/// Refreshes the limits and flags of a port and returns its parameter information tree. Records no error.
/// \return the first top-level group, owned by the grabber, the same at each call; null for a port that does not exist
FABRIX_EXPORT RegisterInfo* Fg_getParameterInfo(Fg_Struct* Fg, int CamPort);

/// \return a new shading object, owned by the caller until Fg_FreeShading; null when the applet has no shading module
FABRIX_EXPORT ShadingMaster* Fg_AllocShading(Fg_Struct* Fg, int set, int port);
/// \return 0
FABRIX_EXPORT int Fg_FreeShading(Fg_Struct* Fg, ShadingMaster* sm);
FABRIX_EXPORT int Shad_SetSubValueLine(Fg_Struct* Fg, ShadingMaster* sm, int x, int id, float sub);
FABRIX_EXPORT int Shad_SetMultValueLine(Fg_Struct* Fg, ShadingMaster* sm, int x, int id, float mult);
FABRIX_EXPORT int Shad_SetFixedPatternNoiseLine(Fg_Struct* Fg, ShadingMaster* sm, int x, int id, int on);
FABRIX_EXPORT int Shad_GetMaxLine(Fg_Struct* Fg, ShadingMaster* sm);
FABRIX_EXPORT int Shad_GetAccess(Fg_Struct* Fg, ShadingMaster* sm);
FABRIX_EXPORT int Shad_FreeAccess(Fg_Struct* Fg, ShadingMaster* sm);
FABRIX_EXPORT int Shad_WriteActLine(Fg_Struct* Fg, ShadingMaster* sm, int Line);

/// Loads the hardware-access library from the installation directory.
/// \return 0, or FG_HW_LIBRARY_MISSING when there is no directory or the library cannot be opened
FABRIX_EXPORT int SHW_OpenLib(void);
/// Loads the applet runtime library from the installation directory.
/// \return 0, or FG_ERROR when there is no directory or the library cannot be opened
FABRIX_EXPORT int HAPRT_OpenLib(void);

/// Makes sure that the hardware-access library is loaded.
/// \return 0
FABRIX_EXPORT int TavoFreeHW(FgDevice* device);
/// \return 0: the host enumerates the boards itself
FABRIX_EXPORT int TavoGetNrOfDevices(void);
/// \return 0
FABRIX_EXPORT int TavoGetDevicesSpecificIndex(const unsigned int globalIndex);
/// \return null: the host opens the boards itself
FABRIX_EXPORT FgDevice* TavoInitHWEx(const unsigned int mBoardNr, const char* dllName);
/// \return null
FABRIX_EXPORT FgDevice* TavoInitAllHWEx(const unsigned int mBoardNr);
/// \return FG_NO_DEVICE
FABRIX_EXPORT int TavoDataQueuePoll(FgDevice* board, uint64_t* queues, unsigned int timeout);

#ifdef __cplusplus
}
#endif
