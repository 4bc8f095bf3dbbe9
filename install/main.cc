#include "install/start_up.h"

int main() {
    return Main();
}
