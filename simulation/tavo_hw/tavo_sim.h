/// \file
/// Control interface of the software board: what a person would do at the bench. `libtavo_hw.so` exports it beside
/// the operations of the hardware-access library; a program reaches it in the loaded library.
///
/// A board is named by its device handle. Every handle that tavo_sim_open has not given out, or that has been closed,
/// is board 0; a null handle answers TAVO_SIM_NO_DEVICE. Any thread may call any function.
///
/// Functions that return `int` answer TAVO_SIM_OK or one of the codes below. A refusal changes nothing, and
/// tavo_sim_last_error tells its reason. What the frames depend on (camera, geometry, mode) answers TAVO_SIM_BUSY
/// while a transfer runs.
#pragma once

#include <stddef.h>
#include <stdint.h>

#include "fabrix/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/// Codes of the board, of the hardware operations as well. A published value never changes.
enum tavo_sim_code FABRIX_ENUM_OF_INT {
    TAVO_SIM_OK = 0,
    TAVO_SIM_NO_DEVICE = -6,          ///< the device handle is null
    TAVO_SIM_BAD_ARGUMENT = -9001,    ///< an argument is null, out of its range, or not of this board
    TAVO_SIM_NO_REGISTER = -9002,     ///< the design has no register of this handle
    TAVO_SIM_READ_ONLY = -9003,       ///< the register cannot be written
    TAVO_SIM_NOT_CONFIGURED = -9004,  ///< the board has not been configured yet
    TAVO_SIM_BAD_DESIGN = -9005,      ///< the design handle is null, damaged or unloaded
    TAVO_SIM_BAD_SETTING = -9006,     ///< a setting was refused; the last error text says why
    TAVO_SIM_TIME_OUT = -9007,        ///< nothing arrived within the time-out
    TAVO_SIM_STOPPED = -9008,         ///< no transfer runs that could still bring this picture
    TAVO_SIM_BUSY = -9009,            ///< not while a transfer runs
    TAVO_SIM_NOT_SUPPORTED = -9010,   ///< this board has no such unit
    TAVO_SIM_NO_PICTURE = -9011,      ///< there is no picture in this buffer
    TAVO_SIM_OUT_OF_MEMORY = -9012,   ///< memory could not be had
    TAVO_SIM_INTERNAL = -9013         ///< an operation failed in an unforeseen way
};

/// When frames come.
enum tavo_sim_clock FABRIX_ENUM_OF_INT {
    TAVO_SIM_REALTIME = 0,  ///< on the camera's own schedule
    TAVO_SIM_FAST = 1       ///< as fast as the machine can, with time stamps of the schedule
};

/// What starts the camera's exposures.
enum tavo_sim_camera_trigger_source FABRIX_ENUM_OF_INT {
    TAVO_SIM_TRIGGER_AUTO = 0,  ///< CC1 while ExSync is switched on, else nothing: it runs free
    TAVO_SIM_TRIGGER_FREE = 1,  ///< nothing, it always runs free
    TAVO_SIM_TRIGGER_CC1 = 2,   ///< this camera control line
    TAVO_SIM_TRIGGER_CC2 = 3,
    TAVO_SIM_TRIGGER_CC3 = 4,
    TAVO_SIM_TRIGGER_CC4 = 5
};

/// What drives a camera control line.
enum tavo_sim_cc_source FABRIX_ENUM_OF_INT {
    TAVO_SIM_CC_EXSYNC = 0,
    TAVO_SIM_CC_EXSYNC2 = 1,
    TAVO_SIM_CC_FLASH = 2,
    TAVO_SIM_CC_CLOCK = 3,
    TAVO_SIM_CC_CONSTANT = 4  ///< low, or high where it is inverted; sources 5 to 7 rest like this one
};

/// The state of a camera control line.
struct tavo_sim_cc_state {
    int source;    ///< 0 to 7, see tavo_sim_cc_source
    int inverted;  ///< 1 = the line carries the source inverted
    int level;     ///< 0 or 1 of a constant line, -1 of one that carries a signal
};

/// Counts of the current or last transfer.
struct tavo_sim_statistics {
    uint64_t delivered;  ///< pictures in the host's buffers
    uint64_t lost;       ///< frames without a free buffer, or taken by a disturbance
    uint64_t skipped;    ///< frames for which the machine was too slow
    uint64_t missed;     ///< triggers for which the camera was too slow
};

/// Of the lost frames of the current or last transfer, those that disturbances took.
struct tavo_sim_losses {
    uint64_t dropped;  ///< by tavo_sim_drop_frames
    uint64_t held;     ///< while the DMA was held, by tavo_sim_hold_dma or tavo_sim_dma_gap
};

/// What an output of the trigger block has done since the board was configured. Times are nanoseconds of the board.
struct tavo_sim_signal {
    int level;  ///< 0 or 1
    uint64_t rising;
    uint64_t falling;        ///< numbers of edges
    uint64_t lastRisingNs;   ///< 0 where there was none
    uint64_t lastFallingNs;  ///< 0 where there was none
};

/// The state of the trigger block.
struct tavo_sim_trigger_state {
    uint64_t nowNs;          ///< the board's time, nanoseconds since it was configured
    uint64_t lastTriggerNs;  ///< when the trigger of the last ExSync pulse came, 0 where there was none
    uint64_t pulses;         ///< ExSync pulses that have begun since the board was configured
    uint64_t ignored;        ///< triggers that came while the block was busy or its pulse limit was reached
    uint64_t queued;         ///< software triggers in the queue
    int busy;                ///< 1 = a triggered pulse runs, or its delay, or the pause after it
    struct tavo_sim_signal exSync;
    struct tavo_sim_signal flash;
};

/// What TavoGetBufferStatus fills in.
struct fx_buf_status {
    uint32_t size;         ///< bytes of this structure
    frameindex_t picture;  ///< number of the picture in its transfer
    uint64_t frame;        ///< number of the camera frame, from 1, whatever the first tag is
    uint64_t length;       ///< bytes written
    uint64_t timeStampNs;  ///< nanoseconds since the board was configured, whatever the first time stamp is
};

/// The device handle of board \p number, 0 or more; the same for every call until it is closed. Null for a negative
/// number or where memory is short.
FABRIX_EXPORT FgDevice* tavo_sim_open(int number);

/// Closes a board: its transfer ends, its buffers are forgotten, and its next use finds it as at first.
FABRIX_EXPORT int tavo_sim_close(FgDevice* device);

/// The camera looks at the PNG and PGM pictures of \p folder in the order of their names. The first one sets the size
/// of the sensor.
FABRIX_EXPORT int tavo_sim_camera_folder(FgDevice* device, const char* folder);

/// The camera looks at the built-in moving scene; each side is 16 to 65536 pixels.
FABRIX_EXPORT int tavo_sim_camera_scene(FgDevice* device, int width, int height);

/// The camera reads its sensor out by the geometry of this number and sends the pixels in the order of its taps: 0 (as
/// at first, in their natural order), 3, or 30 to 51. All but 0 take a sensor whose width is a multiple of 16.
FABRIX_EXPORT int tavo_sim_set_geometry(FgDevice* device, int geometry);

/// The camera runs free at \p framesPerSecond, 0.01 to 100000; at first it is 100.
FABRIX_EXPORT int tavo_sim_camera_rate(FgDevice* device, double framesPerSecond);

/// \param trigger a value of tavo_sim_camera_trigger_source; at first it is TAVO_SIM_TRIGGER_AUTO.
FABRIX_EXPORT int tavo_sim_camera_trigger(FgDevice* device, int trigger);

/// The sensor is read out in \p microseconds, up to 1000000; 0, as at first, takes 25 ns for 17 pixels.
FABRIX_EXPORT int tavo_sim_readout_time(FgDevice* device, double microseconds);

/// Plugs the camera in (1, as at first) or out (0).
FABRIX_EXPORT int tavo_sim_camera_link(FgDevice* device, int connected);

/// Sets the digital inputs: bit i of \p levels, 0 to 255, is input i; at first all are 0. They stay so when the board
/// is configured.
FABRIX_EXPORT int tavo_sim_set_inputs(FgDevice* device, int levels);

/// A pulse of one microsecond on digital input \p input, 0 to 7: its level turns over and back.
FABRIX_EXPORT int tavo_sim_pulse(FgDevice* device, int input);

/// Such pulses come by themselves, 0.01 to 100000 a second, the first one a period from now; 0 ends them. They stay
/// when the board is configured.
FABRIX_EXPORT int tavo_sim_input_rate(FgDevice* device, int input, double pulsesPerSecond);

/// What the trigger block does.
FABRIX_EXPORT int tavo_sim_trigger(FgDevice* device, struct tavo_sim_trigger_state* state);

/// \return the levels of the digital outputs, bit i is output i, or a negative code.
FABRIX_EXPORT int tavo_sim_outputs(FgDevice* device);

/// What drives the camera control line CC1 (\p line 0) to CC4 (3).
FABRIX_EXPORT int tavo_sim_cc_line(FgDevice* device, int line, struct tavo_sim_cc_state* state);

/// \param clock a value of tavo_sim_clock; at first it is TAVO_SIM_REALTIME.
FABRIX_EXPORT int tavo_sim_mode(FgDevice* device, int clock);

// Disturbances. They stay when the board is configured, and may change at any time.

/// Of the frames that are to go to the host, \p percent, 0 to 100, get lost between camera and DMA: the same ones in
/// every transfer with the same \p seed. Picture numbers stay dense; tags and time stamps show the gaps.
FABRIX_EXPORT int tavo_sim_drop_frames(FgDevice* device, double percent, uint32_t seed);

/// The camera is unplugged \p afterMs milliseconds after the start of each transfer, for \p lengthMs; each is 0 to
/// 1000000000, and a length of 0 ends it.
FABRIX_EXPORT int tavo_sim_link_gap(FgDevice* device, double afterMs, double lengthMs);

/// The DMA brings nothing meanwhile, in the same way: the camera goes on, and its frames are lost.
FABRIX_EXPORT int tavo_sim_dma_gap(FgDevice* device, double afterMs, double lengthMs);

/// The DMA brings nothing (1) until it is released (0).
FABRIX_EXPORT int tavo_sim_hold_dma(FgDevice* device, int held);

/// The tag of the first frame of a transfer, 0 to 2147483647; at first it is 1. Tags count in 31 bits.
FABRIX_EXPORT int tavo_sim_first_tag(FgDevice* device, int tag);

/// What the time stamps show when the board is configured, in nanoseconds; at first it is 0. They count in 64 bits,
/// those in microseconds in 31.
FABRIX_EXPORT int tavo_sim_first_time_stamp(FgDevice* device, uint64_t nanoseconds);

/// Every access to a register takes so long, 0 to 1000000; at first it is 0.
FABRIX_EXPORT int tavo_sim_register_delay(FgDevice* device, double microseconds);

FABRIX_EXPORT int tavo_sim_get_losses(FgDevice* device, struct tavo_sim_losses* losses);

/// The \p call -th call of the hardware operation \p operation, counted from now and from 1, answers \p code, which is
/// negative. An operation that the library does not have is refused. Operations that return a pointer answer null then,
/// those that return a size or a time stamp 0.
FABRIX_EXPORT int tavo_sim_fail(FgDevice* device, const char* operation, int call, int code);

/// Forgets all planned faults.
FABRIX_EXPORT int tavo_sim_clear_faults(FgDevice* device);

/// Starts (1) or ends (0) the trace in memory; starting forgets the lines of before.
FABRIX_EXPORT int tavo_sim_trace(FgDevice* device, int on);

/// Copies the trace, one line an event, each with its line end, and a terminator. What does not fit is cut off.
/// \return the number of bytes that the whole trace needs, terminator included; 0 for a null device.
FABRIX_EXPORT size_t tavo_sim_trace_get(FgDevice* device, char* buffer, size_t size);

/// Also writes the trace to the file \p path, which is emptied first; `-` is standard error, null or an empty text
/// ends the file.
FABRIX_EXPORT int tavo_sim_trace_file(FgDevice* device, const char* path);

FABRIX_EXPORT int tavo_sim_get_statistics(FgDevice* device, struct tavo_sim_statistics* statistics);

/// \return how many buffer memories the host has not freed yet, or a negative code.
FABRIX_EXPORT int tavo_sim_open_buffers(FgDevice* device);

/// Why a board last refused something in this thread; empty at first. Valid until the thread's next refusal.
FABRIX_EXPORT const char* tavo_sim_last_error(void);

#ifdef __cplusplus
}
#endif
