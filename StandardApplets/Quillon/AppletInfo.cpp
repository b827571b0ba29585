#include "StandardApplets/Quillon/AppletInfo.h"

#include <array>
#include <atomic>

#include "StandardApplets/Quillon/AppletConstants.h"
#include "StandardApplets/Quillon/data/applet_data.h"
#include "StandardApplets/grabber_basis/ValueBorder.h"
#include "fabrix/applet.h"

namespace {

std::atomic<FgDevice*> infoDeviceHandle{nullptr};
std::atomic<fpga_design*> infoDesignHandle{nullptr};

/// A question that is answered by the result.
struct NumberAnswer {
    AppletInfos cmd;
    int number;
};

constexpr std::array kNumberAnswers{
    NumberAnswer{GET_ISCAM_COLOR, 0           },
    NumberAnswer{GET_NR_OF_CAMS,  1           },
    NumberAnswer{GET_NR_OF_DMAS,  1           },
    NumberAnswer{GET_VERSION,     kInfoVersion},
    NumberAnswer{GET_BOARD_TYPE,  kBoardType  },
    NumberAnswer{GET_PX_TYPE,     0           },
    NumberAnswer{GET_IS_CUSTOM,   0           },
    NumberAnswer{GET_IS_AREA,     1           },
    NumberAnswer{GET_IS_MEDIUM,   0           },
    NumberAnswer{GET_IS_FULL,     1           },
};

/// A question that is answered by a static text, or by null.
struct TextAnswer {
    AppletInfos cmd;
    const char* text;
};

constexpr std::array kTextAnswers{
    TextAnswer{GET_HAP_ID,             c_HAP_UID                                                                },
    TextAnswer{GET_HAP_NAME,           nullptr                                                                  },
    TextAnswer{GET_INFO_DESCRIPTION,   "Acquisition with one FULL configuration greyscale area scan camera"     },
    TextAnswer{GET_INFO_CATEGORY,      nullptr                                                                  },
    TextAnswer{GET_INFO_TAGS,          "class=acquisition,type=single,sensortype=area,color=gray,interface=full"},
    TextAnswer{GET_INFO_FRIENDLY_NAME, "QuillonCam_Greyscale_8bit"                                              },
};

/// Writes an answer where the caller gave a target.
template <class Value>
int answer(void* target, Value value) {
    if (target != nullptr) putValue(target, value);
    return FG_OK;
}

int answerPorts(int portType) {
    if (portType != 0 && portType != 1) return FG_INVALID_ARGUMENT;
    return portType == 0 ? 1 : 0;
}

}  // namespace

void setInfoDeviceHandle(FgDevice* device) { infoDeviceHandle = device; }

void setInfoDesignHandle(fpga_design* design) { infoDesignHandle = design; }

extern "C" int Info(const AppletInfos cmd, const int arg1, const int /*arg2*/, void* vptr, const void** vptrptr) {
    for (const NumberAnswer& row : kNumberAnswers) {
        if (row.cmd == cmd) return row.number;
    }
    for (const TextAnswer& row : kTextAnswers) {
        if (row.cmd == cmd) return answer(vptrptr, row.text);
    }
    switch (cmd) {
        case GET_NR_OF_PORTS:
            return answerPorts(arg1);
        case GET_PNG_ICON:
            answer(vptrptr, static_cast<const void*>(appletIconData));
            return answer(vptr, static_cast<int>(appletIconSize));
        case GET_INFO_DEVICE_HANDLE:
            return answer(vptr, infoDeviceHandle.load());
        case GET_INFO_DESIGN_HANDLE:
            return answer(vptr, infoDesignHandle.load());
        default:
            return FG_NOT_SUPPORTED;
    }
}
