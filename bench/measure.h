// Time and memory of a piece of work in a process of its own, so that one measurement does not weigh on the
// next.
#pragma once

#include <functional>
#include <vector>

struct Measurement {
    double seconds = 0;
    double cpu_seconds = 0;  // of the processor: what a busy machine changes little about
    double peak_bytes = 0;   // beyond what the process had when the work began
    bool is_done = false;    // the work's own verdict
};

Measurement MeasureApart(const std::function<bool()>& prepare, const std::function<bool()>& work);

/// The one in the middle by time, of an odd number.
Measurement Median(std::vector<Measurement> measurements);
