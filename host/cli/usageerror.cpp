#include "host/cli/usageerror.h"

#include <vector>

#include "host/catalogue/nearest.h"

namespace keld2::host {

namespace {

const CLI::App& innermost(const CLI::App& program) {
    const CLI::App* at = &program;
    while (!at->get_subcommands().empty()) at = at->get_subcommands().front();
    return *at;
}

// "keld2 devices" of keld2 -d X devices Y.
std::string commandnames(const CLI::App& program) {
    std::string names = program.get_name();
    for (const CLI::App* at = &program; !at->get_subcommands().empty();) {
        at = at->get_subcommands().front();
        names += ' ' + at->get_name();
    }
    return names;
}

bool isoption(const std::string& word) { return word.size() > 1 && word.front() == '-'; }

std::vector<std::string> subcommandnames(const CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::App* command : app.get_subcommands({})) names.push_back(command->get_name());
    return names;
}

std::vector<std::string> optionnames(const CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::App* at = &app; at != nullptr; at = at->get_parent())
        for (const CLI::Option* option : at->get_options())
            for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
    return names;
}

std::string nearestof(const std::string& word, const std::vector<std::string>& names) {
    std::string text;
    for (const std::string& name : nearestnames(word, names))
        text += (text.empty() ? "; nearest: " : ", ") + name;
    return text;
}

}  // namespace

std::string usageerror(const CLI::App& program, const CLI::ParseError& error) {
    const CLI::App& command = innermost(program);
    const std::string help = "; see " + commandnames(program) + " --help";
    const auto commands = subcommandnames(command);
    for (const std::string& word : program.remaining(true)) {
        if (isoption(word))
            return "there is no option \"" + word + '"' + nearestof(word, optionnames(command)) +
                   help;
        if (!commands.empty())
            return "there is no command \"" + word + '"' + nearestof(word, commands) + help;
        return "\"" + word + "\" is one word too many" + help;
    }
    const bool nocommand = dynamic_cast<const CLI::RequiredError*>(&error) != nullptr;
    if (nocommand && !commands.empty()) return "no command" + help;
    return std::string(error.what()) + help;
}

}  // namespace keld2::host
