#include <tavo/cli/serial_link.h>

#include <algorithm>
#include <exception>
#include <utility>
#include <vector>

namespace TAVO::cli {

namespace {

constexpr int receivedAtOnce = 16 * 1024;

// Calls by name, for the operations of the proxy do not move the bytes as they are.

std::shared_ptr<Method> sending(const CommonModules::Com_v1_0& port, std::string_view bytes) {
    const auto request = std::make_shared<dto::com::SendRequest>();
    request->data.assign(bytes.begin(), bytes.end());
    return std::make_shared<Method>("send", port, dto::Params{request});
}

std::shared_ptr<BoundMethod<dto::com::RecvReply>> receiving(const CommonModules::Com_v1_0& port) {
    const auto request = std::make_shared<dto::com::RecvRequest>();
    request->value = receivedAtOnce;
    return std::make_shared<BoundMethod<dto::com::RecvReply>>("recv", port, dto::Params{request});
}

} // namespace

SerialLink::SerialLink(Session& session, std::shared_ptr<CommonModules::Com_v1_0> port,
                       const dto::com::OpenRequest& settings)
    : session_(session)
    , port_(std::move(port)) {
    session_.execute(port_->getOpenMethod(settings.value1, settings.value2, settings.flag1, settings.flag2,
                                          settings.value3, settings.flag3, settings.flag4, settings.flag5,
                                          settings.flag6));
    open_ = true;
}

SerialLink::~SerialLink() {
    try {
        close();
    } catch (const std::exception&) {
    }
}

std::string SerialLink::exchange(std::string_view bytes) {
    const auto receive = receiving(*port_);
    std::vector<std::shared_ptr<Method>> calls;
    if (!bytes.empty())
        calls.push_back(sending(*port_, bytes));
    calls.push_back(receive);
    session_.run(calls);
    for (const auto& call : calls)
        requireSuccess(*call);
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
