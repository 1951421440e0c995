#include <tavo/c/last_error.h>

#include <new>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include <tavo/c/refusal.h>
#include <tavo/client/wire/error.h>

namespace TAVO::c {

namespace {

struct Failure {
    tavo_status status = TAVO_ERROR;
    std::string message;
    std::string method = {};
    std::string lockingUser = {};
    std::int64_t deviceErrorCode = -1;
    std::int64_t callIndex = -1;
    bool connectionUsable = true;
};

constexpr tavo_error plain(tavo_status status, const char* message, bool connectionUsable) {
    return {status, message, "", "", -1, -1, connectionUsable, 0};
}

constexpr tavo_error success = plain(TAVO_OK, "", true);

struct LastError {
    tavo_error told = success;
    Failure texts;
};

LastError& mine() noexcept {
    thread_local LastError error;
    return error;
}

/// A message may quote an argument of any size.
std::string shortened(std::string message) {
    constexpr std::size_t longest = 4096;
    if (message.size() > longest)
        message.replace(longest, std::string::npos, "...");
    return message;
}

tavo_status statusOf(const NetworkError& error) {
    const std::string_view text = error.what();
    if (text == "Call to device timed out.")
        return TAVO_ERROR_TIMED_OUT;
    if (text == "Call to device interrupted.")
        return TAVO_ERROR_INTERRUPTED;
    return TAVO_ERROR_NETWORK;
}

tavo_status statusOf(const Error& error) {
    return error.facts().origin == ErrorOrigin::device ? TAVO_ERROR_DEVICE : TAVO_ERROR;
}

Failure failureWith(tavo_status status, const Error& error) {
    const auto& facts = error.facts();
    Failure failure{status, shortened(error.what()), shortened(facts.method)};
    if (facts.deviceErrorCode)
        failure.deviceErrorCode = *facts.deviceErrorCode;
    failure.connectionUsable = facts.connectionUsable;
    return failure;
}

Failure describeException() {
    try {
        throw;
    } catch (const Refusal& error) {
        Failure failure{error.status, shortened(error.what())};
        failure.callIndex = error.callIndex;
        return failure;
    } catch (const LockError& error) {
        auto failure = failureWith(TAVO_ERROR_LOCKED, error);
        failure.lockingUser = shortened(error.lockingUser());
        return failure;
    } catch (const ExecutionError& error) {
        auto failure = failureWith(TAVO_ERROR_EXECUTION, error);
        failure.callIndex = static_cast<std::int64_t>(error.failedMethodIndex());
        return failure;
    } catch (const TAVOLoginError& error) {
        return failureWith(TAVO_ERROR_LOGIN, error);
    } catch (const TAVOKeyError& error) {
        return failureWith(TAVO_ERROR_KEY, error);
    } catch (const ConfigurationError& error) {
        return failureWith(TAVO_ERROR_CONFIGURATION, error);
    } catch (const SpecificationError& error) {
        return failureWith(TAVO_ERROR_SPECIFICATION, error);
    } catch (const NetworkError& error) {
        return failureWith(statusOf(error), error);
    } catch (const Error& error) {
        return failureWith(statusOf(error), error);
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::length_error&) {
        throw std::bad_alloc();
    } catch (const std::exception& error) {
        return {TAVO_ERROR, shortened(error.what())};
    } catch (...) {
        return {TAVO_ERROR, "unknown failure"};
    }
}

bool isWorthRetrying(tavo_status status) {
    return status == TAVO_ERROR_NETWORK || status == TAVO_ERROR_TIMED_OUT ||
           status == TAVO_ERROR_INTERRUPTED || status == TAVO_ERROR_LOCKED;
}

} // namespace

const tavo_error& lastError() noexcept { return mine().told; }

tavo_status noteSuccess() noexcept {
    mine().told = success;
    return TAVO_OK;
}

tavo_status noteFailure() noexcept {
    auto& last = mine();
    try {
        last.texts = describeException();
        const auto& texts = last.texts;
        last.told = {texts.status,           texts.message.c_str(),
                     texts.method.c_str(),   texts.lockingUser.c_str(),
                     texts.deviceErrorCode,  texts.callIndex,
                     texts.connectionUsable, isWorthRetrying(texts.status)};
    } catch (...) {
        last.told = plain(TAVO_ERROR_NO_MEMORY, "out of memory", false);
    }
    return last.told.status;
}

} // namespace TAVO::c
