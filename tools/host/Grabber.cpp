#include "host/Grabber.h"

#include <algorithm>
#include <cstring>

#include "host/HostError.h"
#include "host/ResultCodes.h"

namespace quillon::host {

namespace {

/// Names that a text query takes, terminator included.
constexpr size_t kQueryCapacity = 512;

/// The applet reads by the parameter's own type; the tag says what the caller expects.
template <class T>
constexpr FgParamTypes kTypeTag = FG_PARAM_TYPE_INT32_T;
template <>
constexpr FgParamTypes kTypeTag<double> = FG_PARAM_TYPE_DOUBLE;

unsigned select(int id, unsigned selector) { return static_cast<unsigned>(id) | selector; }

}  // namespace

Grabber::Grabber(const AppletLibrary& applet, FgDevice* device)
    : mApplet(applet), mDevice(device == nullptr ? reinterpret_cast<FgDevice*>(mDeviceToken.data()) : device) {
    int code = 0;
    mHandle.Master = functions().stdEntry(mDevice, &code, 0);
    if (mHandle.Master == nullptr) {
        if (code >= 0) code = FG_ERROR;
        throw HostError(code, "the board does not open: " + describeResultCode(code));
    }
}

Grabber::~Grabber() { functions().freeGrabber(&mHandle); }

int Grabber::readRaw(unsigned id, ValueBuffer& buffer, int port, FgParamTypes type) const {
    return functions().getParameter(&mHandle, static_cast<int>(id), buffer.data(), port, type);
}

template <class T>
int Grabber::readPlain(unsigned id, T& value, int port) const {
    ValueBuffer buffer{};
    const int result = readRaw(id, buffer, port, kTypeTag<T>);
    if (result >= 0) std::memcpy(&value, buffer.data(), sizeof(value));
    return result;
}

int Grabber::read(int id, int32_t& value, int port) const { return readPlain(select(id, 0), value, port); }

int Grabber::read(int id, double& value, int port) const { return readPlain(select(id, 0), value, port); }

int Grabber::read(int id, std::string& value, int port) const {
    if (value.size() >= kQueryCapacity) return FG_INVALID_ARGUMENT;
    ValueBuffer buffer{};
    std::memcpy(buffer.data(), value.data(), value.size());
    const int result = readRaw(select(id, 0), buffer, port, FG_PARAM_TYPE_CHAR_PTR);
    if (result >= 0) {
        const char* text = reinterpret_cast<const char*>(buffer.data());
        value.assign(text, strnlen(text, buffer.size()));
    }
    return result;
}

int Grabber::write(int id, int32_t value, int port) {
    return functions().setParameter(&mHandle, id, &value, port, FG_PARAM_TYPE_INT32_T);
}

int Grabber::write(int id, double value, int port) {
    return functions().setParameter(&mHandle, id, &value, port, FG_PARAM_TYPE_DOUBLE);
}

int Grabber::write(int id, const std::string& value, int port) {
    std::string copy = value;  // the interface takes a pointer that it might write through
    return functions().setParameter(&mHandle, id, copy.data(), port, FG_PARAM_TYPE_CHAR_PTR);
}

int Grabber::limits(int id, int32_t& minimum, int32_t& maximum, int port) const {
    const int result = readPlain(select(id, FG_SELECT_MINIMUM), minimum, port);
    return result < 0 ? result : readPlain(select(id, FG_SELECT_MAXIMUM), maximum, port);
}

int Grabber::limits(int id, double& minimum, double& maximum, int port) const {
    const int result = readPlain(select(id, FG_SELECT_MINIMUM), minimum, port);
    return result < 0 ? result : readPlain(select(id, FG_SELECT_MAXIMUM), maximum, port);
}

int Grabber::access(int id, int port) const {
    int32_t bits = 0;
    const int result = readPlain(select(id, FG_SELECT_ACCESS), bits, port);
    return result < 0 ? result : bits;
}

size_t Grabber::limitWidth(int id, int port) const {
    // Reads do not tell a value's type, but they write no byte beyond its width: two reads over different
    // backgrounds show which bytes were written.
    ValueBuffer zeros{};
    ValueBuffer ones{};
    ones.fill(std::byte{0xFF});
    const unsigned maximum = select(id, FG_SELECT_MAXIMUM);
    if (readRaw(maximum, zeros, port, FG_PARAM_TYPE_AUTO) < 0 || readRaw(maximum, ones, port, FG_PARAM_TYPE_AUTO) < 0)
        return 0;
    const auto unwritten = std::mismatch(zeros.begin(), zeros.end(), ones.begin()).first;
    return static_cast<size_t>(unwritten - zeros.begin());
}

int Grabber::saveConfig(const std::filesystem::path& file) const {
    return functions().saveConfig(&mHandle, file.c_str());
}

int Grabber::loadConfig(const std::filesystem::path& file) { return functions().loadConfig(&mHandle, file.c_str()); }

int Grabber::describe(std::string& document, int port) const {
    size_t size = 0;
    const int result = functions().getParameterInfoXml(&mHandle, port, nullptr, &size);
    if (result < 0) return result;
    std::string text(size, '\0');
    const int copied = functions().getParameterInfoXml(&mHandle, port, text.data(), &size);
    if (copied < 0) return copied;
    document.assign(text, 0, strnlen(text.c_str(), text.size()));
    return copied;
}

int Grabber::lastError() const { return functions().getLastErrorNumber(&mHandle); }

int Grabber::appletId() const { return functions().getAppletId(&mHandle, nullptr); }

std::string Grabber::designName() const {
    fpga_design* design = mApplet.design();
    const char* name = design == nullptr ? nullptr : functions().getUserInfoByName(design, "DESIGN_NAME");
    return name == nullptr ? "" : name;
}

}  // namespace quillon::host
