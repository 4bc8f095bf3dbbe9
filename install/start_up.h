// From the process as it was started to the installation's exit status.
#pragma once

/// Everything before the first question: checks, header, site facts, the mail owner's identity. False if
/// something prevents the installation; the reason has been printed.
bool StartUp();
/// The exit status: 0 after a complete run, 2 if start-up failed or a step stopped the installation.
int Main();
