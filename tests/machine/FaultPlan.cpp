#include "tests/machine/FaultPlan.h"

#include <algorithm>
#include <exception>
#include <utility>

namespace marlok::test {

SystemError FaultPlan::Enter(const std::string& operation, const std::string& path, bool mutates) {
    if (inHook_) {
        return error::success;
    }
    if (!Alive()) {
        return error::ioDevice;
    }
    const Step step{operation, path, mutates};
    ++steps_;
    mutations_ += mutates ? 1U : 0U;
    if (keepJournal_) {
        journal_.push_back(step);
    }
    if (hook_) {
        inHook_ = true;
        try {
            hook_(step);
        } catch (...) {
            inHook_ = false;
            throw;
        }
        inHook_ = false;
    }
    if (DiesHere(mutates)) {
        return Die();
    }
    const SystemError code = FailureHere(step);
    fired_ = fired_ || code != error::success;
    return code;
}

bool FaultPlan::Alive() const {
    if (!dead_ || inHook_) {
        return true;
    }
    if (std::uncaught_exceptions() == 0) {
        throw ProcessDied{};
    }
    return false;
}

SystemError FaultPlan::Die() {
    dead_ = true;
    fired_ = true;
    if (std::uncaught_exceptions() == 0) {
        throw ProcessDied{};
    }
    return error::ioDevice;
}

bool FaultPlan::DiesHere(bool mutates) const {
    return steps_ == dieAt_ || (mutates && mutations_ == dieAtMutation_);
}

SystemError FaultPlan::FailureHere(const Step& step) const {
    if (steps_ == failAt_ || (step.mutates && mutations_ == failMutationAt_)) {
        return failCode_;
    }
    return rule_ ? rule_(step) : error::success;
}

void FaultPlan::FailAt(std::size_t k, SystemError code) {
    failAt_ = k;
    failCode_ = code;
}

void FaultPlan::FailMutationAt(std::size_t k, SystemError code) {
    failMutationAt_ = k;
    failCode_ = code;
}

void FaultPlan::DieAt(std::size_t k) {
    dieAt_ = k;
}

void FaultPlan::DieAtMutation(std::size_t k) {
    dieAtMutation_ = k;
}

std::size_t FaultPlan::Count(const std::string& operation) const {
    const auto count =
        std::count_if(journal_.begin(), journal_.end(), [&](const Step& step) { return step.operation == operation; });
    return static_cast<std::size_t>(count);
}

void FaultPlan::Revive() {
    dead_ = false;
    failAt_ = 0;
    failMutationAt_ = 0;
    dieAt_ = 0;
    dieAtMutation_ = 0;
    rule_ = nullptr;
}

void FaultPlan::Reset() {
    Revive();
    steps_ = 0;
    mutations_ = 0;
    fired_ = false;
    journal_.clear();
}

}  // namespace marlok::test
