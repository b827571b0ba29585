#include "tests/clients/AppletDevice.h"

#include <bit>
#include <cstring>

static_assert(std::endian::native == std::endian::little, "the descriptions declare little-endian registers");

namespace {

struct AppletDevice {
    ArvDevice base;
    ParameterPort* port;
};

/// Calls \p access with the identifier of \p address, a buffer of its type and its type.
template <class Access>
gboolean transfer(guint64 address, guint32 size, GError** error, const Access& access) {
    const auto id = static_cast<int>(static_cast<uint32_t>(address));
    if (address > UINT32_MAX || (size != sizeof(int32_t) && size != sizeof(double))) {
        g_set_error(error, ARV_DEVICE_ERROR, ARV_DEVICE_ERROR_INVALID_PARAMETER, "%u bytes at %" G_GUINT64_FORMAT, size,
                    address);
        return FALSE;
    }
    const int code = access(id, size == sizeof(double) ? FG_PARAM_TYPE_DOUBLE : FG_PARAM_TYPE_INT32_T);
    if (code == 0) return TRUE;
    g_set_error(error, ARV_DEVICE_ERROR, ARV_DEVICE_ERROR_TRANSFER_ERROR, "%d", code);
    return FALSE;
}

ParameterPort& portOf(ArvDevice* device) { return *reinterpret_cast<AppletDevice*>(device)->port; }

gboolean readMemory(ArvDevice* device, guint64 address, guint32 size, void* buffer, GError** error) {
    const ParameterPort& port = portOf(device);
    return transfer(address, size, error, [&](int id, FgParamTypes type) {
        uint64_t value = 0;
        const int code = port.read(port.grabber, id, &value, port.port, type);
        std::memcpy(buffer, &value, size);
        return code;
    });
}

gboolean writeMemory(ArvDevice* device, guint64 address, guint32 size, void* buffer, GError** error) {
    ParameterPort& port = portOf(device);
    return transfer(address, size, error, [&](int id, FgParamTypes type) {
        uint64_t value = 0;
        std::memcpy(&value, buffer, size);
        const int code = port.write(port.grabber, id, &value, port.port, type);
        port.writes.push_back(std::to_string(id) + " " + std::to_string(code));
        return code;
    });
}

gboolean readRegister(ArvDevice* device, guint64 address, guint32* value, GError** error) {
    return readMemory(device, address, sizeof *value, value, error);
}

gboolean writeRegister(ArvDevice* device, guint64 address, guint32 value, GError** error) {
    return writeMemory(device, address, sizeof value, &value, error);
}

void initializeClass(gpointer type, gpointer) {
    auto* device = static_cast<ArvDeviceClass*>(type);
    device->read_memory = readMemory;
    device->write_memory = writeMemory;
    device->read_register = readRegister;
    device->write_register = writeRegister;
}

GType deviceType() {
    static const GType kType =
        g_type_register_static_simple(ARV_TYPE_DEVICE, "AppletDevice", sizeof(ArvDeviceClass), initializeClass,
                                      sizeof(AppletDevice), nullptr, static_cast<GTypeFlags>(0));
    return kType;
}

}  // namespace

ObjectOwner<ArvDevice> makeDevice(ParameterPort& port) {
    auto* device = static_cast<AppletDevice*>(g_object_new(deviceType(), nullptr));
    device->port = &port;
    return ObjectOwner<ArvDevice>(&device->base);
}
