// The path by which tests are built without the tool.
#include <tavo/cli/values/json_value.cpp> // NOLINT(bugprone-suspicious-include)
