#include "StandardApplets/grabber_basis/PSFx4/PSControl.h"

#include <sys/time.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cinttypes>
#include <cstdio>
#include <string>

#include "StandardApplets/grabber_basis/FabrixBoard.h"
#include "StandardApplets/grabber_basis/Fg_ImageControl.h"
#include "StandardApplets/grabber_basis/Fg_StdMaster.h"
#include "StandardApplets/grabber_basis/Fx3ParameterHeader.h"
#include "StandardApplets/grabber_basis/PSFx4/ParameterTable.h"
#include "StandardApplets/grabber_basis/ValueBorder.h"
#include "fabrix/parameter_ids.h"

namespace {

constexpr double kRevision = 3.008;
constexpr double kFpgaClocksPerPlxClock = 4.0;
constexpr double kClockFactor = 1.6;
constexpr unsigned kLinkBits = 7;        // must be set on every connector
constexpr unsigned kCollectedBits = 56;  // collected from any connector
constexpr unsigned kLevelBits = 192;     // the larger of the connectors' values
constexpr useconds_t kMeasureTimeUs = 100000;

// clang-format off
constexpr std::array kParameters{
    ParameterRow{FG_PORT, TYPE_INT, "FG_PORT", "Active Port", "[A,B]", "Framegrabber active port."},
    ParameterRow{FG_TIMEOUT, TYPE_INT, "FG_TIMEOUT", "Timeout", "[s]", "Framegrabber image timeout."},
    ParameterRow{FG_CAMSTATUS, TYPE_INT, "FG_CAMSTATUS", "Camera Status", nullptr, "Camera Status."},
    ParameterRow{FG_TWOCAMMODEL, TYPE_INT, "FG_TWOCAMMODEL", "Is Two Cam", nullptr, "Is a Dual Applet."},
    ParameterRow{FG_TRANSFER_LEN, TYPE_INT, "FG_TRANSFER_LEN", "Transfer Lenght", nullptr, "DMA Transfer Length."},
    ParameterRow{FG_LINEALIGNMENT, TYPE_INT, "FG_LINEALIGNMENT", "Line Alignment", nullptr, "Line Alignment."},
    ParameterRow{FG_CAMSTATUS_EXTENDED, TYPE_INT, "FG_CAMSTATUS_EXTENDED", "Camera Status Ext.", nullptr, "Camera Status Extended."},
    ParameterRow{FG_REVNR, TYPE_DOUBLE, "FG_REVNR", "Revision", nullptr, "Software revision number."},
    ParameterRow{FG_IMAGE_TAG, TYPE_INT, "FG_IMAGE_TAG", "Image Tag", nullptr, "Image Tag."},
    ParameterRow{FG_TIMESTAMP, TYPE_INT, "FG_TIMESTAMP", "Time Stamp", nullptr, "Time Stamp."},
    ParameterRow{FG_TIMESTAMP_LONG, TYPE_INT, "FG_TIMESTAMP_LONG", "Time Stamp 64", nullptr, "Time Stamp Long."},
    ParameterRow{FG_APPLET_ID, TYPE_INT, "FG_APPLET_ID", "Applet ID", nullptr, "Returns the Applet ID."},
    ParameterRow{FG_APPLET_VERSION, TYPE_INT, "FG_APPLET_VERSION", "Applet Version", nullptr, "Returns the Applet Version."},
    ParameterRow{FG_APPLET_REVISION, TYPE_INT, "FG_APPLET_REVISION", "Applet Revision", nullptr, "Returns the Applet Revision."},
    ParameterRow{FG_DMASTATUS, TYPE_INT, "FG_DMASTATUS", "DMA Status", nullptr, "Returns the status of the DMA transmission."},
    ParameterRow{FG_PLX_CLK, TYPE_DOUBLE, "FG_PLX_CLK", "PCI Clock", "[MHz]", "The frequency of the PCIe Clock."},
    ParameterRow{FG_MEASURED_PCIE_CLK, TYPE_DOUBLE, "FG_MEASURED_PCIE_CLK", "Measured PCIe Frequency", "[MHz]", "Returns a measured value of the PCIe Bus frequency."},
    ParameterRow{FG_FPGA_CLK, TYPE_DOUBLE, "FG_FPGA_CLK", "FPGA Clock", "[MHz]", "Returns the frequency of the FPGA Clock. This frequency can not be changed."},
    ParameterRow{FG_GLOBAL_ACCESS, TYPE_ENUM, "FG_GLOBAL_ACCESS", "Global Access Attribute", nullptr, "Attribute for all the parameters."},
    ParameterRow{FG_DOC_URL, TYPE_STRING, "FG_DOC_URL", "Doc URL", nullptr, "Relative path to the module documentation."},
    ParameterRow{FG_PARAM_DESCR, TYPE_STRING, "FG_PARAM_DESCR", "Parameter Description", nullptr, "Return a short parameter description."},
    ParameterRow{FG_REG_VALUE_STRING, TYPE_STRING, "FG_REG_VALUE_STRING", "Reg. value as a string", nullptr, "Return the reg value as a string (only possible in debug version)."},
    ParameterRow{FG_APC_STOP_TIMEOUT, TYPE_INT, "FG_APC_STOP_TIMEOUT", "Timeout APC - Stop Acquire", nullptr, nullptr},
};
static_assert(idsAreUnique(kParameters));

// FG_APC_STOP_TIMEOUT keeps the flags of a fresh record and stands in no group.
constexpr std::array kFlags{
    FlagRow{FG_TIMEOUT, kReadWriteAlways, 1, 1, 1},
    FlagRow{FG_GLOBAL_ACCESS, kReadWriteAlways, 1, 1, 1},
    FlagRow{FG_PORT, kReadWriteAlways, 1, 0, 1},
    FlagRow{FG_CAMSTATUS, kReadOnly, 1, 1, 0},
    FlagRow{FG_APPLET_ID, kReadOnly, 1, 1, 0},
    FlagRow{FG_APPLET_VERSION, kReadOnly, 1, 1, 0},
    FlagRow{FG_APPLET_REVISION, kReadOnly, 1, 1, 0},
    FlagRow{FG_DMASTATUS, kReadOnly, 1, 1, 0},
    FlagRow{FG_PLX_CLK, kReadOnly, 1, 1, 0},
    FlagRow{FG_MEASURED_PCIE_CLK, kReadOnly, 1, 1, 0},
    FlagRow{FG_FPGA_CLK, kReadOnly, 1, 1, 0},
    FlagRow{FG_TRANSFER_LEN, kReadOnly, 1, 0, 0},
    FlagRow{FG_TWOCAMMODEL, kReadOnly, 1, 0, 0},
    FlagRow{FG_LINEALIGNMENT, kReadOnly, 1, 0, 0},
    FlagRow{FG_CAMSTATUS_EXTENDED, kReadOnly, 1, 0, 0},
    FlagRow{FG_REVNR, kReadOnly, 1, 0, 0},
    FlagRow{FG_IMAGE_TAG, kReadOnly, 1, 0, 0},
    FlagRow{FG_TIMESTAMP, kReadOnly, 1, 0, 0},
    FlagRow{FG_TIMESTAMP_LONG, kReadOnly, 1, 0, 0},
    FlagRow{FG_DOC_URL, kReadOnly, 1, 0, 0},
    FlagRow{FG_PARAM_DESCR, kReadOnly, 1, 0, 0},
    FlagRow{FG_REG_VALUE_STRING, kReadOnly, 1, 0, 0},
};
static_assert(idsAreUnique(kFlags));

constexpr std::array kGroup{
    FG_TIMEOUT, FG_GLOBAL_ACCESS, FG_FPGA_CLK, FG_PLX_CLK, FG_MEASURED_PCIE_CLK, FG_DOC_URL, FG_PARAM_DESCR, FG_PORT,
    FG_TRANSFER_LEN, FG_CAMSTATUS, FG_TWOCAMMODEL, FG_LINEALIGNMENT, FG_CAMSTATUS_EXTENDED, FG_DMASTATUS, FG_REVNR,
    FG_IMAGE_TAG, FG_TIMESTAMP, FG_TIMESTAMP_LONG, FG_APPLET_ID, FG_APPLET_VERSION, FG_APPLET_REVISION,
    FG_REG_VALUE_STRING,
};

/// Integers that are only read: their limits say nothing.
constexpr std::array kIntegersWithoutLimits{
    FG_TRANSFER_LEN, FG_CAMSTATUS, FG_TWOCAMMODEL, FG_LINEALIGNMENT, FG_CAMSTATUS_EXTENDED, FG_IMAGE_TAG,
    FG_TIMESTAMP, FG_TIMESTAMP_LONG, FG_APPLET_ID, FG_APPLET_VERSION, FG_APPLET_REVISION, FG_DMASTATUS,
};
// clang-format on

constexpr std::array kAccessEntries{
    EnumField{"Auto",              0, "NONE"     },
    EnumField{"Read",              1, "RO"       },
    EnumField{"Read Write",        3, "RW"       },
    EnumField{"Read Write Change", 7, "RW_Change"},
};

uint32_t elapsedUs(const timeval& from, const timeval& to) {
    const auto seconds = static_cast<uint32_t>(to.tv_sec) - static_cast<uint32_t>(from.tv_sec);
    return seconds * 1000000u + (static_cast<uint32_t>(to.tv_usec) - static_cast<uint32_t>(from.tv_usec));
}

}  // namespace

const PSControl::IntegerReader PSControl::kIntegerReaders[] = {
    {FG_PORT,               &PSControl::readActivePort          },
    {FG_TIMEOUT,            &PSControl::readTimeout             },
    {FG_CAMSTATUS,          &PSControl::readCameraStatus        },
    {FG_TWOCAMMODEL,        &PSControl::readTwoCamModel         },
    {FG_LINEALIGNMENT,      &PSControl::readLineAlignment       },
    {FG_CAMSTATUS_EXTENDED, &PSControl::readCameraStatusExtended},
    {FG_APPLET_ID,          &PSControl::readAppletId            },
    {FG_APPLET_VERSION,     &PSControl::readAppletVersion       },
    {FG_APPLET_REVISION,    &PSControl::readAppletRevision      },
    {FG_DMASTATUS,          &PSControl::readDmaStatus           },
    {FG_GLOBAL_ACCESS,      &PSControl::readGlobalAccess        },
};

PSControl::PSControl(Fg_StdMaster* FG_base) : RSControl(FG_base) { createParameters(*this, kParameters); }

int PSControl::getParamFromRs(int id, void* val, unsigned int port) {
    if (!isPort(port)) return FG_INVALID_PORT;
    for (const IntegerReader& reader : kIntegerReaders) {
        if (reader.id != id) continue;
        putValue(val, (this->*reader.read)(port));
        return FG_OK;
    }
    switch (id) {
        case FG_REVNR:
            putValue(val, kRevision);
            return FG_OK;
        case FG_PLX_CLK:
        case FG_MEASURED_PCIE_CLK:
            putValue(val, pciExpressClockMHz());
            return FG_OK;
        case FG_FPGA_CLK:
            putValue(val, mBoard->getPlxClk() * kFpgaClocksPerPlxClock);
            return FG_OK;
        default:
            return answerTextQuery(id, val);
    }
}

int PSControl::setParamToRs(int id, const void* val, unsigned int port) {
    if (!isPort(port)) return FG_INVALID_PORT;
    switch (id) {
        case FG_PORT:
            setActivePort(takeValue<int>(val));
            return updateParameter(port, FG_PORT);
        case FG_GLOBAL_ACCESS:
            header->changeAllowAllAccess(takeValue<int>(val));
            return FG_OK;
        case FG_TIMEOUT:
            return mFg_Base->getImageControl()->setImageTimeout(static_cast<int>(port), takeValue<int>(val));
        default:
            return FG_INVALID_ARGUMENT;
    }
}

unsigned PSControl::readActivePort(unsigned /*port*/) { return static_cast<unsigned>(mFg_Base->getActivePort()); }

unsigned PSControl::readTimeout(unsigned port) {
    return static_cast<unsigned>(mFg_Base->getImageControl()->getImageTimeout(static_cast<int>(port)));
}

unsigned PSControl::readTwoCamModel(unsigned /*port*/) { return IsTwoCamModel() ? 1 : 0; }

unsigned PSControl::readLineAlignment(unsigned /*port*/) { return static_cast<unsigned>(mFg_Base->getLineAlignment()); }

unsigned PSControl::readAppletId(unsigned /*port*/) { return static_cast<unsigned>(mBoard->getAppletID()); }

unsigned PSControl::readAppletVersion(unsigned /*port*/) { return mBoard->getAppletVersion(); }

unsigned PSControl::readAppletRevision(unsigned /*port*/) { return mBoard->getAppletRevision(); }

unsigned PSControl::readDmaStatus(unsigned port) {
    return mFg_Base->getImageControl()->getImageDMATransferActive(static_cast<int>(port)) ? 1 : 0;
}

unsigned PSControl::readGlobalAccess(unsigned /*port*/) { return static_cast<unsigned>(header->getAllowAllAccess()); }

// ---- Camera status

bool PSControl::hasCamera(unsigned port) const { return port == 0 || IsTwoCamModel(); }

/// \return the status of a connector; a code of a failing query counts as its bits
unsigned PSControl::connectorStatus(unsigned connector) {
    return static_cast<unsigned>(mBoard->getCameraStatusExtended(connector));
}

unsigned PSControl::readCameraStatus(unsigned port) {
    if (!hasCamera(port)) return 0;
    if (mFg_Base->getIsMedium()) return connectorStatus(0) & connectorStatus(1) & 1;
    if (mFg_Base->getIsFull()) return connectorStatus(0) & connectorStatus(1) & connectorStatus(2) & 1;
    return connectorStatus(port) & 1;
}

unsigned PSControl::readCameraStatusExtended(unsigned port) {
    if (!hasCamera(port)) return 0;
    const bool isMediumCamera = mFg_Base->getIsMedium();
    if (!isMediumCamera && !mFg_Base->getIsFull()) return connectorStatus(port) | getBufferStatus(port);
    const unsigned s0 = connectorStatus(0) | getBufferStatus(0);
    const unsigned s1 = connectorStatus(1) | getBufferStatus(1);
    unsigned link = s0 & s1 & kLinkBits;
    if (!isMediumCamera) link &= connectorStatus(2);
    return link | ((s0 | s1) & kCollectedBits) | std::max(s0 & kLevelBits, s1 & kLevelBits);
}

// ---- Clocks

double PSControl::pciExpressClockMHz() {
    if (mMeasuredPciExpressFrequency == 0.0) mMeasuredPciExpressFrequency = measurePCIe();
    return mMeasuredPciExpressFrequency;
}

double PSControl::measurePCIe() {
    const int control = mBoard->getHapRegisterByName("AAFreqCountCtrl", nullptr);
    const int counter = mBoard->getHapRegisterByName("AAFreqCount", nullptr);
    writeHandle(control, 1);
    writeHandle(control, 2);
    timeval start{};
    timeval end{};
    gettimeofday(&start, nullptr);
    usleep(kMeasureTimeUs);
    writeHandle(control, 0);
    gettimeofday(&end, nullptr);
    const auto count = static_cast<uint32_t>(mBoard->readRegister(counter));
    return static_cast<double>(count) / elapsedUs(start, end) * kClockFactor / 1000000.0;
}

// ---- Text queries: the caller's memory holds a name and receives the answer

int PSControl::answerTextQuery(int id, void* text) {
    switch (id) {
        case FG_DOC_URL:
            if (const char* url = header->getDocUrlByDefName(takeName(text).c_str()); url != nullptr) {
                putText(text, url);
            }
            return FG_OK;
        case FG_PARAM_DESCR:
            if (const Fx3Parameter* record = header->searchParameterByDefName(takeName(text).c_str());
                record != nullptr && !record->description.docDescription.empty()) {
                putText(text, record->description.docDescription);
            }
            return FG_OK;
        case FG_REG_VALUE_STRING:
            answerRegisterQuery(text);
            return FG_OK;
        default:
            return FG_INVALID_ARGUMENT;
    }
}

void PSControl::answerRegisterQuery(void* text) {
    const std::string name = takeName(text);
    const int handle = mBoard->getHapRegisterByName(name.c_str(), nullptr);
    if (handle == 0) return;
    const uint64_t value = mBoard->readRegister(handle);
    std::array<char, kTextCapacity> answer{};
    std::snprintf(answer.data(), answer.size(), "%s= %" PRId64 " (0x%" PRIx64 ")", name.c_str(),
                  static_cast<int64_t>(value), value);
    putText(text, answer.data());
}

// ---- Descriptions

void PSControl::setDescriptions() { publishDescriptions(*header, kParameters); }

void PSControl::setFlags(unsigned int port) { publishFlags(*header, port, kFlags); }

void PSControl::setLimits(unsigned int port, bool updateDefault) {
    const int p = static_cast<int>(port);
    header->setLimits(FG_TIMEOUT, p, 2, 2147483646, 1, 1000000, updateDefault);
    header->setLimits(FG_PORT, p, 0, 1, 1, 0, updateDefault);
    header->setLimits(FG_GLOBAL_ACCESS, p, kAccessEntries.data(), static_cast<int>(kAccessEntries.size()), 0,
                      updateDefault);
    header->setLimits(FG_PLX_CLK, p, 0.0, 1024.0, 2.0, mBoard->getPlxClk() * kClockFactor, false);
    header->setLimits(FG_FPGA_CLK, p, 0.0, 1024.0, 2.0, mBoard->getFPGAClk() * kClockFactor, false);
    header->setLimits(FG_MEASURED_PCIE_CLK, p, 0.0, 1024.0, 2.0, 0.0, false);
    header->setLimits(FG_DOC_URL, p, "", "*.html", false);
    header->setLimits(FG_PARAM_DESCR, p, "", nullptr, false);
    header->setLimits(FG_REG_VALUE_STRING, p, "", nullptr, false);
    for (const int id : kIntegersWithoutLimits) header->setLimits(id, p, 0, 0, 0, 0, false);
    header->setLimits(FG_REVNR, p, 0.0, 0.0, 0.0, 0.0, false);
}

void PSControl::setRegisterInfoTree(unsigned int port) {
    publishGroup(*header, port, nullptr, "Miscellaneous", kGroup);
}

const char* PSControl::getDocModuleURL(int /*id*/) { return "feature_blocks/PSMisc/FB_Miscellaneous.html"; }
