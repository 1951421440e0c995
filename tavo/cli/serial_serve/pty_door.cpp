#include <tavo/cli/serial_serve/pty_door.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <system_error>

#include <fcntl.h>
#include <fmt/format.h>
#include <poll.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include <tavo/cli/failure.h>
#include <tavo/cli/interrupt.h>

namespace TAVO::cli {

namespace {

using std::chrono::milliseconds;

/// How often to look whether somebody has opened the terminal, or changed its rate.
constexpr milliseconds longestLook(20);
/// While something waits for room.
constexpr milliseconds shortLook(1);

struct TerminalRate {
    speed_t code;
    std::int32_t baud;
};

constexpr TerminalRate terminalRates[] = {
    {B50, 50},           {B75, 75},           {B110, 110},         {B134, 134},         {B150, 150},
    {B200, 200},         {B300, 300},         {B600, 600},         {B1200, 1200},       {B1800, 1800},
    {B2400, 2400},       {B4800, 4800},       {B9600, 9600},       {B19200, 19200},     {B38400, 38400},
    {B57600, 57600},     {B115200, 115200},   {B230400, 230400},
#ifdef B460800
    {B460800, 460800},   {B500000, 500000},   {B576000, 576000},   {B921600, 921600},   {B1000000, 1000000},
    {B1152000, 1152000}, {B1500000, 1500000}, {B2000000, 2000000}, {B2500000, 2500000}, {B3000000, 3000000},
    {B3500000, 3500000}, {B4000000, 4000000},
#endif
};

[[noreturn]] void refuseTerminal() {
    throw Failure(ExitCode::usage,
                  fmt::format("cannot make a pseudo terminal: {}", std::generic_category().message(errno)));
}

Descriptor openMaster() {
    Descriptor master(::posix_openpt(O_RDWR | O_NOCTTY));
    if (!master.isOpen() || ::grantpt(master.number()) != 0 || ::unlockpt(master.number()) != 0 ||
        ::fcntl(master.number(), F_SETFD, FD_CLOEXEC) != 0 ||
        ::fcntl(master.number(), F_SETFL, O_NONBLOCK) != 0)
        refuseTerminal();
    return master;
}

std::string pathOfTerminal(int master) {
    std::array<char, 128> path{};
    if (::ptsname_r(master, path.data(), path.size()) != 0)
        refuseTerminal();
    return path.data();
}

} // namespace

PtyDoor::PtyDoor(std::int32_t baud, const std::string& link)
    : master_(openMaster())
    , path_(pathOfTerminal(master_.number())) {
    prepareTerminal(baud);
    if (!link.empty())
        link_.emplace(link, path_);
}

void PtyDoor::prepareTerminal(std::int32_t baud) {
    // Only a terminal that has been open tells that nobody has it open.
    const Descriptor terminal(::open(path_.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC));
    termios settings{};
    // Others of the terminals' group could write there.
    if (!terminal.isOpen() || ::fchmod(terminal.number(), S_IRUSR | S_IWUSR) != 0 ||
        ::tcgetattr(terminal.number(), &settings) != 0)
        refuseTerminal();
    ::cfmakeraw(&settings);
    const auto* const rate = std::find_if(std::begin(terminalRates), std::end(terminalRates),
                                          [baud](const TerminalRate& each) { return each.baud == baud; });
    if (rate != std::end(terminalRates))
        ::cfsetspeed(&settings, rate->code);
    if (::tcsetattr(terminal.number(), TCSANOW, &settings) != 0)
        refuseTerminal();
    rate_ = ::cfgetospeed(&settings);
}

bool PtyDoor::isOpen() const {
    pollfd watched{master_.number(), POLLIN, 0};
    return ::poll(&watched, 1, 0) >= 0 && (watched.revents & POLLHUP) == 0;
}

std::vector<std::uint8_t> PtyDoor::read() {
    std::vector<std::uint8_t> bytes(4096);
    const auto got = ::read(master_.number(), bytes.data(), bytes.size());
    // Where nobody has it open there is an error, EIO.
    bytes.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
    return bytes;
}

void PtyDoor::write() {
    while (!backlog_.isEmpty()) {
        const auto text = backlog_.text();
        const auto written = ::write(master_.number(), text.data(), text.size());
        if (written <= 0)
            return;
        backlog_.drop(static_cast<std::size_t>(written));
    }
}

void PtyDoor::followRate(const FollowRate& follow) {
    termios settings{};
    if (::tcgetattr(master_.number(), &settings) != 0)
        return;
    const auto code = ::cfgetospeed(&settings);
    // B0 hangs a telephone up.
    if (code == rate_ || code == B0)
        return;
    rate_ = code;
    const auto* const rate = std::find_if(std::begin(terminalRates), std::end(terminalRates),
                                          [code](const TerminalRate& each) { return each.code == code; });
    follow(rate != std::end(terminalRates) ? rate->baud : 0);
}

void PtyDoor::wait(milliseconds time, bool isOpen) {
    // A terminal that nobody has open is always readable.
    if (isOpen)
        InterruptWatch::waitForInput(master_.number(), time);
    else
        InterruptWatch::pause(time);
}

void PtyDoor::serve(const Door::Greet& greet, const FollowRate& follow) {
    const auto conversation = greet([this](std::span<const std::uint8_t> bytes) {
        backlog_.add({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    });
    bool wasOpen = false;
    milliseconds silence(0);
    for (;;) {
        InterruptWatch::throwIfInterrupted();
        const bool isOpen = this->isOpen();
        followRate(follow);
        if (isOpen)
            write();
        if (const auto bytes = read(); !bytes.empty()) {
            wasOpen = true;
            silence = milliseconds(0);
            if (!conversation->receive(bytes))
                return conversation->end();
            continue;
        }
        if (wasOpen && !isOpen)
            return conversation->end();
        wasOpen = isOpen;
        auto time = longestLook;
        // A program that does not read makes the board's words wait where they are.
        if (!isOpen || !backlog_.isFull()) {
            const auto next = conversation->pause(silence);
            if (!next && !isOpen)
                return conversation->end();
            if (next) {
                time = std::min(*next - silence, longestLook);
                silence = *next;
            }
        }
        if (isOpen)
            write();
        wait(isOpen && !backlog_.isEmpty() ? std::min(time, shortLook) : time, isOpen);
    }
}

} // namespace TAVO::cli
