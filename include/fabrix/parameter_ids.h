/// \file
/// Identifiers of the parameters, and the selectors that a read may add to them.
#pragma once

/// The low 30 bits of an identifier name the parameter.
static const unsigned FG_PARAMETER_ID_MASK = 0x3FFFFFFFu;
/// Added to an identifier: the read returns the largest value allowed on the port.
static const unsigned FG_SELECT_MAXIMUM = 0x40000000u;
/// Added to an identifier: the read returns the access bits of the port as a signed 32-bit integer.
static const unsigned FG_SELECT_ACCESS = 0x80000000u;
/// Added to an identifier: the read returns the smallest value allowed on the port.
static const unsigned FG_SELECT_MINIMUM = 0xC0000000u;

// Acquisition window.
static const int FG_WIDTH = 100;
static const int FG_HEIGHT = 200;
static const int FG_XOFFSET = 300;
static const int FG_YOFFSET = 400;

// Camera port.
static const int FG_FORMAT = 700;
static const int FG_PIXELDEPTH = 4000;
static const int FG_BITALIGNMENT = 4010;
static const int FG_USEDVAL = 5025;
static const int FG_RGB_MAP_RED = 9200;
static const int FG_RGB_MAP_GREEN = 9210;
static const int FG_RGB_MAP_BLUE = 9220;
static const int FG_CAMERA_LINK_CAMTYP = 11011;
static const int FG_CAMPORT_CONFIG = 30000;
static const int FG_CAMERA_TYPE = 30001;

// Sensor readout.
static const int FG_SENSORREADOUT = 5050;

// Area trigger.
static const int FG_FRAMESPERSEC = 90;
static const int FG_TRIGGERMODE = 8100;
static const int FG_TRIGGERINSRC = 8110;
static const int FG_TRIGGERINPOLARITY = 8116;
static const int FG_EXSYNCINVERT = 8200;
static const int FG_EXSYNCON = 8300;
static const int FG_EXSYNCDELAY = 8400;
static const int FG_EXSYNCPOLARITY = 8420;
static const int FG_FLASHON = 8600;
static const int FG_STROBEPULSEDELAY = 8700;
static const int FG_FLASHTIME = 8740;
static const int FG_FLASHTIME_SYNC = 8750;
static const int FG_SENDSOFTWARETRIGGER = 8800;
static const int FG_SOFTWARETRIGGER_QUEUE_FILLLEVEL = 8802;
static const int FG_LIMIT_TRIGGER_PULSES = 8950;
static const int FG_EXPOSURE = 10020;
static const int FG_PRESCALER = 10050;
static const int FG_FLASH_POLARITY = 24060;

// Knee lookup table.
static const int FG_KNEE_LUT = 12100;
static const int FG_KNEE_LUT_SCALE = 12101;
static const int FG_KNEE_LUT_OFFSET = 12102;
static const int FG_KNEE_LUT_GAMMA = 12103;
static const int FG_KNEE_LUT_INVERT = 12104;
static const int FG_KNEE_LUT_FILE = 12110;
static const int FG_KNEE_LUT_SAVE_LOAD_FILE = 12120;
static const int FG_SCALINGFACTOR_RED = 13000;
static const int FG_SCALINGFACTOR_BLUE = 13010;
static const int FG_SCALINGFACTOR_GREEN = 13030;

// CC signals and digital inputs and outputs.
static const int FG_CCSEL = 14000;
static const int FG_CCSEL0 = 14001;
static const int FG_CCSEL1 = 14002;
static const int FG_CCSEL2 = 14003;
static const int FG_CCSEL3 = 14004;
static const int FG_DIGIO_INPUT = 14010;
static const int FG_DIGIO_OUTPUT = 14020;

// Image selector.
static const int FG_IMG_SELECT_PERIOD = 25110;
static const int FG_IMG_SELECT = 25111;

// Test-image generator.
static const int FG_GEN_ENABLE = 30099;
static const int FG_GEN_PASSIVE = 30100;
static const int FG_GEN_ACTIVE = 30101;
static const int FG_GEN_WIDTH = 30102;
static const int FG_GEN_LINE_WIDTH = 30103;
static const int FG_GEN_HEIGHT = 30104;
static const int FG_GEN_LINE_GAP = 30105;
static const int FG_GEN_FREQ = 30106;
static const int FG_GEN_ACCURACY = 30107;
static const int FG_GEN_TAP1 = 30108;
static const int FG_GEN_TAP2 = 30109;
static const int FG_GEN_TAP3 = 30110;
static const int FG_GEN_TAP4 = 30111;
static const int FG_GEN_ROLL = 30112;
static const int FG_GEN_START = 30113;

// Control and board information.
static const int FG_REVNR = 99;
static const int FG_TIMEOUT = 600;
static const int FG_APC_STOP_TIMEOUT = 601;
static const int FG_CAMSTATUS = 2000;
static const int FG_CAMSTATUS_EXTENDED = 2050;
static const int FG_TWOCAMMODEL = 2100;
static const int FG_PORT = 3000;
static const int FG_LINEALIGNMENT = 4020;
static const int FG_TRANSFER_LEN = 5210;
static const int FG_IMAGE_TAG = 22000;
static const int FG_TIMESTAMP = 22020;
static const int FG_TIMESTAMP_LONG = 22030;
static const int FG_APPLET_ID = 24010;
static const int FG_APPLET_VERSION = 24020;
static const int FG_APPLET_REVISION = 24030;
static const int FG_DMASTATUS = 24092;
static const int FG_PLX_CLK = 24102;
static const int FG_MEASURED_PCIE_CLK = 24103;
static const int FG_FPGA_CLK = 24104;
static const int FG_GLOBAL_ACCESS = 24110;
static const int FG_DOC_URL = 24112;
static const int FG_PARAM_DESCR = 24114;
static const int FG_REG_VALUE_STRING = 24115;

// Direct register access: register k of the design, from 1, is parameter FG_DIRECT_REGISTER_BASE + k.
static const int FG_DIRECT_REGISTER_BASE = 50000;
