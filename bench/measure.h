// Measures time and memory of some work in a process of its own, so that one measurement does not affect the
// next.
#pragma once

#include <functional>
#include <optional>
#include <vector>

struct Measurement {
    double seconds = 0;
    double cpu_seconds = 0;  // of all its processes, which a busy machine hardly changes
    double peak_bytes = 0;   // its own and its child's, beyond the memory in use when the work began
    std::optional<double> system_calls;  // of all its processes
    bool is_done = false;                // what the work returned
};

Measurement MeasureApart(const std::function<bool()>& prepare, const std::function<bool()>& work);

/// The median by time of an odd number of measurements.
Measurement Median(std::vector<Measurement> measurements);
