// Editors that open through the plug-in's class, with a user that is a function.
#pragma once

#include <functional>
#include <string>

#include "platform/form.h"
#include "plugin/clskeld2.h"
#include "testmachine.h"

namespace keld2::test {

// A plug-in whose blocks are mapped, for a chip of a family whose image has a length.
struct Editing {
    static constexpr std::int32_t buflength = 300000;

    Editing(std::uint8_t mode, std::int32_t length) {
        host.maprows(0, [] {});
        host.buflength[0] = buflength;
        plugin.bufcomkeld2(0);
        s.prgmode[0] = mode;
        s.tlength[0] = length;
    }

    // Opens the editor and lets user work on it; afterwards the window is gone.
    void configuration(std::function<void(Form&)> user) {
        this->user = std::move(user);
        plugin.editfigkeld2();
    }
    void code(std::function<void(Form&)> user) {
        this->user = std::move(user);
        plugin.usercode();
    }
    std::uint8_t& cell(std::int64_t offset) { return s.ibuffer[s.tlength[0] + offset]; }

    std::function<void(Form&)> user;  // what is done with a window that opens
    TestMachine machine{[this](Form& form) { user(form); }};
    SharedVariables host{machine.memory(), machine.strings()};
    Module module{machine, {}};
    ClsKELD2 plugin{module};
    SharedVariables& s = module.variables();
};

}  // namespace keld2::test
