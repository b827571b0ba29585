// The exported grabber functions: each reaches the master or a shading object and returns its result unchanged.
#include <memory>

#include "StandardApplets/grabber_basis/Fg_StdMaster.h"
#include "StandardApplets/grabber_basis/Fx3ParameterHeader.h"
#include "StandardApplets/grabber_basis/Guard.h"
#include "StandardApplets/grabber_basis/RSFx4/RSMaster.h"
#include "StandardApplets/grabber_basis/Shading/ShadingMaster.h"
#include "fabrix/applet.h"

namespace {

Fg_StdMaster& masterOf(Fg_Struct* Fg) { return *static_cast<Fg_StdMaster*>(Fg->Master); }

}  // namespace

extern "C" {

int Fg_getAppletId(Fg_Struct* Fg, const char* /*Appletname*/) {
    return guarded([&] { return masterOf(Fg).Fg_getAppletId(); });
}

int Fg_setParameterWithType(Fg_Struct* Fg, int Param, void* Value, int CamPort, const FgParamTypes type) {
    return guarded([&] { return masterOf(Fg).Fg_setParameter(Param, Value, static_cast<unsigned>(CamPort), type); });
}

int Fg_getParameterWithType(Fg_Struct* Fg, int Param, void* Value, int CamPort, const FgParamTypes type) {
    return guarded([&] { return masterOf(Fg).Fg_getParameter(Param, Value, CamPort, type); });
}

int Fg_getParameterInfoXML(Fg_Struct* Fg, int port, char* infoBuffer, size_t* infoBufferSize) {
    return guarded([&] { return masterOf(Fg).Fg_getParameterInfoXML(Fg, port, infoBuffer, infoBufferSize); });
}

int Fg_getNrOfParameter(Fg_Struct* Fg) {
    return guarded([&] { return masterOf(Fg).Fg_getNrOfParameter(); });
}

int Fg_getParameterId(Fg_Struct* Fg, int index) {
    return guarded([&] { return masterOf(Fg).Fg_getParameterId(index); });
}

const char* Fg_getParameterName(Fg_Struct* Fg, int index) {
    return guarded([&] { return masterOf(Fg).Fg_getParameterName(index); });
}

int Fg_getParameterIdByName(Fg_Struct* Fg, const char* name) {
    return guarded([&] { return masterOf(Fg).Fg_getParameterIdByName(name); });
}

frameindex_t Fg_getStatusEx(Fg_Struct* Fg, int Param, frameindex_t nData, int CamPort, dma_mem* pMem) {
    return guarded([&] { return masterOf(Fg).Fg_getStatusEx(Param, nData, CamPort, pMem); });
}

int Fg_saveConfig(Fg_Struct* Fg, const char* Filename) {
    return guarded([&] { return masterOf(Fg).Fg_saveConfig(Filename); });
}

int Fg_loadConfig(Fg_Struct* Fg, const char* Filename) {
    return guarded([&] { return masterOf(Fg).Fg_loadConfig(Filename); });
}

int Fg_AcquireEx(Fg_Struct* Fg, int CamPort, frameindex_t PicCount, int nFlag, dma_mem* memHandle) {
    return guarded([&] { return masterOf(Fg).Fg_AcquireEx(CamPort, PicCount, nFlag, memHandle); });
}

int Fg_stopAcquireEx(Fg_Struct* Fg, int CamPort, dma_mem* memHandle, int /*nFlag*/) {
    return guarded([&] { return masterOf(Fg).Fg_stopAcquireEx(CamPort, memHandle); });
}

frameindex_t Fg_getLastPicNumberEx(Fg_Struct* Fg, int CamPort, dma_mem* pMem) {
    return guarded([&] { return masterOf(Fg).Fg_getLastPicNumberEx(CamPort, pMem); });
}

frameindex_t Fg_getLastPicNumberBlockingEx(Fg_Struct* Fg, frameindex_t PicNr, int CamPort, int Timeout, dma_mem* pMem) {
    return guarded([&] { return masterOf(Fg).Fg_getLastPicNumberBlockingEx(PicNr, CamPort, Timeout, pMem); });
}

int Fg_FreeGrabber(Fg_Struct* Fg) {
    return guarded([&] {
        const std::unique_ptr<Fg_Master> owned(Fg == nullptr ? nullptr : Fg->Master);  // taken back from the host
        return FG_OK;
    });
}

int Fg_getLastErrorNumber(Fg_Struct* Fg) {
    return guarded([&] { return masterOf(Fg).Fg_getLastErrorNumber(); });
}

RegisterInfo* Fg_getParameterInfo(Fg_Struct* Fg, int CamPort) {
    return guarded([&] { return masterOf(Fg).Fg_getParameterInfo(CamPort); });
}

ShadingMaster* Fg_AllocShading(Fg_Struct* Fg, int set, int port) {
    return guarded([&]() -> ShadingMaster* {
        RSMaster* module = masterOf(Fg).getHeader()->getShadingModule();
        return module == nullptr ? nullptr : module->Fg_AllocShading(set, port);
    });
}

int Fg_FreeShading(Fg_Struct* Fg, ShadingMaster* sm) {
    return guarded([&] {
        RSMaster* module = masterOf(Fg).getHeader()->getShadingModule();
        return module == nullptr ? 0 : module->Fg_FreeShading(sm);
    });
}

int Shad_SetSubValueLine(Fg_Struct* /*Fg*/, ShadingMaster* sm, int x, int id, float sub) {
    return guarded([&] { return sm->setValueSub(static_cast<unsigned>(x), static_cast<unsigned>(id), sub); });
}

int Shad_SetMultValueLine(Fg_Struct* /*Fg*/, ShadingMaster* sm, int x, int id, float mult) {
    return guarded([&] { return sm->setValueMult(static_cast<unsigned>(x), static_cast<unsigned>(id), mult); });
}

int Shad_SetFixedPatternNoiseLine(Fg_Struct* /*Fg*/, ShadingMaster* sm, int x, int id, int on) {
    return guarded([&] { return sm->setValueFPN(static_cast<unsigned>(x), static_cast<unsigned>(id), on != 0); });
}

int Shad_GetMaxLine(Fg_Struct* /*Fg*/, ShadingMaster* sm) {
    return guarded([&] { return static_cast<int>(sm->getMaxWidth()); });
}

int Shad_GetAccess(Fg_Struct* /*Fg*/, ShadingMaster* sm) {
    return guarded([&] { return sm->getAccess(); });
}

int Shad_FreeAccess(Fg_Struct* /*Fg*/, ShadingMaster* sm) {
    return guarded([&] { return sm->freeAccess(); });
}

int Shad_WriteActLine(Fg_Struct* /*Fg*/, ShadingMaster* sm, int Line) {
    return guarded([&] { return sm->writeActLine(Line); });
}
}
