#include "host/programmer/programmer.h"

#include <sstream>

#include "host/files/files.h"
#include "host/hosterror.h"
#include "host/programmer/hardware.h"

namespace keld2::host {

namespace {

constexpr std::string_view form = "sim[:image=FILE][,fault=FAULT]... or hardware";

[[noreturn]] void refuse(const std::string& text, const std::string& wrong) {
    throw HostError(exitstatus::usage,
                    "-p " + text + ": " + wrong + ", expected " + std::string(form));
}

}  // namespace

ProgrammerChoice parseprogrammer(const std::string& text) {
    if (text == "hardware") return {.simulated = false, .image = {}, .faults = {}};
    const std::size_t colon = text.find(':');
    if (text.substr(0, colon) != "sim")
        refuse(text, "there is no programmer \"" + text.substr(0, colon) + "\"");
    ProgrammerChoice choice;
    if (colon == text.npos) return choice;
    std::istringstream settings(text.substr(colon + 1));
    for (std::string setting; std::getline(settings, setting, ',');) {
        const std::size_t equals = setting.find('=');
        const std::string key = setting.substr(0, equals);
        if (equals == setting.npos || equals + 1 == setting.size() ||
            (key != "image" && key != "fault"))
            refuse(text, "\"" + setting + "\" is no setting");
        if (key == "image")
            choice.image = filenamed(setting.substr(equals + 1));
        else
            choice.faults.push_back(setting.substr(equals + 1));
    }
    return choice;
}

std::string described(const ProgrammerChoice& choice) {
    if (!choice.simulated) return "the programmer itself";
    std::string text = "simulated programmer, ";
    text += choice.image ? "the chip is kept in " + choice.image->string()
                         : "a fresh chip that is not kept (-p sim:image=FILE keeps it)";
    for (const std::string& fault : choice.faults) text += ", fault " + fault;
    return text;
}

os::Blocks blocksof(const ProgrammerChoice& choice) {
    return choice.simulated ? os::Blocks::own : os::Blocks::shared;
}

ProgrammerFactory chosen(const ProgrammerChoice& choice, const Device& device) {
    return choice.simulated ? simulated(choice, device) : hardware();
}

}  // namespace keld2::host
