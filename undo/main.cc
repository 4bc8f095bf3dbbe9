// The program Undo: takes the changes of a run of Install back, or lists the runs that are recorded.
#include "undo/undo.h"

int main(int argc, char** argv) {
    SStringList arguments;
    for (int i = 1; i < argc; ++i) arguments.Push(SString(argv[i]));
    return Undo(arguments);
}
