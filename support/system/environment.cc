#include "support/system/environment.h"

#include <unistd.h>

#include <cstdlib>

SString GetEnv(const char* name) {
    return SString(getenv(name));
}

void PutEnv(const SString& name, const SString& value) {
    setenv(name.CString(), value.CString(), 1);
}

SString ProcessIdString() {
    return SString(getpid());
}
