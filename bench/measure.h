// Measures time and memory of some work in a process of its own, so that one measurement does not affect the
// next.
#pragma once

#include <functional>
#include <vector>

struct Measurement {
    double seconds = 0;
    double cpu_seconds = 0;  // processor time, which a busy machine hardly changes
    double peak_bytes = 0;   // beyond the memory in use when the work began
    bool is_done = false;    // what the work returned
};

Measurement MeasureApart(const std::function<bool()>& prepare, const std::function<bool()>& work);

/// The median by time of an odd number of measurements.
Measurement Median(std::vector<Measurement> measurements);
