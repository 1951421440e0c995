#pragma once

#include <chrono>
#include <thread>

#include "connection.h"
#include "failure.h"

namespace TAVO::python {

/// The right to use the device, of one thread.
class Connection::Turn {
public:
    explicit Turn(Connection& connection)
        : connection_(connection) {
        if (connection.owner_ == std::this_thread::get_id()) {
            PyErr_SetString(PyExc_RuntimeError, "the device is in the middle of a call of this thread");
            throw py::error_already_set();
        }
        while (!connection.turn_.try_lock()) {
            bool wentOn = true;
            {
                NoGil outside;
                if (connection.turn_.try_lock_for(pauseOfTurn))
                    break;
                wentOn = outside.handleSignals();
            }
            if (!wentOn)
                throw py::error_already_set();
            if (process::isEnding())
                Failure::ofThisSide("the interpreter is ending").raise();
        }
        connection.owner_ = std::this_thread::get_id();
    }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;
    ~Turn() {
        connection_.owner_ = std::thread::id();
        connection_.turn_.unlock();
    }

private:
    static constexpr std::chrono::milliseconds pauseOfTurn{50};

    Connection& connection_;
};

} // namespace TAVO::python
