// A hardware-access library in which nothing happens: what remains is the applet and the way through it.
#include "fabrix/tavo_hw.h"

extern "C" {

int TavoConfigureFpga(FgDevice*, fpga_design*) { return 0; }

int TavoRegisterWrite(FgDevice*, int, uint64_t) { return 0; }

int TavoRegisterRead(FgDevice*, int, uint64_t* value) {
    *value = 0;
    return 0;
}

int TavoGetCameraStatusExtended(FgDevice*, unsigned int) { return 0; }
}
