#include "undo/options.h"

namespace {

struct Switch {
    const char* name;
    bool& (*value)(Options*);
};

constexpr Switch kSwitches[] = {
    {"--list", [](Options* options) -> bool& { return options->list; }},
    {"--help", [](Options* options) -> bool& { return options->help; }},
    {"--yes", [](Options* options) -> bool& { return options->yes; }},
    {"--accounts", [](Options* options) -> bool& { return options->undo.accounts; }},
    {"--start-units", [](Options* options) -> bool& { return options->undo.units; }},
};

bool Take(const SString& argument, Options* options) {
    for (const Switch& known : kSwitches) {
        if (argument != known.name) continue;
        known.value(options) = true;
        return true;
    }
    if (argument.StartsWith("-") || argument.IsEmpty() || !options->run.IsEmpty()) return false;
    options->run = argument;
    return true;
}

}  // namespace

std::optional<Options> OptionsFrom(const SStringList& arguments) {
    Options options;
    for (const SString& argument : arguments) {
        if (!Take(argument, &options)) return std::nullopt;
    }
    const bool goes_back = options.yes || options.undo.accounts || options.undo.units;
    if (options.list && goes_back) return std::nullopt;
    return options;
}

SString Usage() {
    return "usage: Undo [--yes] [--accounts] [--start-units] [RUN]\n"
           "       Undo --list [RUN]\n";
}
