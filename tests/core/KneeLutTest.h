#pragma once

#include <array>
#include <string>
#include <vector>

#include "StandardApplets/grabber_basis/PSFx4/PSKneeLut.h"
#include "StandardApplets/grabber_basis/PSFx4/ParameterTable.h"
#include "StandardApplets/grabber_basis/ValueBorder.h"
#include "tests/TemporaryFolder.h"
#include "tests/core/GrabberTest.h"

/// Stands for the camera port: pixel depth and output format of both ports.
class FormatSource : public RSMaster {
public:
    explicit FormatSource(Fg_StdMaster* master) : RSMaster(master) { createParameters(*this, kRows); }
    int getParamFromRs(int id, void* val, unsigned) override {
        putValue(val, id == FG_FORMAT ? format : depth);
        return 0;
    }
    int setParamToRs(int id, const void* val, unsigned) override {
        (id == FG_FORMAT ? format : depth) = takeValue<int>(val);
        return 0;
    }
    void setRegisterInfoTree(unsigned) override {}
    void setDescriptions() override {}
    void setFlags(unsigned) override {}
    void setLimits(unsigned port, bool) override {
        for (const ParameterRow& row : kRows) header->setLimits(row.id, static_cast<int>(port), 0, 100, 1, 0, false);
    }
    const char* getDocModuleURL(int) override { return nullptr; }

    int depth = 8;
    int format = 3;

private:
    static constexpr std::array kRows{
        ParameterRow{FG_FORMAT,             TYPE_INT, "FG_FORMAT",             "", nullptr, nullptr},
        ParameterRow{FG_PIXELDEPTH,         TYPE_INT, "FG_PIXELDEPTH",         "", nullptr, nullptr},
        ParameterRow{FG_CAMERA_LINK_CAMTYP, TYPE_INT, "FG_CAMERA_LINK_CAMTYP", "", nullptr, nullptr},
        ParameterRow{FG_BITALIGNMENT,       TYPE_INT, "FG_BITALIGNMENT",       "", nullptr, nullptr},
    };
};

/// Verbs over one knee lookup table module beside a camera port of its own.
class KneeLutTest : public ModuleTest {
protected:
    KneeLutTest() : formats(add<FormatSource>()) { makeModule(); }

    void makeModule() {
        knee = &add<PSKneeLut>();
        board.clearEvents();
    }
    void setColor(int port) { master().setIsCameraColor(1, port); }
    int setText(int id, const std::string& text, int port = 0) {
        std::string copy = text;
        return Fg_setParameterWithType(handle(), id, copy.data(), port, FG_PARAM_TYPE_CHAR_PTR);
    }
    std::string text(int id, int port = 0) {
        std::array<char, 1024> answer{};
        EXPECT_EQ(Fg_getParameterWithType(handle(), id, answer.data(), port, FG_PARAM_TYPE_CHAR_PTR), 0);
        return answer.data();
    }
    int setCurve(std::vector<double> values, unsigned table = 0, int port = 0) {
        KneeLookupTable_s record{};
        record.value = values.data();
        record.id = table;
        record.nrOfElements = static_cast<uint32_t>(values.size());
        record.format = 5;
        record.number = 6;
        return Fg_setParameterWithType(handle(), FG_KNEE_LUT, &record, port, FG_PARAM_TYPE_COMPLEX_DATATYPE);
    }
    std::vector<double> curve(unsigned table = 0, unsigned port = 0) {
        const KneeLookupTable_s& record = *knee->getLut(port, table);
        return {record.value, record.value + record.nrOfElements};
    }
    std::vector<double> level(double value) { return std::vector<double>(1025, value); }
    /// \return the first \p count register writes of a segment
    std::vector<std::string> segment(size_t number, size_t writesEach) {
        const std::vector<std::string> all = board.writes();
        const auto first = all.begin() + static_cast<std::ptrdiff_t>(number * writesEach);
        return {first, first + static_cast<std::ptrdiff_t>(writesEach)};
    }
    /// Lets the module read its lines of a configuration file.
    int loadLines(const std::string& content, int port = 0) {
        const UniqueFile file(std::fopen(files.write("a.mcf", content).c_str(), "r"));
        std::string key = "FG_KNEE_LUT";
        return knee->loadParameter(port, FG_KNEE_LUT, key.data(), file.get());
    }

    FormatSource& formats;
    PSKneeLut* knee = nullptr;
    TemporaryFolder files;
};
