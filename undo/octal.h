// Permission bits for people: "3775".
#pragma once

#include <sys/types.h>

#include "support/text/sstring.h"

SString Octal(mode_t bits);
