#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "StandardApplets/grabber_basis/FabrixBoard.h"
#include "StandardApplets/grabber_basis/Fg_ImageControl.h"
#include "StandardApplets/grabber_basis/Fg_StdMaster.h"
#include "StandardApplets/grabber_basis/Fx3ParameterHeader.h"
#include "StandardApplets/grabber_basis/RSFx4/RSControl.h"
#include "fabrix/applet.h"
#include "tests/core/FakeBoard.h"

using testing::AllOf;
using testing::Each;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

/// Verbs over the exported functions on one grabber.
class GrabberVerbs {
public:
    int set(int id, int value, int port = 0, FgParamTypes type = FG_PARAM_TYPE_INT32_T) {
        return Fg_setParameterWithType(&mHandle, id, &value, port, type);
    }
    int set(int id, double value, int port = 0, FgParamTypes type = FG_PARAM_TYPE_DOUBLE) {
        return Fg_setParameterWithType(&mHandle, id, &value, port, type);
    }
    /// Writes without the check, as a configuration file does.
    template <class Value>
    int load(int id, Value value, unsigned port = 0) {
        return master().getHeader()->setParameterById(id, &value, port, false, FG_PARAM_TYPE_AUTO);
    }
    /// \return the value; a failed read fails the test
    template <class Value = int>
    Value get(int id, int port = 0) {
        Value value{};
        EXPECT_EQ(Fg_getParameterWithType(&mHandle, id, &value, port, FG_PARAM_TYPE_AUTO), 0) << id;
        return value;
    }
    template <class Value = int>
    Value minimum(int id, int port = 0) {
        return get<Value>(static_cast<int>(static_cast<unsigned>(id) | FG_SELECT_MINIMUM), port);
    }
    template <class Value = int>
    Value maximum(int id, int port = 0) {
        return get<Value>(static_cast<int>(static_cast<unsigned>(id) | FG_SELECT_MAXIMUM), port);
    }
    int access(int id, int port = 0) {
        return get(static_cast<int>(static_cast<unsigned>(id) | FG_SELECT_ACCESS), port);
    }
    /// \return the XML document of a port, asked for as a host does
    std::string xml(int port = 0) {
        size_t size = 0;
        EXPECT_EQ(Fg_getParameterInfoXML(&mHandle, port, nullptr, &size), 0);
        std::string text(size, '?');
        EXPECT_EQ(Fg_getParameterInfoXML(&mHandle, port, text.data(), &size), 0);
        EXPECT_EQ(size, text.size());
        if (!text.empty()) text.pop_back();  // the terminator
        return text;
    }
    int lastError() { return Fg_getLastErrorNumber(&mHandle); }
    Fx3Parameter& record(int id) { return *master().getHeader()->searchParameterById(id); }
    Fg_StdMaster& master() { return *static_cast<Fg_StdMaster*>(mHandle.Master); }
    Fg_Struct* handle() { return &mHandle; }

protected:
    Fg_Struct mHandle{};
};

/// A whole grabber, opened over a fake board by open(), freed with the test.
class GrabberTest : public testing::Test, public GrabberVerbs {
protected:
    /// Opens the grabber and forgets the events of the start-up.
    /// \return the code of Std_entry
    int open() {
        int err = -999;
        mHandle.Master = Std_entry(FakeBoard::device(), &err, 0);
        board.clearEvents();
        return err;
    }
    void free() {
        Fg_FreeGrabber(&mHandle);
        mHandle.Master = nullptr;
    }
    void TearDown() override { free(); }

    FakeBoard board;
};

/// A master over a fake board without any feature module, for tests that build their own modules.
class ModuleTest : public testing::Test, public GrabberVerbs {
protected:
    ModuleTest() {
        auto fabrixBoard = std::make_unique<Fg_FabrixBoard>(FakeBoard::design(), FakeBoard::device(), nullptr);
        mFabrixBoard = fabrixBoard.get();
        mHandle.Master = new Fg_StdMaster(std::move(fabrixBoard));
        master().Fg_configure(false);
        master().getController()->initRegisters();
        board.clearEvents();
    }
    ~ModuleTest() override { Fg_FreeGrabber(&mHandle); }

    /// Makes a module, hands it to the registry and publishes it on both ports.
    template <class Module, class... Arguments>
    Module& add(Arguments... arguments) {
        auto* module = new Module(&master(), arguments...);
        master().getHeader()->addModule(module, 0);
        for (unsigned port : {0u, 1u}) module->addStandardPS(port, true);
        return *module;
    }

    FakeBoard board;
    Fg_FabrixBoard* mFabrixBoard = nullptr;
};
