#pragma once

// The path by which tests outside tests/cli include it.
#include <tavo/cli/values/json_value.h>
