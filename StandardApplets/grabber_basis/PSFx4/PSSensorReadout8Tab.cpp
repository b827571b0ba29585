#include "StandardApplets/grabber_basis/PSFx4/PSSensorReadout8Tab.h"

#include "StandardApplets/grabber_basis/Fg_StdMaster.h"
#include "StandardApplets/grabber_basis/Fx3ParameterHeader.h"
#include "StandardApplets/grabber_basis/PSFx4/ParameterTable.h"
#include "StandardApplets/grabber_basis/ValueBorder.h"
#include "fabrix/parameter_ids.h"

namespace {

// clang-format off
// Hosts know the description with its spelling.
constexpr std::array kParameters{
    ParameterRow{FG_SENSORREADOUT, TYPE_ENUM, "FG_SENSORREADOUT", "Readout mode", nullptr, "Select the sensor readout strategy matching your camera, to perform the correct on-bard pixel reshuffeling."},
};
constexpr std::array kFlags{
    FlagRow{FG_SENSORREADOUT, kReadWriteAlways, 1, 1, 1},
};
constexpr std::array kGroup{FG_SENSORREADOUT};

// The diagram is one line of the sensor from left to right: a digit is a tap in the order in which the camera sends
// them, ">" a tap that is read from left to right, "<" one that is read from right to left.
constexpr std::array kModeEntries{
    EnumField{"SMODE_UNCHANGED       |->                       |", 0, "SMODE_UNCHANGED"},
    EnumField{"SMODE_REVERSE         |                       <-|", 3, "SMODE_REVERSE"},
    EnumField{"SMODE_TAB8_0          |1234>               <8765|", 30, "SMODE_TAB8_0"},
    EnumField{"SMODE_TAB8_1          |1234>               <5678|", 31, "SMODE_TAB8_1"},
    EnumField{"SMODE_TAB8_2          |1234>       5678>        |", 32, "SMODE_TAB8_2"},
    EnumField{"SMODE_TAB8_3          |12>    34>    56>    78> |", 33, "SMODE_TAB8_3"},
    EnumField{"SMODE_TAB8_4          | <87    <65    <43    <21|", 34, "SMODE_TAB8_4"},
    EnumField{"SMODE_TAB8_5          |12>    34>     <56    <78|", 35, "SMODE_TAB8_5"},
    EnumField{"SMODE_TAB8_6          |5678>               <4321|", 36, "SMODE_TAB8_6"},
    EnumField{"SMODE_TAB8_7      \t|8765>               <4321|", 37, "SMODE_TAB8_7"},
    EnumField{"SMODE_TAB8_8          |        <8765       <4321|", 38, "SMODE_TAB8_8"},
    EnumField{"SMODE_TAB8_9          |87>    65>     <43    <21|", 39, "SMODE_TAB8_9"},
    EnumField{"SMODE_TAB8_10         |12>    34>     <65    <87|", 40, "SMODE_TAB8_10"},
    EnumField{"SMODE_TAB8_11         |78>    56>     <43    <21|", 41, "SMODE_TAB8_11"},
    EnumField{"SMODE_TAB8_12         |1> 2> 3> 4> 5> 6> 7> 8>  |", 42, "SMODE_TAB8_12"},
    EnumField{"SMODE_TAB8_13         |  <8 <7 <6 <5 <4 <3 <2 <1|", 43, "SMODE_TAB8_13"},
    EnumField{"SMODE_TAB8_14         |1> 2> 3> 4>   <5 <6 <7 <8|", 44, "SMODE_TAB8_14"},
    EnumField{"SMODE_TAB8_15         |8> 7> 6> 5>   <4 <3 <2 <1|", 45, "SMODE_TAB8_15"},
    EnumField{"SMODE_TAB8_16         |1> 2>  <3 <4 5> 6>  <7 <8|", 46, "SMODE_TAB8_16"},
    EnumField{"SMODE_TAB8_17         |8> 7>  <6 <5 4> 3>  <2 <1|", 47, "SMODE_TAB8_17"},
    EnumField{"SMODE_TAB8_18         |  <1 <2 <3 <4 <5 <6 <7 <8|", 48, "SMODE_TAB8_18"},
    EnumField{"SMODE_TAB8_19         |8> 7> 6> 5> 4> 3> 2> 1>  |", 49, "SMODE_TAB8_19"},
    EnumField{"SMODE_TAB8_20         | <1 <2 <3 <4 5> 6> 7> 8> |", 50, "SMODE_TAB8_20"},
    EnumField{"SMODE_TAB8_21         | <8 <7 <6 <5 4> 3> 2> 1> |", 51, "SMODE_TAB8_21"},
};
// clang-format on

constexpr int kUnchanged = 0;

}  // namespace

PSSensorReadout8Tab::PSSensorReadout8Tab(Fg_StdMaster* master, int taps) : RSSensorReadout8Tab(master, taps) {
    initRegisters();
    createParameters(*this, kParameters);
}

int PSSensorReadout8Tab::getParamFromRs(int id, void* val, unsigned int port) {
    if (!isPort(port)) return FG_INVALID_PORT;
    if (id != FG_SENSORREADOUT) return FG_INVALID_ARGUMENT;
    putValue(val, getReadOutMode(port));
    return FG_OK;
}

int PSSensorReadout8Tab::setParamToRs(int id, const void* val, unsigned int port) {
    if (!isPort(port)) return FG_INVALID_PORT;
    if (id != FG_SENSORREADOUT) return FG_INVALID_ARGUMENT;
    return setReadOutMode(port, takeValue<unsigned>(val));
}

void PSSensorReadout8Tab::setDescriptions() { publishDescriptions(*header, kParameters); }

void PSSensorReadout8Tab::setFlags(unsigned int port) { publishFlags(*header, port, kFlags); }

void PSSensorReadout8Tab::setLimits(unsigned int port, bool updateDefault) {
    header->setLimits(FG_SENSORREADOUT, static_cast<int>(port), kModeEntries.data(),
                      static_cast<int>(kModeEntries.size()), kUnchanged, updateDefault);
}

void PSSensorReadout8Tab::setRegisterInfoTree(unsigned int port) {
    publishGroup(*header, port, nullptr, "Sensor Readout Correction", kGroup);
}

const char* PSSensorReadout8Tab::getDocModuleURL(int /*id*/) {
    if (mFg_Base->getIsFull()) return "feature_blocks/PSSensorReadout/PSSensorReadoutFull.html";
    if (isMedium()) return "feature_blocks/PSSensorReadout/PSSensorReadoutMedium.html";
    return "feature_blocks/PSSensorReadout/PSSensorReadoutBase.html";
}
