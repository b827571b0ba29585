#pragma once

#include <array>
#include <string>

#include "StandardApplets/grabber_basis/Ports.h"
#include "StandardApplets/grabber_basis/RSFx4/KneeCurve.h"
#include "StandardApplets/grabber_basis/RSFx4/KneeTable.h"
#include "StandardApplets/grabber_basis/RSFx4/RSMaster.h"

/// Register side of the knee lookup table: the base curves of a port, what is applied to them, and the quantised
/// tables as they were loaded into the FPGA. Table 0 is gray or red, 1 green, 2 blue; a monochrome camera uses
/// table 0 only. Every update calculates and loads all tables of the port anew.
class RSKneeLut : public RSMaster {
public:
    static constexpr unsigned kTables = 3;

    explicit RSKneeLut(Fg_StdMaster* Fg_Base);

    /// Also brings settings, curves and quantised tables to their initial state.
    void makeRegistersNull() override;
    /// Looks the block's registers up.
    void initRegisters();
    /// Calculates and loads the tables of a port; \p parameter may be any of the block.
    /// \return FG_INVALID_ARGUMENT for another parameter, else the first code with which a register refused a write;
    ///         the other segments are loaded all the same
    int updateParameter(unsigned int port, int parameter) override;
    int updateAllParameters(unsigned int port) override;

    /// Replaces a base curve, which \p table names, by a copy. Loads nothing.
    /// \return FG_INVALID_ARGUMENT for an unknown table or one without values, FG_OUT_OF_RESOURCES
    int setLut(unsigned int port, const KneeLookupTable_s& table);
    /// \return a base curve, valid until it is replaced; null for an unknown table or port
    [[nodiscard]] const KneeLookupTable_s* getLut(unsigned int port, unsigned int table) const;
    /// The name of the LUT file, cut to 511 characters.
    void setLutDataFileName(unsigned int port, const char* name);
    [[nodiscard]] const char* getLutDataFileName(unsigned int port) const;
    void setScalingFactorRed(unsigned int port, double value);
    void setScalingFactorGreen(unsigned int port, double value);
    void setScalingFactorBlue(unsigned int port, double value);

protected:
    template <class Value>
    using PortValues = std::array<Value, kPorts>;

    /// \return the tables that the port's camera uses
    [[nodiscard]] unsigned tablesOf(unsigned int port) const;
    [[nodiscard]] bool isColor(unsigned int port) const;
    /// \return the cached values of a setting of type double; null for another parameter
    [[nodiscard]] PortValues<double>* settingOf(int id);

    std::array<PortValues<KneeTable>, kTables> m_tables;
    PortValues<KneeCodes> mOffsetLongR;
    PortValues<KneeCodes> mOffsetLongG;
    PortValues<KneeCodes> mOffsetLongB;
    PortValues<std::string> mDataFileName;
    PortValues<double> mOffset;
    PortValues<double> mScaling;
    PortValues<double> mGamma;
    PortValues<int> mInvert;
    PortValues<double> scalingFactorRed;
    PortValues<double> scalingFactorGreen;
    PortValues<double> scalingFactorBlue;

private:
    /// What belongs to one table.
    struct Component {
        PortValues<KneeCodes> RSKneeLut::*codes;
        PortValues<double> RSKneeLut::*gain;
        int strobe;  ///< bit of the write register that takes a segment into this table
    };
    static const std::array<Component, kTables> kComponents;
    struct Setting {
        int id;
        PortValues<double> RSKneeLut::*cache;
        double initial;
    };
    static const std::array<Setting, 6> kSettings;

    void calcLut(unsigned int port, unsigned int table);
    int writeLutData(unsigned int port);
    [[nodiscard]] int readOr(int id, unsigned int port, int otherwise) const;

    BlockRegister mWriteReg_WrKneeLutAddress;
    BlockRegister mWriteReg_WrKneeLutStart;
    BlockRegister mWriteReg_WrKneeLutEnd;
    BlockRegister mWriteReg_WrKneeLutWrite;
};
