// From the process as it was started to the installation's exit status.
#pragma once

/// All that comes before the first question: the checks, the header, the site's facts, the mail owner's
/// identity. False when something stands in the way; it has told what.
bool StartUp();
/// 0 after a complete run, 2 when start-up fails or a step stops the installation. (A signal's 3 does not
/// come through here.)
int Main();
