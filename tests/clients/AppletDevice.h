#pragma once

#include <arv.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "fabrix/applet.h"

/// Releases objects of the client library.
struct ObjectRelease {
    void operator()(void* object) const { g_object_unref(object); }
};
template <class Object>
using ObjectOwner = std::unique_ptr<Object, ObjectRelease>;

/// What the registers of a description stand for: one port of one grabber. The low 30 bits of a register's address
/// are a parameter's identifier, the two above select its value, limits or access; 4 bytes are an integer, 8 a double.
/// Both functions are the applet's exported ones; the grabber is borrowed.
struct ParameterPort {
    Fg_Struct* grabber;
    int port;
    decltype(::Fg_getParameterWithType)* read;
    decltype(::Fg_setParameterWithType)* write;
    std::vector<std::string> writes{};  ///< "IDENTIFIER CODE" of each write that came through the client
};

/// \return a device of the client library whose memory is \p port, which must outlive it. A code of the applet other
///         than 0 becomes a transfer error with the code as its text, other lengths an invalid parameter.
ObjectOwner<ArvDevice> makeDevice(ParameterPort& port);
