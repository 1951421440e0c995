#include <tavo/cli/serial_link.h>

#include <algorithm>
#include <exception>
#include <utility>
#include <vector>

namespace TAVO::cli {

namespace {

namespace com_v1_0 = CommonModules::TAVOXTranscode::com_v1_0;

constexpr int receivedAtOnce = 16 * 1024;

} // namespace

SerialLink::SerialLink(Session& session, std::shared_ptr<CommonModules::Com_v1_0> port,
                       const dto::com::OpenRequest& settings)
    : session_(session)
    , port_(std::move(port)) {
    session_.execute(*port_, com_v1_0::open, settings);
    open_ = true;
}

SerialLink::~SerialLink() {
    try {
        close();
    } catch (const std::exception&) {
    }
}

std::string SerialLink::exchange(std::string_view bytes) {
    // The proxy's own operations convert the bytes, so call the methods directly.
    const auto receive = port_->make(com_v1_0::recv, receivedAtOnce);
    std::vector<std::shared_ptr<Method>> calls;
    if (!bytes.empty())
        calls.push_back(port_->make(com_v1_0::send, std::vector<std::uint8_t>(bytes.begin(), bytes.end())));
    calls.push_back(receive);
    session_.runAll(calls);
    const auto data = receive->take().data;
    return {data.begin(), data.end()};
}

void SerialLink::close() {
    if (std::exchange(open_, false))
        session_.release(port_->getCloseMethod());
}

bool TextWatch::sees(std::string_view bytes) {
    if (seen_ || wanted_.empty())
        return seen_;
    end_ += bytes;
    seen_ = end_.find(wanted_) != std::string::npos;
    end_.erase(0, end_.size() - std::min(end_.size(), wanted_.size() - 1));
    return seen_;
}

} // namespace TAVO::cli
