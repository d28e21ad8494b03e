#include "support/program_test.h"
