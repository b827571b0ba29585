#include "StandardApplets/grabber_basis/RSFx4/RSMaster.h"

#include <stdexcept>

#include "StandardApplets/grabber_basis/FabrixBoard.h"
#include "StandardApplets/grabber_basis/Fg_StdMaster.h"
#include "StandardApplets/grabber_basis/Fx3ParameterHeader.h"
#include "StandardApplets/grabber_basis/Shading/ShadingMaster.h"

namespace {

constexpr int kAllPorts = -1;
constexpr unsigned kShadingMaxWidth = 4096;
constexpr unsigned kShadingMaxHeight = 2048;
constexpr const char* kMustNotRun = "you should not be here. Go away.";

}  // namespace

RSMaster::RSMaster(Fg_StdMaster* Fg_Base)
    : mBoard(Fg_Base->getFxBoard()), mFg_Base(Fg_Base), header(Fg_Base->getHeader()) {}

RSMaster::RSMaster() = default;

RSMaster::~RSMaster() = default;

void RSMaster::makeRegistersNull() { mRegisterInitSuccess = FG_OK; }

int RSMaster::updateParameter(unsigned int /*port*/, int /*parameter*/) { return FG_OK; }

int RSMaster::updateAllParameters(unsigned int /*port*/) { return FG_OK; }

int RSMaster::checkParam(int /*id*/, const void* /*val*/, unsigned int /*port*/) { return FG_ERROR; }

int RSMaster::saveParmeter(int /*port*/, int /*id*/, const char* /*key*/, std::FILE* /*file*/) { return FG_ERROR; }

int RSMaster::loadParameter(int /*port*/, int /*id*/, char* /*key*/, std::FILE* /*file*/) { return FG_ERROR; }

int RSMaster::addStandardPS(unsigned int port, bool updateDefault) {
    if (!isPort(port)) return FG_INVALID_PORT;
    setDescriptions();
    setLimits(port, updateDefault);
    setFlags(port);
    setRegisterInfoTree(port);
    return FG_OK;
}

void RSMaster::setDescriptions() { throw std::runtime_error(kMustNotRun); }

void RSMaster::setFlags(unsigned int /*port*/) { throw std::runtime_error(kMustNotRun); }

void RSMaster::setLimits(unsigned int /*port*/, bool /*updateDefault*/) { throw std::runtime_error(kMustNotRun); }

ShadingMaster* RSMaster::Fg_AllocShading(int set, int port) {
    return new ShadingMaster(set, static_cast<unsigned>(port), kShadingMaxWidth, kShadingMaxHeight);
}

int RSMaster::Fg_FreeShading(ShadingMaster* sm) {
    delete sm;
    return FG_OK;
}

int RSMaster::getRegisterInitSuccess() const { return mRegisterInitSuccess; }

bool RSMaster::IsTwoCamModel() const { return mFg_Base->getIsTwoCamModel(); }

int RSMaster::getActivePort() const { return mFg_Base->getActivePort(); }

void RSMaster::setActivePort(int port) { mFg_Base->setActivePort(port); }

Fg_FabrixBoard* RSMaster::getBoard() const { return mBoard; }

Fg_StdMaster* RSMaster::getFgBase() const { return mFg_Base; }

Fx3ParameterHeader* RSMaster::getHeader() const { return header; }

int RSMaster::updateAllDescriptions(bool setDefault) {
    header->updateAllDescriptions(setDefault, kAllPorts);
    return FG_OK;
}

void RSMaster::initRegister(int* reg, const char* name, unsigned int* width) {
    *reg = mBoard->getHapRegisterByName(name, &mRegisterInitSuccess);
    if (width == nullptr) return;
    *width = 0;
    if (*reg == 0) return;
    int error = FG_OK;
    *width = static_cast<unsigned>(mBoard->getRegisterBitRange(*reg, &error));
    if (error != FG_OK) mRegisterInitSuccess = error;
}

void RSMaster::initRows(std::span<const BlockRegisterRow> rows, unsigned int port) {
    for (const BlockRegisterRow& row : rows) {
        const char* name = port == 0 ? row.nameA : row.nameB;
        if (name == nullptr) continue;
        const int status = mRegisterInitSuccess;
        initRegister(&row.reg.handle[port], name, row.needsWidth ? &row.reg.width[port] : nullptr);
        if (row.isOptional) mRegisterInitSuccess = status;
    }
}

void RSMaster::initBlockRegisters(std::span<const BlockRegisterRow> rows) {
    initRows(rows, 0);
    shareRegisters(rows);
    if (IsTwoCamModel()) initRows(rows, 1);
}

void RSMaster::initBothPorts(std::span<const BlockRegisterRow> rows) {
    initRows(rows, 0);
    shareRegisters(rows);
    initRows(rows, 1);
}

void RSMaster::shareRegisters(std::span<const BlockRegisterRow> rows) {
    for (const BlockRegisterRow& row : rows) {
        row.reg.handle[1] = row.reg.handle[0];
        row.reg.width[1] = row.reg.width[0];
    }
}

int RSMaster::writeHandle(int handle, uint64_t value) { return mBoard->writeRegister(handle, value); }

bool RSMaster::isMedium() const { return mFg_Base->getIsMedium(); }
