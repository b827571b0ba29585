#pragma once

#include "StandardApplets/grabber_basis/Fg_LutFileParser.h"
#include "StandardApplets/grabber_basis/RSFx4/RSKneeLut.h"

/// Parameter side of the knee lookup table: base curves, what is applied to them, LUT files and the curves' lines in
/// configuration files. The camera port's parameters must exist before it: some of them change the codes.
class PSKneeLut : public RSKneeLut {
public:
    explicit PSKneeLut(Fg_StdMaster* FG_base);

    int getParamFromRs(int id, void* val, unsigned int port) override;
    /// Saves or loads the LUT file at once when that is written: FG_FILE_REJECTED without the file to load,
    /// FG_FILE_NOT_ACCESSIBLE for a name without ".lut" and for a file that cannot be opened or written.
    int setParamToRs(int id, const void* val, unsigned int port) override;
    /// \return FG_VALUE_OUT_OF_RANGE for a curve that has not 1025 points; FG_INVALID_ARGUMENT for another parameter
    int checkParam(int id, const void* val, unsigned int port) override;
    /// Writes one line for each curve of the port.
    int saveParmeter(int port, int id, const char* key, std::FILE* file) override;
    /// Reads the curves of the port. A curve without a line stays, and so do points that a line lacks.
    int loadParameter(int port, int id, char* key, std::FILE* file) override;
    void setRegisterInfoTree(unsigned int port) override;
    void setDescriptions() override;
    void setFlags(unsigned int port) override;
    void setLimits(unsigned int port, bool updateDefault) override;
    const char* getDocModuleURL(int id) override;

private:
    int readCurve(void* val, unsigned int port) const;
    int saveLutFile(unsigned int port);
    int loadLutFile(unsigned int port);
    int loadCurve(unsigned int port, unsigned int table, const char* key, std::FILE* file);

    Fg_LutFileParser lutParser;
};
