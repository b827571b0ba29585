#pragma once

#include <map>
#include <memory>
#include <vector>

#include "StandardApplets/grabber_basis/Fx3Parameter.h"
#include "StandardApplets/grabber_basis/ParameterIndex.h"
#include "StandardApplets/grabber_basis/parameterInfo.h"

class Fg_Error;
class Fg_Log;
class Fg_StdMaster;

/// Special-module code with which a module becomes the shading module.
constexpr int kShadingModule = 2;

/// The parameter registry of one grabber: holds the modules, the parameter records and the information tree, and is
/// the only road by which a parameter is read or written.
///
/// Created and destroyed by the master, after whose deleteAllModules() it may go. Owns modules, records and tree.
/// Runs on the thread of the call that reached the master; takes no lock. Identifiers are masked with
/// FG_PARAMETER_ID_MASK; an unknown one gives FG_INVALID_ARGUMENT, and a port other than 0 and 1 FG_INVALID_PORT.
class Fx3ParameterHeader {
public:
    Fx3ParameterHeader();
    Fx3ParameterHeader(const Fx3ParameterHeader&) = delete;
    Fx3ParameterHeader& operator=(const Fx3ParameterHeader&) = delete;
    ~Fx3ParameterHeader();

    /// \name Modules, in the order in which they were added
    /// @{
    /// \param module taken over \param specialModule kShadingModule, or 0
    /// \return the module's number
    int addModule(RSMaster* module, int specialModule);
    /// \return the module with this number, or null
    [[nodiscard]] RSMaster* getModule(int index) const;
    [[nodiscard]] RSMaster* getShadingModule() const;
    int deleteAllModules();
    /// Lets every module rewrite all its registers.
    /// \return the sum of their results: 0 when all succeed
    int updateAllParametersPS(unsigned int port);
    /// \return the first non-zero register-init status of the modules, or 0
    [[nodiscard]] int getRegisterInitSuccess() const;
    /// Does nothing: the full updates that follow at start-up write every register.
    void initAllRegisterWithCacheValue();
    /// @}

    /// \name Records, in ascending order of identifiers
    /// A record is null, a name null and an identifier 0 where there is none. Names are compared exactly.
    /// @{
    void addSearchEntry(int id, Fx3Parameter* entry);
    [[nodiscard]] Fx3Parameter* searchParameterById(int id) const;
    [[nodiscard]] Fx3Parameter* searchParameterByName(const char* name) const;
    [[nodiscard]] Fx3Parameter* searchParameterByDefName(const char* defName) const;
    [[nodiscard]] int getParameterIdByName(const char* name) const;
    [[nodiscard]] int getParamCount() const;
    [[nodiscard]] Fx3Parameter* getParameterAt(int index) const;
    [[nodiscard]] const char* getParameterName(int index) const;
    [[nodiscard]] int getParameterId(int index) const;
    /// \return path of the documentation page of a parameter, relative to the documentation root
    [[nodiscard]] const char* getDocUrlByDefName(const char* defName) const;
    /// @}

    /// \name Values
    /// @{
    /// Writes a parameter: checks it when asked to, hands it to its module, lets the module write its registers and
    /// refreshes what depends on it. When the write changes the active port of a one-path design, every module
    /// rewrites its registers for the new port instead.
    /// \param check whether access, type and limits are tested
    /// \return the first failure; else the result of the last dependency
    int setParameterById(int id, const void* Value, unsigned int port, bool check, FgParamTypes type);
    /// Reads what the selector in the top bits of \p id asks for: value, maximum, access bits or minimum.
    /// \param type not consulted
    int getParameterById(int id, void* Value, int port, FgParamTypes type) const;
    int getParameterById(int id, int* value, int port) const;
    int getParameterById(int id, unsigned int* value, int port) const;
    int getParameterById(int id, double* value, int port) const;
    /// Tests a value without writing it.
    int checkParameterById(int id, const void* Value, unsigned int port, FgParamTypes type) const;
    /// Writes the smallest value allowed; FG_NOT_SUPPORTED, and nothing written, for a type without numeric limits.
    int getLimitMin(Fx3Parameter* itemTmp, void* value, int port) const;
    /// Writes the largest value allowed.
    int getLimitMax(Fx3Parameter* itemTmp, void* value, int port) const;
    /// @}

    /// \name Descriptions, set by the modules
    /// The five forms of setLimits are for records of their type (FG_TYPE_NOT_SUPPORTED for any other). With
    /// \p setDefault the default is written through the module, whose result is not looked at. Existing tree nodes
    /// follow in place.
    /// @{
    int setDescr(int id, const char* description);
    int setFlags(int id, int port, int accessFlag, int rangeFlag, int visiFlag, int writeToConfig);
    int setLimits(int id, int port, int from, int to, int step, int defaultValue, bool setDefault);
    int setLimits(int id, int port, double from, double to, double step, double defaultValue, bool setDefault);
    int setLimits(int id, int port, const EnumField* eField, int NbElements, int defaultValue, bool setDefault);
    int setLimits(int id, int port, const char* defaultString, const char* extension, bool setDefault);
    int setLimits(int id, int port, void* defaultValue, bool setDefault);
    /// \return the new group, or null once the port's tree is complete
    RegisterInfo* addGroupInfo(int port, RegisterInfo* parent, const char* name);
    /// Places a parameter into a group; a direct-register parameter brings all of them.
    int setGroup(int id, int port, RegisterInfo* group);
    [[nodiscard]] RegisterInfo* searchRegisterInfoById(RegisterInfo* group, int id, int port) const;
    /// Redoes the descriptions of all modules on one port, or on both for \p onPort -1.
    void updateAllDescriptions(bool updateDefault, int onPort);
    void updateAllDescriptionsOnPort(bool updateDefault, int port);
    void finalizeDescriptionsOnPort(int port);
    /// \return the root of the port's information tree; null for a port that does not exist
    [[nodiscard]] RegisterInfo* getRegisterInfo(int port) const;
    /// Sets the access bits that override every parameter's own, 0 for none; they take effect when descriptions are
    /// redone next.
    void changeAllowAllAccess(int access);
    [[nodiscard]] int getAllowAllAccess() const;
    /// Sets the number of direct-register parameters.
    void setDirectRegisters(int count);
    /// @}

    /// \name Dependencies
    /// @{
    /// A change of \p id refreshes \p id2Update; see DepStruct.
    /// \return 0
    int addUpdateDependency(int mode, int id, int id2Update, bool updateAllModule);
    /// Refreshes what depends on \p id, one level deep; a failure does not stop the walk.
    /// \return the result of the last dependency that ran, or 0
    int updateDependency(int id, int port);
    /// @}

    /// \name Configuration files
    /// Hold the parameters whose records say so, per port. Both set the process locale to "English", if there is one.
    /// @{
    /// \return 0, or FG_FILE_NOT_ACCESSIBLE for a name without ".mcf" and for a file that cannot be created (nothing
    ///         is written) or written (a partial file stays)
    int saveAllParameters(const char* Filename, Fg_StdMaster* Fg_parent, Fg_Log* log) const;
    /// Applies every value that the file has, without a check; the failures of single values are not reported.
    /// \return 0, or FG_FILE_REJECTED, with nothing applied: wrong name, no such file, or one of another applet
    int loadAllParameters(const char* Filename, Fg_StdMaster* Fg_parent, Fg_Log* log, Fg_Error* err);
    /// @}

private:
    struct SearchEntry {
        int id;
        std::unique_ptr<Fx3Parameter> record;
    };
    using SearchTable = std::vector<SearchEntry>;  // sorted by identifier

    [[nodiscard]] RegisterInfo* nodeOf(const Fx3Parameter& record, int port) const;
    int afterWrite(Fx3Parameter& record, unsigned int port, int formerActivePort);
    int runDependencies(const Fx3Parameter& record, int port);
    int runDependency(const DepStruct& dependency, RSMaster& module, int port);
    [[nodiscard]] SearchTable::const_iterator placeOf(int id) const;
    void addLeaf(Fx3Parameter& record, int port, RegisterInfo* group);
    void addDirectRegisterLeaves(int port, RegisterInfo* group);

    RSMaster* m_shadingModule = nullptr;
    int nbModules = 0;
    int nbHapReg = 0;
    int allowAllAccess = 0;
    bool descriptionsInvalidated = false;
    SearchTable paramSearchTable;
    ParameterIndex mIndex;
    std::map<int, std::unique_ptr<RSMaster>> appletModules;
    std::unique_ptr<Fg_ParameterInfo> paramInfo;
};
