// The program's entry; everything else is in libraries, so that tests can link it.
#include "install/start_up.h"

int main() {
    return Main();
}
