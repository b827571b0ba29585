#pragma once

#include "StandardApplets/grabber_basis/RSFx4/RSGenerator.h"

/// Parameter side of the test-image generator: size, taps and pixel frequency. The generator runs at 125 MHz and
/// makes a pixel in some cycles of a pattern; the length of the pattern is the accuracy.
class PSGenerator : public RSGenerator {
public:
    explicit PSGenerator(Fg_StdMaster* FG_base);

    /// FG_GEN_FREQ reads as the frequency that the pattern gives.
    int getParamFromRs(int id, void* val, unsigned int port) override;
    /// Limits and flags follow every value.
    /// \return FG_GENERATOR_NOT_REALISABLE, nothing changed, for a frequency or accuracy without a pattern
    int setParamToRs(int id, const void* val, unsigned int port) override;
    void setRegisterInfoTree(unsigned int port) override;
    void setDescriptions() override;
    void setFlags(unsigned int port) override;
    void setLimits(unsigned int port, bool updateDefault) override;
    const char* getDocModuleURL(int id) override;

    /// Chooses the pattern that comes nearest to a frequency and keeps the requested frequency for later patterns.
    /// \param freq in MHz \param accuracy clock cycles of the pattern
    /// \return false, and nothing changed, when no cycle would be active, more than the pattern has, or more than
    ///         the registers can hold
    bool calcRegisterSettings(double freq, unsigned short accuracy);

private:
    /// A parameter that is a cached value.
    struct Plain {
        int id;
        unsigned RSGenerator::*cache;
        bool isWritable;
    };
    static const std::array<Plain, 9> kPlain;

    int store(int id, const void* val);
};
