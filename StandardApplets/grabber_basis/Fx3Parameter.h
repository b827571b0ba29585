#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "StandardApplets/grabber_basis/Ports.h"
#include "fabrix/parameter_info.h"
#include "fabrix/types.h"

class Fx3ParameterHeader;
class RSMaster;

/// Type of a parameter's values.
enum FX3ParamType : int {
    TYPE_INT = 0,     ///< signed 32-bit integers
    TYPE_DOUBLE = 1,  ///< doubles
    TYPE_STRING = 2,  ///< texts
    TYPE_ENUM = 3,    ///< signed 32-bit integers out of a list of named entries
    TYPE_OTHER = 4,   ///< a structure that the owning module defines
    TYPE_DIRECT = 5   ///< the raw 32-bit content of one register
};

/// Access bits of a parameter on a port.
constexpr int kReadable = 1;
constexpr int kWritable = 2;
constexpr int kWritableWhileAcquiring = 4;

template <class Value>
using PerPort = std::array<Value, kPorts>;

struct Fx3INTData {
    PerPort<int> from{}, to{}, step{}, defaultValue{};  ///< step 0 allows every value
};

struct Fx3DOUBLEData {
    PerPort<double> from{}, to{}, step{}, defaultValue{};  ///< the step is for display only
};

struct Fx3STRINGData {
    PerPort<std::string> defaultString;
    PerPort<std::optional<std::string>> extension;  ///< file name pattern of a text that names a file
};

/// The entries of an enumeration: three parallel lists of NbEnum entries a port.
struct Fx3ENUMData {
    PerPort<int> NbEnum{}, defaultValue{};
    PerPort<std::vector<int>> valueIdTable;
    PerPort<std::vector<std::string>> valueNameTable;
    PerPort<std::vector<std::optional<std::string>>> valueDefNameTable;
};

/// Marks a parameter whose values and checks belong to its module.
struct Fx3OTHERData {};

struct Fx3DIRECTData {
    int direction = 1;              ///< 1 = may be written
    int bitRange = 0;               ///< width of the register in bits
    int index = 0;                  ///< not used
    const char* regName = nullptr;  ///< borrowed from the board access layer
    uint32_t regValue = 0;          ///< last value written through the parameter
    int regPtr = 0;                 ///< register handle, 0 = no register
};

/// One dependency: what is refreshed after another parameter has changed.
struct DepStruct {
    int mode;       ///< 0 = the value in hardware, 1 = descriptions and limits
    int id;         ///< the dependent parameter
    int updateAll;  ///< 0 = only that parameter, 1 = its whole module
    bool operator==(const DepStruct&) const = default;
};

/// Names, groups and dependencies of a parameter.
struct Fx3ParamInterface {
    PerPort<RegisterInfo*> group{};   ///< group node of the information tree, borrowed; null until it is placed
    std::string parameterName;        ///< display name
    std::string defineName;           ///< FG_ name
    std::optional<std::string> unit;  ///< unit label
    int id = 0;
    void *setParameter = nullptr, *checkParameter = nullptr, *getParameter = nullptr;  ///< not used by this applet
    bool updateAll = false;      ///< whether a write refreshes every module instead of the owning one
    std::string docDescription;  ///< description text
    std::vector<DepStruct> paramUpdateDep;
};

struct Fx3Access {
    PerPort<int> accessFlag{kReadable | kWritable, kReadable | kWritable};
    PerPort<int> rangeFlag{};          ///< attribute for the information tree
    PerPort<int> visibilityFlag{};     ///< attribute for the information tree
    PerPort<int> writeToConfigFile{};  ///< 1 = the value belongs into configuration files
};

/// Type of a parameter and the one record that belongs to it.
struct Fx3Data {
    FX3ParamType type = TYPE_INT;
    std::unique_ptr<Fx3INTData> intData;
    std::unique_ptr<Fx3DOUBLEData> doubleData;
    std::unique_ptr<Fx3STRINGData> stringData;
    std::unique_ptr<Fx3ENUMData> enumData;
    std::unique_ptr<Fx3OTHERData> otherData;
    std::unique_ptr<Fx3DIRECTData> directData;
};

/// Describes one published parameter: names, type, limits, access and dependencies per port. Not its value, which
/// the owning module keeps.
///
/// The constructor enters the record into the registry, which then owns it, unless the registry knows the
/// identifier already: such a record stays with its creator. Called on the grabber's thread only.
class Fx3Parameter {
public:
    /// \param parent owning module, borrowed
    /// \param name display name \param defName FG_ name \param unit unit label or null
    Fx3Parameter(RSMaster* parent, FX3ParamType type, const char* name, const char* defName, int id, const char* unit,
                 bool updateAll);
    Fx3Parameter(const Fx3Parameter&) = delete;
    Fx3Parameter& operator=(const Fx3Parameter&) = delete;
    virtual ~Fx3Parameter();

    /// Hands a value to the owning module, unchecked.
    /// \return the module's result
    virtual int setToRegister(unsigned int port, const void* value);

    /// Replaces the description.
    /// \return 0
    int setDescr(const char* text);

    /// Tests a value before it is written; changes nothing.
    /// \return 0, or the first that applies: FG_INVALID_PORT, FG_NOT_WRITABLE, FG_ACQUISITION_RUNNING,
    ///         FG_INVALID_ARGUMENT for null, FG_TYPE_NOT_SUPPORTED for a record without a known type,
    ///         FG_INVALID_ARGUMENT for a tag that does not fit, FG_VALUE_OUT_OF_RANGE, FG_NOT_A_STEP;
    ///         for TYPE_OTHER the module's answer
    [[nodiscard]] int checkParameter(const void* value, unsigned int port, FgParamTypes type) const;

    /// \return whether the type is one of the six
    [[nodiscard]] bool hasKnownType() const { return data.type >= TYPE_INT && data.type <= TYPE_DIRECT; }

    Fx3ParameterHeader* head;  ///< the registry, borrowed
    Fx3ParamInterface description;
    Fx3Access access;
    Fx3Data data;
    RSMaster* mParent;  ///< owning module, borrowed

private:
    [[nodiscard]] int checkByType(const void* value, unsigned int port, FgParamTypes type) const;
    [[nodiscard]] int checkInteger(int value, unsigned int port) const;
    [[nodiscard]] int checkDouble(double value, unsigned int port) const;
    [[nodiscard]] int checkEntry(int value, unsigned int port) const;
};

/// A parameter that stands for one raw register of the design. Its value is never saved.
class Fx3ParameterDirectReg : public Fx3Parameter {
public:
    Fx3ParameterDirectReg(RSMaster* parent, const char* name, const char* defName, int id, int regPtr, int direction,
                          int bitRange);
    ~Fx3ParameterDirectReg() override;

    /// \return FG_TYPE_NOT_SUPPORTED without a register, FG_NOT_WRITABLE for a read-only one, else the module's result
    int setToRegister(unsigned int port, const void* value) override;
};
