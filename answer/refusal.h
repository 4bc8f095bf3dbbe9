// Which answers a question does not take, as far as that can be told before it is asked.
#pragma once

#include "install/questions.h"
#include "support/text/sstring.h"

/// Why the question would not take the answer; empty if it would. Never shows the answer, which may be a
/// secret in the wrong place.
SString Refusal(const Question& question, const SString& answer);
