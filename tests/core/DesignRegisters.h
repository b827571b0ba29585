#pragma once

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

struct DesignRegister {
    std::string name;
    int width = 0;
    int direction = 1;  ///< 1 = may be written, 2 = read only
};

/// \return the registers of the applet's design, in the order of their handles
inline const std::vector<DesignRegister>& designRegisters() {
    static const std::vector<DesignRegister> registers = [] {
        std::ifstream file(QUILLON_SOURCE "/StandardApplets/Quillon/data/quillon.design");
        std::vector<DesignRegister> found;
        for (std::string line; std::getline(file, line);) {
            std::istringstream words(line);
            std::string keyword;
            std::string direction;
            DesignRegister row;
            words >> keyword >> row.name >> row.width >> direction;
            row.direction = direction == "read" ? 2 : 1;
            if (keyword == "register") found.push_back(row);
        }
        return found;
    }();
    return registers;
}
