#pragma once

#include <string>

#include <tavo/cli/secret.h>

namespace TAVO::cli {

/// Who takes the lock.
struct Account {
    std::string user;
    Secret password;
};

} // namespace TAVO::cli
