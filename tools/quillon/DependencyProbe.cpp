#include "DependencyProbe.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "ValueText.h"
#include "fabrix/parameter_ids.h"

namespace quillon::tool {

namespace {

using host::ParameterInfo;
using host::ParameterType;
using host::ParameterValue;

std::string topGroup(const ParameterInfo& parameter) { return parameter.group.substr(0, parameter.group.find(" / ")); }

/// Texts name files and structures are tables; what cannot be read is an action and cannot be put back.
bool canBeTried(const ParameterInfo& parameter) {
    return parameter.isReadable() && parameter.isWritable() && parameter.type != ParameterType::Text &&
           parameter.type != ParameterType::Structure;
}

/// \return values other than \p now: all entries, or both ends of the range and the step in its middle
std::vector<ParameterValue> otherValues(const ParameterInfo& parameter, const ParameterValue& now) {
    std::vector<ParameterValue> values;
    if (parameter.type == ParameterType::Enumeration) {
        for (const host::EnumerationEntry& entry : parameter.entries) values.emplace_back(entry.value);
    } else if (parameter.hasLimits) {
        const auto [minimum, maximum, step] = parameter.limits;
        for (const double limit : {minimum, maximum, minimum + (maximum - minimum) / 2}) {
            if (parameter.type == ParameterType::Double) {
                values.emplace_back(limit);
            } else if (!parameter.isUnsigned()) {
                const double grid = std::max(step, 1.0);
                values.emplace_back(static_cast<int32_t>(std::floor(limit / grid) * grid));
            }
        }
    }
    std::erase(values, now);
    return values;
}

bool sameLimits(const ParameterInfo& a, const ParameterInfo& b) {
    return a.hasLimits == b.hasLimits && a.limits.minimum == b.limits.minimum && a.limits.maximum == b.limits.maximum &&
           a.limits.step == b.limits.step;
}

std::string settingText(const ParameterInfo& parameter, const ParameterValue& value) {
    const std::string text = formatValue(parameter, value);
    return parameter.name + "=" + text.substr(0, text.find(" ("));
}

}  // namespace

DependencyProbe::DependencyProbe(host::Grabber& grabber, int port, std::function<host::Grabber&()> restore)
    : mGrabber(&grabber), mPort(port), mRestore(std::move(restore)) {}

DependencyProbe::Look DependencyProbe::look(const std::string& name) const {
    const host::ParameterCatalogue catalogue(*mGrabber, mPort);
    Look look;
    if (const ParameterInfo* parameter = catalogue.find(name)) look.parameter = *parameter;
    if (!look.parameter.isMeasured()) {
        look.hasValue = host::readValue(*mGrabber, look.parameter, look.value, mPort) >= 0;
    }
    return look;
}

std::vector<Dependency> DependencyProbe::run(const std::string& name) {
    const Look before = look(name);
    const std::string group = topGroup(before.parameter);
    const host::ParameterCatalogue catalogue(*mGrabber, mPort);
    std::vector<Dependency> dependencies;
    for (const ParameterInfo& other : catalogue.parameters()) {
        const bool isNear = other.id == FG_GLOBAL_ACCESS || (!group.empty() && topGroup(other) == group);
        if (!isNear || other.id == before.parameter.id || !canBeTried(other)) continue;
        Dependency dependency = tryOut(before, other);
        if (!dependency.effects.empty()) dependencies.push_back(std::move(dependency));
    }
    return dependencies;
}

Dependency DependencyProbe::tryOut(const Look& before, const ParameterInfo& other) {
    Dependency dependency{other.name, "", ""};
    ParameterValue original;
    if (host::readValue(*mGrabber, other, original, mPort) < 0) return dependency;
    bool access = false;
    bool limits = false;
    bool entries = false;
    bool value = false;
    const auto isSameEntry = [](const auto& a, const auto& b) { return a.value == b.value; };
    for (const ParameterValue& trial : otherValues(other, original)) {
        if (host::writeValue(*mGrabber, other, trial, mPort) < 0) continue;
        const Look after = look(before.parameter.name);
        const auto& [now, then] = std::pair(after.parameter, before.parameter);
        access = access || now.access != then.access;
        limits = limits || !sameLimits(now, then);
        entries = entries || !std::equal(now.entries.begin(), now.entries.end(), then.entries.begin(),
                                         then.entries.end(), isSameEntry);
        value = value || (before.hasValue && after.hasValue && after.value != before.value);
        if (!then.isWritable() && now.isWritable() && dependency.unlock.empty()) {
            dependency.unlock = settingText(other, trial);
        }
        putBack(before, other, original);
    }
    for (const auto& [isSeen, effect] : {std::pair(access, "access"), std::pair(limits, "limits"),
                                         std::pair(entries, "entries"), std::pair(value, "value")}) {
        if (isSeen) dependency.effects += (dependency.effects.empty() ? "" : ", ") + std::string(effect);
    }
    return dependency;
}

void DependencyProbe::putBack(const Look& before, const ParameterInfo& other, const ParameterValue& value) {
    bool isBack = host::writeValue(*mGrabber, other, value, mPort) >= 0;
    if (isBack) {
        Look after = look(before.parameter.name);
        if (before.hasValue && after.value != before.value && after.parameter.isWritable()) {
            isBack = host::writeValue(*mGrabber, before.parameter, before.value, mPort) >= 0;
            after = look(before.parameter.name);
        }
        isBack = isBack && after.parameter.access == before.parameter.access &&
                 sameLimits(after.parameter, before.parameter) && (!before.hasValue || after.value == before.value);
    }
    if (!isBack) mGrabber = &mRestore();
}

}  // namespace quillon::tool
