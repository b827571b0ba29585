#include "simulation/support/FaultPlan.h"

#include <algorithm>

#include "simulation/support/Numbers.h"

namespace simulation {

namespace {

/// Cuts \p text up to the next \p mark off its front.
std::string_view takeField(std::string_view& text, char mark) {
    const size_t length = std::min(text.find(mark), text.size());
    const std::string_view field = text.substr(0, length);
    text.remove_prefix(std::min(length + 1, text.size()));
    return field;
}

}  // namespace

std::optional<std::vector<Fault>> FaultPlan::parse(std::string_view text, std::span<const std::string_view> operations,
                                                   std::string& why) {
    std::vector<Fault> faults;
    while (!text.empty()) {
        const std::string_view entry = takeField(text, ',');
        std::string_view rest = entry;
        const std::string_view operation = takeField(rest, ':');
        const std::string_view call = takeField(rest, ':');
        const auto callNumber = parseNumber<int>(call);
        const auto code = parseNumber<int>(rest);
        if (std::find(operations.begin(), operations.end(), operation) == operations.end()) {
            why = "fault \"" + std::string(entry) + "\": there is no operation \"" + std::string(operation) + "\"";
            return std::nullopt;
        }
        if (!callNumber || *callNumber < 1 || !code || *code >= 0) {
            why = "fault \"" + std::string(entry) +
                  "\": OPERATION:N:CODE is wanted, with N of 1 or more and a negative CODE";
            return std::nullopt;
        }
        faults.push_back({std::string(operation), *callNumber, *code});
    }
    return faults;
}

void FaultPlan::add(const Fault& fault) {
    const std::lock_guard lock(mMutex);
    mPlanned.emplace(fault.operation, Countdown{fault.call, fault.code});
    mIsEmpty = false;
}

void FaultPlan::clear() {
    const std::lock_guard lock(mMutex);
    mPlanned.clear();
    mIsEmpty = true;
}

int FaultPlan::nextCall(std::string_view operation) {
    if (mIsEmpty) return 0;
    const std::lock_guard lock(mMutex);
    int code = 0;
    auto [fault, last] = mPlanned.equal_range(operation);
    while (fault != last) {
        if (--fault->second.callsLeft == 0) {
            code = fault->second.code;
            fault = mPlanned.erase(fault);
        } else {
            ++fault;
        }
    }
    mIsEmpty = mPlanned.empty();
    return code;
}

}  // namespace simulation
