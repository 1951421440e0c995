#include <tavo/cli/share/share_socket.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <tavo/cli/failure.h>
#include <tavo/server/socket_options.h>

namespace TAVO::cli::share_socket {

namespace {

std::string folder() {
    const char* runtime = std::getenv("XDG_RUNTIME_DIR"); // NOLINT(concurrency-mt-unsafe): nothing changes it
    return runtime && *runtime == '/' ? std::string(runtime) + "/tavo" : "";
}

/// As part of a file's name.
std::string escaped(const std::string& text) {
    std::string name;
    for (const char letter : text)
        if (std::isalnum(static_cast<unsigned char>(letter)) || std::strchr("._-", letter) != nullptr)
            name += letter;
        else
            name += fmt::format("%{:02X}", static_cast<unsigned char>(letter));
    return name;
}

/// Differs for different texts, and is the same in every build (FNV-1a).
std::uint64_t fingerprint(const std::string& text) {
    std::uint64_t hash = 0xcbf29ce484222325u;
    for (const char letter : text)
        hash = (hash ^ static_cast<unsigned char>(letter)) * 0x100000001b3u;
    return hash;
}

std::string systemError() { return std::generic_category().message(errno); }

/// Whether the file, or the folder, is this user's alone.
bool isOwn(const std::string& path, mode_t kind) {
    struct stat found {};
    return ::lstat(path.c_str(), &found) == 0 && (found.st_mode & S_IFMT) == kind &&
           found.st_uid == ::geteuid() && (found.st_mode & (S_IRWXG | S_IRWXO)) == 0;
}

void makeFolder() {
    const auto path = folder();
    if (::mkdir(path.c_str(), S_IRWXU) != 0 && errno != EEXIST)
        throw Failure(ExitCode::usage, fmt::format("cannot make the folder {}: {}", path, systemError()));
    if (!isOwn(path, S_IFDIR))
        throw Failure(ExitCode::usage, fmt::format("{} is not a folder of this user alone", path));
}

std::pair<std::uintmax_t, std::uintmax_t> identityOf(const std::string& path) {
    struct stat found {};
    return ::lstat(path.c_str(), &found) == 0
               ? std::pair<std::uintmax_t, std::uintmax_t>(found.st_dev, found.st_ino)
               : std::pair<std::uintmax_t, std::uintmax_t>();
}

/// Of several shares that start or end at once, one at a time looks for the file and changes it.
class FolderLock {
public:
    FolderLock() {
        const auto path = folder() + "/lock";
        file_ =
            Descriptor(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, S_IRUSR | S_IWUSR));
        int locked = -1;
        while (file_.isOpen() && (locked = ::flock(file_.number(), LOCK_EX)) != 0 && errno == EINTR) {
        }
        if (locked != 0)
            throw Failure(ExitCode::usage, fmt::format("cannot lock {}: {}", path, systemError()));
    }

private:
    /// Closing it unlocks it.
    Descriptor file_;
};

} // namespace

std::string pathFor(const std::string& host, int port, const std::string& user, const std::string& via) {
    const auto in = folder();
    if (in.empty())
        return "";
    const auto through = via.empty() ? "" : fmt::format("~{:016x}", fingerprint(via));
    auto path = fmt::format("{}/{}@{}:{}{}.share", in, escaped(user), escaped(host), port, through);
    return path.size() < sizeof(sockaddr_un::sun_path) ? path : "";
}

Descriptor connect(const std::string& path) {
    if (path.empty() || !isOwn(folder(), S_IFDIR) || !isOwn(path, S_IFSOCK))
        return Descriptor();
    Descriptor made(::socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::copy(path.begin(), path.end(), address.sun_path);
    if (!made.isOpen() ||
        ::connect(made.number(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        return Descriptor();
    return made;
}

File::File(asio::io_context& context, std::string path)
    : path_(std::move(path))
    , acceptor_(context) {
    makeFolder();
    const FolderLock alone;
    if (connect(path_).isOpen())
        throw Failure(ExitCode::usage, fmt::format("this device is shared already: {}", path_));
    // What a share that was killed has left behind.
    ::unlink(path_.c_str());
    listen();
    identity_ = identityOf(path_);
}

void File::listen() {
    const auto mask = ::umask(S_IXUSR | S_IRWXG | S_IRWXO);
    asio::error_code failure;
    acceptor_.open({}, failure);
    if (!failure)
        acceptor_.bind(path_, failure);
    ::umask(mask);
    if (!failure)
        acceptor_.listen(asio::socket_base::max_listen_connections, failure);
    if (failure)
        throw Failure(ExitCode::usage, fmt::format("cannot listen on {}: {}", path_, failure.message()));
    server::keepFromStartedPrograms(acceptor_.native_handle());
}

File::~File() {
    try {
        const FolderLock alone;
        if (identityOf(path_) == identity_)
            ::unlink(path_.c_str());
    } catch (const Failure&) {
        // The next share replaces the file.
    }
}

} // namespace TAVO::cli::share_socket
