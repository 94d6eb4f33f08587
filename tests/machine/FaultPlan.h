#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "platform/SystemError.h"

namespace marlok::test {

/// One call that touches the disk or the registry, or one part of such a call that others can see on its own.
struct Step {
    std::string operation;  ///< "Open", "Copy.Write", "SetValue", ...
    std::string path;       ///< the path or key it works on, as the program gave it
    bool mutates = false;   ///< true when it may change the disk or the registry
};

/// Thrown through the program when its process dies. Deliberately no std::exception: nothing in the program may
/// catch it by accident.
struct ProcessDied {};

/// Counts the steps of a program and makes one of them fail, or the process die just before one takes effect.
/// Steps are numbered from 1 since construction or the last Reset.
class FaultPlan {
 public:
    /// Called by the services before each step takes effect. Returns the error the step must fail with, or success.
    /// @throws ProcessDied when the process dies here or is dead already. While another exception is under way it
    /// returns `error::ioDevice` instead, so that destructors of a dead process have no effect and do not throw.
    [[nodiscard]] SystemError Enter(const std::string& operation, const std::string& path, bool mutates);

    /// For calls that touch neither disk nor registry. False when the call must have no effect.
    /// @throws ProcessDied as Enter does.
    [[nodiscard]] bool Alive() const;

    /// The k-th step fails with `code`.
    void FailAt(std::size_t k, SystemError code);

    /// The k-th of the steps that mutate fails with `code`.
    void FailMutationAt(std::size_t k, SystemError code);

    /// Every step for which `rule` returns an error fails with it.
    void FailWhen(std::function<SystemError(const Step&)> rule) { rule_ = std::move(rule); }

    /// The process dies just before the k-th step takes effect, or the k-th of those that mutate.
    void DieAt(std::size_t k);
    void DieAtMutation(std::size_t k);

    /// When set, a write that fails or dies by this plan leaves the first half of its bytes behind.
    void TearWrites(bool on) { tearWrites_ = on; }
    [[nodiscard]] bool TearsWrites() const { return tearWrites_; }

    /// Called before each step, faults and death included. What the hook itself does is not counted.
    void BeforeStep(std::function<void(const Step&)> hook) { hook_ = std::move(hook); }

    [[nodiscard]] std::size_t Steps() const { return steps_; }
    [[nodiscard]] std::size_t Mutations() const { return mutations_; }

    /// True once a planned failure or death has happened; a sweep over k ends when it stays false.
    [[nodiscard]] bool Fired() const { return fired_; }
    [[nodiscard]] bool Dead() const { return dead_; }

    /// The steps since the last Reset, in order. Kept unless KeepJournal(false).
    [[nodiscard]] const std::vector<Step>& Journal() const { return journal_; }
    void KeepJournal(bool on) { keepJournal_ = on; }

    /// Number of steps of the journal with that operation.
    [[nodiscard]] std::size_t Count(const std::string& operation) const;

    /// Counts from 1 again and forgets journal, faults and rule. The hook stays.
    void Reset();

    /// The next process lives: takes death and planned faults away, keeps counting.
    void Revive();

 private:
    [[nodiscard]] bool DiesHere(bool mutates) const;
    [[nodiscard]] SystemError FailureHere(const Step& step) const;
    [[nodiscard]] SystemError Die();

    std::size_t steps_ = 0;
    std::size_t mutations_ = 0;
    std::size_t failAt_ = 0;  ///< 0: never
    std::size_t failMutationAt_ = 0;
    std::size_t dieAt_ = 0;
    std::size_t dieAtMutation_ = 0;
    SystemError failCode_ = error::success;
    std::function<SystemError(const Step&)> rule_;
    std::function<void(const Step&)> hook_;
    std::vector<Step> journal_;
    bool keepJournal_ = true;
    bool tearWrites_ = false;
    bool fired_ = false;
    bool dead_ = false;
    bool inHook_ = false;
};

}  // namespace marlok::test
