#include "StandardApplets/grabber_basis/parameterInfo.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "fabrix/result_codes.h"

namespace {

/// \return an owned copy of a text; null for null
char* copyText(const char* text) {
    if (text == nullptr) return nullptr;
    const size_t size = std::strlen(text) + 1;
    return static_cast<char*>(std::memcpy(new char[size], text, size));
}

void releaseEntries(EnumReg& entries) {
    for (int i = 0; i < entries.nrOfElements; ++i) {
        delete[] entries.enumNames[i];
        delete[] entries.enumDefName[i];
    }
    delete[] entries.enumNames;
    delete[] entries.enumValues;
    delete[] entries.enumDefName;
    entries = {};
}

/// Makes \p count empty entries.
void allocateEntries(EnumReg& entries, size_t count) {
    auto names = std::make_unique<char*[]>(count);
    auto values = std::make_unique<int32_t[]>(count);
    entries.enumDefName = new char* [count] {};
    entries.enumNames = names.release();
    entries.enumValues = values.release();
    entries.nrOfElements = static_cast<int32_t>(count);
}

/// \return a fresh node of the given kind, everything else 0 or null
RegisterInfo* newNode(REG_FORMAT format, int port) {
    auto* node = new RegisterInfo();  // parentheses zero the whole union
    node->format = format;
    node->port = port;
    return node;
}

}  // namespace

void RegisterInfoDeleter::operator()(RegisterInfo* node) const {
    delete[] node->name;
    delete[] node->parentName;
    delete[] node->parameterName;
    delete[] node->unit;
    if (node->format == REG_FORMAT_ENUM) releaseEntries(node->u.eReg);
    if (node->format == REG_FORMAT_GROUP) delete[] node->u.gReg.elements;
    if (node->format == REG_FORMAT_STRING) delete[] node->u.sReg.FileExtension;
    delete node;
}

Fg_ParameterInfo::Fg_ParameterInfo() {
    for (size_t port = 0; port < kTreePorts; ++port) init(static_cast<int>(port));
}

Fg_ParameterInfo::~Fg_ParameterInfo() {
    for (size_t port = 0; port < kTreePorts; ++port) destroy(static_cast<int>(port));
}

void Fg_ParameterInfo::init(int port) {
    if (!isTreePort(port)) return;
    destroy(port);
    mGlobRegInfo[at(port)] = nullptr;
    allRegFinalized[at(port)] = false;
}

void Fg_ParameterInfo::destroy(int port) {
    if (isTreePort(port)) allRegInfo[at(port)].clear();
}

void Fg_ParameterInfo::finalize(int port) {
    if (isTreePort(port)) allRegFinalized[at(port)] = true;
}

RegisterInfo* Fg_ParameterInfo::getRegisterInfo(int Port) {
    return isTreePort(Port) ? mGlobRegInfo[at(Port)] : nullptr;
}

RegisterInfo* Fg_ParameterInfo::getNextRegisterInfo(RegisterInfo* reg, int Port) {
    return reg == nullptr ? getRegisterInfo(Port) : reg->next;
}

/// Stores a finished node and, with a parent, makes it the parent's next element.
RegisterInfo* Fg_ParameterInfo::adopt(UniqueNode node, RegisterInfo* parent, int port) {
    std::unique_ptr<RegisterInfo*[]> elements;
    if (parent != nullptr) {
        GroupReg& group = parent->u.gReg;
        const auto count = static_cast<size_t>(group.nrOfElements);
        elements = std::make_unique<RegisterInfo*[]>(count + 1);
        std::copy_n(group.elements, count, elements.get());
    }
    std::vector<UniqueNode>& nodes = allRegInfo[at(port)];
    nodes.push_back(std::move(node));
    RegisterInfo* added = nodes.back().get();
    if (parent == nullptr) return added;

    GroupReg& group = parent->u.gReg;
    added->index = group.autoIndex++;
    elements[static_cast<size_t>(added->index)] = added;
    ++group.nrOfElements;
    delete[] group.elements;
    group.elements = elements.release();
    return added;
}

RegisterInfo* Fg_ParameterInfo::addGroupInfo(int port, RegisterInfo* parent, const char* name) {
    if (!isTreePort(port) || allRegFinalized[at(port)]) return nullptr;
    if (parent != nullptr && parent->format != REG_FORMAT_GROUP) return nullptr;
    UniqueNode node(newNode(REG_FORMAT_GROUP, port));
    node->name = copyText(name);
    if (parent != nullptr) {
        node->parentName = copyText(parent->name);
        node->depth = parent->depth + 1;
        return adopt(std::move(node), parent, port);
    }
    RegisterInfo* group = adopt(std::move(node), nullptr, port);
    RegisterInfo*& root = mGlobRegInfo[at(port)];
    group->next = root;
    if (root != nullptr) root->previous = group;
    return root = group;
}

RegisterInfo* Fg_ParameterInfo::addLeaf(REG_FORMAT format, RegisterInfo* parent, const LeafAttributes& leaf) {
    if (!isTreePort(leaf.port) || allRegFinalized[at(leaf.port)]) return nullptr;
    if (parent == nullptr || parent->format != REG_FORMAT_GROUP) return nullptr;
    UniqueNode node(newNode(format, leaf.port));
    node->name = copyText(leaf.name);
    node->parameterName = copyText(leaf.paramName);
    node->unit = copyText(leaf.unit);
    node->accessFlags = leaf.accessFlags;
    node->rangeFlags = leaf.rangeFlags;
    node->visibilityFlags = leaf.visibilityFlags;
    node->id = leaf.id;
    return adopt(std::move(node), parent, leaf.port);
}

RegisterInfo* Fg_ParameterInfo::addInfoInt(RegisterInfo* parent, const LeafAttributes& leaf, int from, int to,
                                           int steps) {
    RegisterInfo* node = addLeaf(REG_FORMAT_INT, parent, leaf);
    if (node != nullptr) node->u.iReg = {from, to, steps, 0};
    return node;
}

RegisterInfo* Fg_ParameterInfo::addInfoUInt(RegisterInfo* parent, const LeafAttributes& leaf, uint32_t from,
                                            uint32_t to, uint32_t steps) {
    RegisterInfo* node = addLeaf(REG_FORMAT_UINT, parent, leaf);
    if (node != nullptr) node->u.uiReg = {from, to, steps, 0};
    return node;
}

RegisterInfo* Fg_ParameterInfo::addInfoInt64(RegisterInfo* parent, const LeafAttributes& leaf, int64_t from, int64_t to,
                                             int64_t steps) {
    RegisterInfo* node = addLeaf(REG_FORMAT_INT64, parent, leaf);
    if (node != nullptr) node->u.iReg64 = {from, to, steps, 0};
    return node;
}

RegisterInfo* Fg_ParameterInfo::addInfoUInt64(RegisterInfo* parent, const LeafAttributes& leaf, uint64_t from,
                                              uint64_t to, uint64_t steps) {
    RegisterInfo* node = addLeaf(REG_FORMAT_UINT64, parent, leaf);
    if (node != nullptr) {
        node->u.iReg64 = {static_cast<int64_t>(from), static_cast<int64_t>(to), static_cast<int64_t>(steps), 0};
    }
    return node;
}

RegisterInfo* Fg_ParameterInfo::addInfoDouble(RegisterInfo* parent, const LeafAttributes& leaf, double from, double to,
                                              double steps) {
    RegisterInfo* node = addLeaf(REG_FORMAT_DOUBLE, parent, leaf);
    if (node != nullptr) node->u.dReg = {from, to, steps, 0.0};
    return node;
}

RegisterInfo* Fg_ParameterInfo::addInfoIntField(RegisterInfo* parent, const LeafAttributes& leaf, int size, int from,
                                                int to, int /*steps*/) {
    RegisterInfo* node = addLeaf(REG_FORMAT_INTFIELD, parent, leaf);
    if (node != nullptr) node->u.ifReg = {from, to, size, 0, from};
    return node;
}

RegisterInfo* Fg_ParameterInfo::addInfoUIntField(RegisterInfo* parent, const LeafAttributes& leaf, int size,
                                                 uint32_t from, uint32_t to, uint32_t /*steps*/) {
    RegisterInfo* node = addLeaf(REG_FORMAT_UINTFIELD, parent, leaf);
    if (node != nullptr) node->u.uifReg = {from, to, size, 0, from};
    return node;
}

RegisterInfo* Fg_ParameterInfo::addInfoDoubleField(RegisterInfo* parent, const LeafAttributes& leaf, int size,
                                                   double from, double to, double /*steps*/) {
    RegisterInfo* node = addLeaf(REG_FORMAT_DOUBLEFIELD, parent, leaf);
    if (node != nullptr) node->u.dfReg = {from, to, size, 0, from};
    return node;
}

RegisterInfo* Fg_ParameterInfo::addInfoEnum(RegisterInfo* parent, const LeafAttributes& leaf, int nrOfElements) {
    RegisterInfo* node = addLeaf(REG_FORMAT_ENUM, parent, leaf);
    if (node != nullptr) allocateEntries(node->u.eReg, static_cast<size_t>(std::max(nrOfElements, 0)));
    return node;
}

RegisterInfo* Fg_ParameterInfo::addInfoString(RegisterInfo* parent, const LeafAttributes& leaf, const char* fileExt) {
    RegisterInfo* node = addLeaf(REG_FORMAT_STRING, parent, leaf);
    if (node != nullptr) node->u.sReg.FileExtension = copyText(fileExt);
    return node;
}

int Fg_ParameterInfo::addEnumNameValue(RegisterInfo* reg, int element, const char* name, int value,
                                       const char* defname) {
    EnumReg& entries = reg->u.eReg;
    if (element < 0 || element >= entries.nrOfElements) return FG_INVALID_ARGUMENT;
    try {
        std::unique_ptr<char[]> newName(copyText(name));
        char* newDefName = copyText(defname);
        delete[] entries.enumNames[element];
        delete[] entries.enumDefName[element];
        entries.enumNames[element] = newName.release();
        entries.enumDefName[element] = newDefName;
    } catch (const std::bad_alloc&) {
        return FG_OUT_OF_RESOURCES;
    }
    entries.enumValues[element] = value;
    return FG_OK;
}

void Fg_ParameterInfo::replaceEntries(RegisterInfo& node, std::span<const EnumField> entries) {
    UniqueNode fresh(newNode(REG_FORMAT_ENUM, node.port));
    EnumReg& target = fresh->u.eReg;
    allocateEntries(target, entries.size());
    for (size_t i = 0; i < entries.size(); ++i) {
        target.enumNames[i] = copyText(entries[i].name);
        target.enumDefName[i] = copyText(entries[i].defName);
        target.enumValues[i] = static_cast<int32_t>(entries[i].value);
    }
    // The old texts, and arrays of another size, leave with the helper node.
    EnumReg& old = node.u.eReg;
    if (old.nrOfElements == target.nrOfElements) {
        const auto count = static_cast<size_t>(target.nrOfElements);
        std::swap_ranges(old.enumNames, old.enumNames + count, target.enumNames);
        std::swap_ranges(old.enumDefName, old.enumDefName + count, target.enumDefName);
        std::copy_n(target.enumValues, count, old.enumValues);
    } else {
        std::swap(old.nrOfElements, target.nrOfElements);
        std::swap(old.enumNames, target.enumNames);
        std::swap(old.enumValues, target.enumValues);
        std::swap(old.enumDefName, target.enumDefName);
    }
}

void Fg_ParameterInfo::replaceFileExtension(RegisterInfo& node, const char* fileExt) {
    char* copy = copyText(fileExt);
    delete[] node.u.sReg.FileExtension;
    node.u.sReg.FileExtension = copy;
}
