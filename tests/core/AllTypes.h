#pragma once

#include <array>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "StandardApplets/grabber_basis/Fx3ParameterHeader.h"
#include "StandardApplets/grabber_basis/PSFx4/ParameterTable.h"
#include "StandardApplets/grabber_basis/RSFx4/RSMaster.h"
#include "StandardApplets/grabber_basis/ValueBorder.h"

inline constexpr int kInteger = 1001;
inline constexpr int kDouble = 1002;
inline constexpr int kText = 1003;
inline constexpr int kEntry = 1004;
inline constexpr int kOther = 1005;
inline constexpr int kUnsaved = 1006;
inline constexpr int kUnreadable = 1007;
inline constexpr int kLongerName = 1008;

/// One parameter of each type, with the lines of its own that a structure has.
class AllTypes : public RSMaster {
public:
    explicit AllTypes(Fg_StdMaster* master) : RSMaster(master) { createParameters(*this, kRows); }
    int getParamFromRs(int id, void* val, unsigned port) override {
        if (id == kUnreadable) return -1;
        if (id == kDouble) putValue(val, doubles[port]);
        if (id == kText) putText(val, texts[port]);
        if (id != kDouble && id != kText) putValue(val, integers[port][id]);
        return 0;
    }
    int setParamToRs(int id, const void* val, unsigned port) override {
        if (id == kDouble) doubles[port] = takeValue<double>(val);
        if (id == kText) texts[port] = takeName(val);
        if (id != kDouble && id != kText) integers[port][id] = takeValue<int>(val);
        return 0;
    }
    int updateAllParameters(unsigned port) override {
        updatedPorts.push_back(static_cast<int>(port));
        return 0;
    }
    int saveParmeter(int port, int, const char* key, std::FILE* file) override {
        std::fprintf(file, "%s of port %d\n", key, port);
        return 0;
    }
    int loadParameter(int port, int, char* key, std::FILE*) override {
        loadedKeys.push_back(std::string(key) + " " + std::to_string(port));
        return 0;
    }
    void setRegisterInfoTree(unsigned) override {}
    void setDescriptions() override {}
    void setLimits(unsigned port, bool) override {
        header->setLimits(kInteger, static_cast<int>(port), 0, 100, 10, 0, false);
    }
    void setFlags(unsigned port) override {
        for (const ParameterRow& row : kRows) {
            header->setFlags(row.id, static_cast<int>(port), kReadOnly, 1, 1, row.id == kUnsaved ? 0 : 1);
        }
    }
    const char* getDocModuleURL(int) override { return nullptr; }

    std::array<std::map<int, int>, 2> integers;
    std::array<double, 2> doubles{};
    std::array<std::string, 2> texts;
    std::vector<std::string> loadedKeys;
    std::vector<int> updatedPorts;

private:
    static constexpr std::array kRows{
        ParameterRow{kLongerName, TYPE_INT,    "FG_INTEGERX",   "", nullptr, nullptr},
        ParameterRow{kInteger,    TYPE_INT,    "FG_INTEGER",    "", nullptr, nullptr},
        ParameterRow{kDouble,     TYPE_DOUBLE, "FG_DOUBLE",     "", nullptr, nullptr},
        ParameterRow{kText,       TYPE_STRING, "FG_TEXT",       "", nullptr, nullptr},
        ParameterRow{kEntry,      TYPE_ENUM,   "FG_ENTRY",      "", nullptr, nullptr},
        ParameterRow{kOther,      TYPE_OTHER,  "FG_OTHER",      "", nullptr, nullptr},
        ParameterRow{kUnsaved,    TYPE_INT,    "FG_UNSAVED",    "", nullptr, nullptr},
        ParameterRow{kUnreadable, TYPE_INT,    "FG_UNREADABLE", "", nullptr, nullptr},
    };
};
