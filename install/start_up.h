// From the process as it was started to the installation's exit status.
#pragma once

/// 0 after a complete run, 2 when start-up fails or a step stops the installation. (A signal's 3 does not
/// come through here.)
int Main();
