// The order of the installation.
#pragma once

#include <span>

struct Step {
    const char* name;
    bool (*run)();
};

/// The steps in the order in which FullInstall runs them.
std::span<const Step> Sequence();
