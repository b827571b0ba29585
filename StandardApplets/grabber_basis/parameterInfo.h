#pragma once

#include <array>
#include <memory>
#include <span>
#include <vector>

#include "fabrix/parameter_info.h"

/// One entry of an enumeration.
struct EnumField_ {
    const char* name;     ///< display name
    unsigned int value;   ///< value of the entry
    const char* defName;  ///< symbolic name; may be null
};
using EnumField = EnumField_;

/// Releases a node with the texts and arrays that it owns.
struct RegisterInfoDeleter {
    void operator()(RegisterInfo* node) const;
};

/// Attributes that every leaf of the tree has. All texts are copied.
struct LeafAttributes {
    const char* name;       ///< display name
    const char* paramName;  ///< FG_ name
    int accessFlags;
    int rangeFlags;
    int visibilityFlags;
    const char* unit;  ///< unit label or null
    int id;
    int port;
};

/// Builds and owns the parameter information tree of each port, which hosts walk themselves.
///
/// Owned by the registry; called on the grabber's thread. A port is open until finalize(): then nodes may change in
/// place, but none is added. Adders return null for a finalized port, a port that does not exist, and a parent
/// that is null (leaves) or no group.
class Fg_ParameterInfo {
public:
    Fg_ParameterInfo();
    Fg_ParameterInfo(const Fg_ParameterInfo&) = delete;
    Fg_ParameterInfo& operator=(const Fg_ParameterInfo&) = delete;
    ~Fg_ParameterInfo();

    /// Empties a port and opens it.
    void init(int port);
    /// Releases every node of a port; the root is not changed.
    void destroy(int port);
    /// Closes a port: its tree is complete.
    void finalize(int port);
    /// \return the first top-level group, the one created last; null for an empty port
    [[nodiscard]] RegisterInfo* getRegisterInfo(int Port);
    /// \return the first top-level group for a null \p reg, else the one after it
    [[nodiscard]] RegisterInfo* getNextRegisterInfo(RegisterInfo* reg, int Port);

    /// Adds a group, at the head of the top level when \p parent is null.
    RegisterInfo* addGroupInfo(int port, RegisterInfo* parent, const char* name);

    /// \name Leaves
    /// \p size is the number of elements of a field, whose steps are not kept.
    /// @{
    RegisterInfo* addInfoInt(RegisterInfo* parent, const LeafAttributes& leaf, int from, int to, int steps);
    RegisterInfo* addInfoUInt(RegisterInfo* parent, const LeafAttributes& leaf, uint32_t from, uint32_t to,
                              uint32_t steps);
    RegisterInfo* addInfoInt64(RegisterInfo* parent, const LeafAttributes& leaf, int64_t from, int64_t to,
                               int64_t steps);
    RegisterInfo* addInfoUInt64(RegisterInfo* parent, const LeafAttributes& leaf, uint64_t from, uint64_t to,
                                uint64_t steps);
    RegisterInfo* addInfoDouble(RegisterInfo* parent, const LeafAttributes& leaf, double from, double to, double steps);
    RegisterInfo* addInfoIntField(RegisterInfo* parent, const LeafAttributes& leaf, int size, int from, int to,
                                  int steps);
    RegisterInfo* addInfoUIntField(RegisterInfo* parent, const LeafAttributes& leaf, int size, uint32_t from,
                                   uint32_t to, uint32_t steps);
    RegisterInfo* addInfoDoubleField(RegisterInfo* parent, const LeafAttributes& leaf, int size, double from, double to,
                                     double steps);
    /// \p nrOfElements entries, to be filled by addEnumNameValue.
    RegisterInfo* addInfoEnum(RegisterInfo* parent, const LeafAttributes& leaf, int nrOfElements);
    /// \p fileExt may be null.
    RegisterInfo* addInfoString(RegisterInfo* parent, const LeafAttributes& leaf, const char* fileExt);
    /// @}

    /// Fills entry \p element of an enumeration node; \p defname may be null.
    /// \return 0; FG_OUT_OF_RESOURCES; FG_INVALID_ARGUMENT for an element that the node does not have
    int addEnumNameValue(RegisterInfo* reg, int element, const char* name, int value, const char* defname);

    /// Replaces the entries of an enumeration node in place; the old texts are released. The arrays stay while their
    /// size does.
    static void replaceEntries(RegisterInfo& node, std::span<const EnumField> entries);
    /// Replaces the file name pattern of a text node in place; \p fileExt may be null.
    static void replaceFileExtension(RegisterInfo& node, const char* fileExt);

private:
    static constexpr size_t kTreePorts = 4;
    static bool isTreePort(int port) { return port >= 0 && port < static_cast<int>(kTreePorts); }
    static size_t at(int port) { return static_cast<size_t>(port); }
    using UniqueNode = std::unique_ptr<RegisterInfo, RegisterInfoDeleter>;

    RegisterInfo* adopt(UniqueNode node, RegisterInfo* parent, int port);
    RegisterInfo* addLeaf(REG_FORMAT format, RegisterInfo* parent, const LeafAttributes& leaf);

    std::array<RegisterInfo*, kTreePorts> mGlobRegInfo{};
    [[maybe_unused]] int groupAutoIndex = 0;  ///< not used
    std::array<std::vector<UniqueNode>, kTreePorts> allRegInfo;
    std::array<bool, kTreePorts> allRegFinalized{};
};
