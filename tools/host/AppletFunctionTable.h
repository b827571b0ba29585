#pragma once

#include <tuple>

#include "host/AppletLibrary.h"

namespace quillon::host {

/// One exported function: the member of AppletFunctions that points to it, and its name in the library.
template <auto Member>
struct AppletFunctionRow {
    static constexpr auto kMember = Member;
    const char* name;
};

/// All of them. Each has its own type, so a walk goes through std::apply.
// clang-format off
inline constexpr std::tuple kAppletFunctions{
    AppletFunctionRow<&AppletFunctions::stdEntry>{"Std_entry"},
    AppletFunctionRow<&AppletFunctions::info>{"Info"},
    AppletFunctionRow<&AppletFunctions::freeGrabber>{"Fg_FreeGrabber"},
    AppletFunctionRow<&AppletFunctions::getAppletId>{"Fg_getAppletId"},
    AppletFunctionRow<&AppletFunctions::setParameter>{"Fg_setParameterWithType"},
    AppletFunctionRow<&AppletFunctions::getParameter>{"Fg_getParameterWithType"},
    AppletFunctionRow<&AppletFunctions::getNrOfParameter>{"Fg_getNrOfParameter"},
    AppletFunctionRow<&AppletFunctions::getParameterId>{"Fg_getParameterId"},
    AppletFunctionRow<&AppletFunctions::getParameterName>{"Fg_getParameterName"},
    AppletFunctionRow<&AppletFunctions::getParameterInfo>{"Fg_getParameterInfo"},
    AppletFunctionRow<&AppletFunctions::getParameterInfoXml>{"Fg_getParameterInfoXML"},
    AppletFunctionRow<&AppletFunctions::saveConfig>{"Fg_saveConfig"},
    AppletFunctionRow<&AppletFunctions::loadConfig>{"Fg_loadConfig"},
    AppletFunctionRow<&AppletFunctions::getLastErrorNumber>{"Fg_getLastErrorNumber"},
    AppletFunctionRow<&AppletFunctions::acquire>{"Fg_AcquireEx"},
    AppletFunctionRow<&AppletFunctions::stopAcquire>{"Fg_stopAcquireEx"},
    AppletFunctionRow<&AppletFunctions::getLastPicNumberBlocking>{"Fg_getLastPicNumberBlockingEx"},
    AppletFunctionRow<&AppletFunctions::openHardwareLibrary>{"SHW_OpenLib"},
    AppletFunctionRow<&AppletFunctions::openRuntimeLibrary>{"HAPRT_OpenLib"},
    AppletFunctionRow<&AppletFunctions::getUserInfoByName>{"HapGetUserInfoByName"},
    AppletFunctionRow<&AppletFunctions::getRegisterByName>{"HapGetRegisterByName"},
    AppletFunctionRow<&AppletFunctions::getVirtualUserBuffer>{"TavoGetVirtualUserBuffer"},
    AppletFunctionRow<&AppletFunctions::freeVirtualUserBuffer>{"TavoFreeVirtualUserBuffer"},
    AppletFunctionRow<&AppletFunctions::addUserBuffer>{"TavoAddUserBuffer"},
    AppletFunctionRow<&AppletFunctions::delUserBuffer>{"TavoDelUserBuffer"},
    AppletFunctionRow<&AppletFunctions::dmaTestBuffer>{"TavoDmaTestBuffer"},
    AppletFunctionRow<&AppletFunctions::getDmaTag>{"TavoGetDmaTag"},
    AppletFunctionRow<&AppletFunctions::getDmaTimeStampLong>{"TavoGetDmaTimeStampLong"},
    AppletFunctionRow<&AppletFunctions::getDmaLength>{"TavoGetDmaLength"}
};
// clang-format on

}  // namespace quillon::host
