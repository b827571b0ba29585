#pragma once

#include "StandardApplets/grabber_basis/Ports.h"
#include "StandardApplets/grabber_basis/RSFx4/RSMaster.h"

/// Register side of the test-image generator, which can take the camera's place. There is one generator, on port A;
/// the port of an operation decides the pixels of a clock alone.
class RSGenerator : public RSMaster {
public:
    explicit RSGenerator(Fg_StdMaster* Fg_Base);

    /// Back to a generator without registers, at 40 MHz in patterns of 25 clock cycles.
    void makeRegistersNull() override;
    /// Looks the block's registers up and learns how much the pattern registers can hold.
    void initRegisters();
    /// \return the largest number of active clock cycles that the register can hold; 0 without the register
    [[nodiscard]] unsigned int maxActive() const;
    /// \return the same for the passive cycles
    [[nodiscard]] unsigned int maxPassive() const;
    /// Writes the registers behind a parameter, the second of two only after the first was written.
    /// \return FG_INVALID_ARGUMENT for an identifier without register, else the result of the last write
    int updateParameter(unsigned int port, int parameter) override;
    /// Writes every register, also after one has failed.
    /// \return 0 or FG_ERROR
    int updateAllParameters(unsigned int port) override;

protected:
    /// Handles and capacities of a generator.
    struct PortData {
        int wReg_GenActive = 0;
        int wReg_GenPassive = 0;
        int wReg_GenWidth = 0;
        int wReg_GenLineWidth = 0;
        int wReg_GenHeight = 0;
        int wReg_GenMask = 0;
        int wReg_GenRoll = 0;
        int wReg_GenEnable = 0;
        int wReg_GenStart = 0;
        unsigned maxActive = 0;
        unsigned maxPassive = 0;
    };
    /// What a register counts in.
    enum class Unit {
        kValue,       ///< the cached value itself
        kHalfClocks,  ///< the pixels of half a clock
        kOneLess,     ///< the cached count minus one
    };
    struct Register {
        int PortData::*handle;
        unsigned RSGenerator::*cache;
        Unit unit;
        const char* name;
        unsigned PortData::*capacity;  ///< where the largest value is kept; null where it does not matter
    };
    /// The registers behind a parameter, in the order of writing.
    struct Update {
        int id;
        const Register* first;
        const Register* second;  ///< null when there is one only
    };

    int writeRegister(unsigned port, const Register& reg);

    std::array<PortData, 1> m_portdata;
    unsigned mGenActive{};   ///< clock cycles of a pattern that produce a pixel
    unsigned mGenPassive{};  ///< clock cycles of a pattern that do not
    unsigned mGenWidth{};
    unsigned mGenLineWidth{};  ///< width and gap
    unsigned mGenHeight{};
    unsigned mGenMask{};  ///< bit 0 enables tap 1, bit 3 tap 4
    unsigned mGenRoll{};
    unsigned mGenEnable{};
    unsigned mGenStart{};
    unsigned mGenLineGap{};
    double mGenFreq{};        ///< pixel frequency in MHz as it was requested last
    uint16_t mGenAccuracy{};  ///< clock cycles of a pattern

private:
    static const std::array<Register, 9> kRegisters;
    static const std::array<Update, 12> kUpdates;
};
