#pragma once

#include "forms/Windows.h"
#include "platform/Machine.h"
#include "ui/run/Session.h"

namespace marlok::test {

/// A started program as far as its windows need it: they are loaded and used one by one.
struct Program {
    /// `views` may be null: the windows then have no screen. Both outlive this object.
    explicit Program(Machine& machine, forms::ViewFactory* views = nullptr)
        : session(machine), windows(machine.desktop, machine.clock, views) {
        session.gSettings = std::make_unique<CRegSettings>(machine.registry, machine.system);
    }

    Session session;
    forms::Windows windows;
};

}  // namespace marlok::test
