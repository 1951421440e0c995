#pragma once

#include <utility>

#include <unistd.h>

namespace TAVO::cli {

/// Owns a file descriptor and closes it.
class Descriptor {
public:
    /// @param number negative for none.
    explicit Descriptor(int number = -1)
        : number_(number) {}
    Descriptor(Descriptor&& other) noexcept
        : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        if (this != &other) {
            close();
            number_ = std::exchange(other.number_, -1);
        }
        return *this;
    }
    ~Descriptor() { close(); }

    int number() const { return number_; }
    bool isOpen() const { return number_ >= 0; }
    void close() {
        if (number_ >= 0)
            ::close(number_);
        number_ = -1;
    }

private:
    int number_;
};

} // namespace TAVO::cli
