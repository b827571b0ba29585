#include "StandardApplets/grabber_basis/PSFx4/ParameterTable.h"

#include <memory>
#include <tuple>

#include "StandardApplets/grabber_basis/Fx3ParameterHeader.h"
#include "StandardApplets/grabber_basis/RSFx4/RSMaster.h"

void createParameter(RSMaster& owner, const ParameterRow& row) {
    auto record =
        std::make_unique<Fx3Parameter>(&owner, row.type, row.displayName, row.defineName, row.id, row.unit, false);
    const bool isTheRegistrys = owner.getHeader()->searchParameterById(row.id) == record.get();
    if (isTheRegistrys) std::ignore = record.release();
}

void createParameters(RSMaster& owner, std::span<const ParameterRow> rows) {
    for (const ParameterRow& row : rows) createParameter(owner, row);
}

void publishDescriptions(Fx3ParameterHeader& header, std::span<const ParameterRow> rows) {
    for (const ParameterRow& row : rows) {
        if (row.description != nullptr) header.setDescr(row.id, row.description);
    }
}

void publishFlags(Fx3ParameterHeader& header, unsigned int port, std::span<const FlagRow> rows) {
    for (const FlagRow& row : rows) {
        header.setFlags(row.id, static_cast<int>(port), row.access, row.range, row.visibility, row.inConfigFiles);
    }
}

RegisterInfo* publishGroup(Fx3ParameterHeader& header, unsigned int port, RegisterInfo* parent, const char* name,
                           std::span<const int> ids) {
    RegisterInfo* group = header.addGroupInfo(static_cast<int>(port), parent, name);
    for (const int id : ids) header.setGroup(id, static_cast<int>(port), group);
    return group;
}
