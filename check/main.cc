// The program Check: looks at the host before or after an installation, and changes nothing.
#include "check/check.h"

int main(int argc, char** argv) {
    SStringList arguments;
    for (int i = 1; i < argc; ++i) arguments.Push(SString(argv[i]));
    return Check(arguments);
}
