#include "host/ResultCodes.h"

#include <array>

#include "fabrix/result_codes.h"

namespace quillon::host {

namespace {

constexpr std::array kResultCodes{
    ResultCodeRow{FG_OK,                       "FG_OK",                       "success",                                                      "nothing to do"                             },
    ResultCodeRow{FG_ERROR,                    "FG_ERROR",                    "an internal operation failed",                                 "check the design and the runtime libraries"},
    ResultCodeRow{FG_NO_DEVICE,                "FG_NO_DEVICE",                "no board, or the hardware-access library lacks the operation",
                  "check the board and that libtavo_hw.so fits this applet"                                                                                                               },
    ResultCodeRow{FG_TIME_BASE_TOO_SHORT,      "FG_TIME_BASE_TOO_SHORT",
                  "the trigger time base is shorter than 15 clock cycles",                                                                    "choose a lower rate or a smaller prescaler"},
    ResultCodeRow{FG_SOFTWARE_TRIGGER_BUSY,    "FG_SOFTWARE_TRIGGER_BUSY",
                  "the software trigger is busy or its queue is full",                                                                        "send the trigger again a little later"     },
    ResultCodeRow{FG_INVALID_PORT,             "FG_INVALID_PORT",
                  "the port does not exist, or it is port 1 while one camera uses both connectors",                                           "use port 0"                                },
    ResultCodeRow{FG_HW_LIBRARY_MISSING,       "FG_HW_LIBRARY_MISSING",       "the hardware-access library could not be loaded",
                  "install libtavo_hw.so in the folder lib of the installation, or set TAVODIR5"                                                                                          },
    ResultCodeRow{FG_OUT_OF_RESOURCES,         "FG_OUT_OF_RESOURCES",         "out of memory, or a buffer is too small",
                  "free memory, or use fewer or smaller buffers"                                                                                                                          },
    ResultCodeRow{FG_TYPE_NOT_SUPPORTED,       "FG_TYPE_NOT_SUPPORTED",
                  "the parameter has no register behind it or a type that cannot be used",                                                    "use a design that has the register"        },
    ResultCodeRow{FG_DMA_STOP_FAILED,          "FG_DMA_STOP_FAILED",          "the DMA transfer could not be stopped",
                  "stop again, or reset the board"                                                                                                                                        },
    ResultCodeRow{FG_INVALID_ARGUMENT,         "FG_INVALID_ARGUMENT",
                  "an argument is invalid, or the parameter has no value of its own",                                                         "check name, value and type"                },
    ResultCodeRow{FG_GENERATOR_NOT_REALISABLE, "FG_GENERATOR_NOT_REALISABLE",
                  "the test-image generator cannot produce this setting",                                                                     "choose another size, gap or frequency"     },
    ResultCodeRow{FG_ALREADY_STARTED,          "FG_ALREADY_STARTED",          "the acquisition has been started already",
                  "stop it first"                                                                                                                                                         },
    ResultCodeRow{FG_NOT_CONFIGURED,           "FG_NOT_CONFIGURED",           "the FPGA is not configured",                                   "open the board again"                      },
    ResultCodeRow{FG_BUFFER_STATUS_FAILED,     "FG_BUFFER_STATUS_FAILED",     "the buffer status could not be read",
                  "check that the buffers belong to this board"                                                                                                                           },
    ResultCodeRow{FG_NOT_SUPPORTED,            "FG_NOT_SUPPORTED",            "the query or operation is not supported",
                  "ask for something this applet has"                                                                                                                                     },
    ResultCodeRow{FG_TRIGGER_MODE_MISMATCH,    "FG_TRIGGER_MODE_MISMATCH",    "the present trigger mode does not allow it",
                  "change FG_TRIGGERMODE first"                                                                                                                                           },
    ResultCodeRow{FG_NOT_STARTED,              "FG_NOT_STARTED",              "the acquisition has not been started",                         "start it first"                            },
    ResultCodeRow{FG_FILE_REJECTED,            "FG_FILE_REJECTED",            "the file is missing or was refused",
                  "check its name and content"                                                                                                                                            },
    ResultCodeRow{FG_FILE_NOT_ACCESSIBLE,      "FG_FILE_NOT_ACCESSIBLE",      "the file cannot be created, read or written",
                  "check its folder and its rights"                                                                                                                                       },
    ResultCodeRow{FG_VALUE_OUT_OF_RANGE,       "FG_VALUE_OUT_OF_RANGE",
                  "the value lies outside the limits or is not an entry",                                                                     "choose a value within the limits"          },
    ResultCodeRow{FG_REGISTER_NOT_FOUND,       "FG_REGISTER_NOT_FOUND",       "the design has no register of this name",
                  "use a design that has it"                                                                                                                                              },
    ResultCodeRow{FG_NOT_A_STEP,               "FG_NOT_A_STEP",               "the value is not a multiple of the step",
                  "choose a multiple of the step"                                                                                                                                         },
    ResultCodeRow{FG_ACQUISITION_RUNNING,      "FG_ACQUISITION_RUNNING",
                  "the parameter cannot change while an acquisition runs",                                                                    "stop the acquisition first"                },
    ResultCodeRow{FG_KEY_MISSING,              "FG_KEY_MISSING",              "the configuration file lacks the key",                         "add the key to the file"                   },
    ResultCodeRow{FG_NOT_WRITABLE,             "FG_NOT_WRITABLE",             "the parameter cannot be written now",
                  "check its access, and FG_GLOBAL_ACCESS"                                                                                                                                },
};

}  // namespace

std::span<const ResultCodeRow> resultCodes() { return kResultCodes; }

const ResultCodeRow* findResultCode(int code) {
    for (const ResultCodeRow& row : kResultCodes) {
        if (row.code == code) return &row;
    }
    return nullptr;
}

std::string describeResultCode(int code) {
    const ResultCodeRow* row = findResultCode(code);
    if (row == nullptr) return "code " + std::to_string(code) + " of the hardware-access library";
    return std::string(row->name) + " (" + std::to_string(code) + "): " + row->meaning;
}

}  // namespace quillon::host
