// What a program takes over from whoever started it, put right before it does anything.
#pragma once

/// Standard descriptors that are there and wait, signals that don't end it in the middle of a file, and a
/// working directory that exists.
void SettleProcess();
