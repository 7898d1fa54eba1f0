// The command zf90.
#include "driver/driver.h"

int main(int argc, char **argv) { zf90::compile(argc, argv); }
