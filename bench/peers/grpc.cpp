#include <bench/peers/python_client.h>

#include <stdexcept>

#include <grpcpp/grpcpp.h>

#include "appliance.grpc.pb.h"

namespace {

using bench::peers::Bytes;

class Served final : public PeerGrpc::Appliance::Service {
    grpc::Status Turn(grpc::ServerContext*, const PeerGrpc::Call* call, PeerGrpc::Result* result) override {
        result->set_state(call->on() ? 1 : 0);
        return grpc::Status::OK;
    }
    grpc::Status Batch(grpc::ServerContext*, const PeerGrpc::Calls* calls,
                       PeerGrpc::Results* results) override {
        for (const auto& call : calls->calls())
            results->add_results()->set_state(call.on() ? 1 : 0);
        return grpc::Status::OK;
    }
    grpc::Status Fetch(grpc::ServerContext*, const PeerGrpc::Length* length,
                       PeerGrpc::Block* block) override {
        block->mutable_data()->assign(length->length(), static_cast<char>(bench::peers::served));
        return grpc::Status::OK;
    }
    grpc::Status Store(grpc::ServerContext*, const PeerGrpc::Block* block,
                       PeerGrpc::Result* result) override {
        result->set_code(block->data().empty() ? 1 : 0);
        return grpc::Status::OK;
    }
};

class GrpcClient final : public bench::peers::Client {
public:
    explicit GrpcClient(int port)
        : appliance_(PeerGrpc::Appliance::NewStub(grpc::CreateCustomChannel(
              "127.0.0.1:" + std::to_string(port), grpc::InsecureChannelCredentials(), withoutLimits()))) {}

    unsigned turn(bool on) override {
        PeerGrpc::Call call;
        fill(call, on);
        return exchange(&PeerGrpc::Appliance::Stub::Turn, call, PeerGrpc::Result()).state();
    }
    unsigned calls(std::size_t count) override {
        std::vector<std::unique_ptr<Started>> all;
        all.reserve(count);
        for (std::size_t i = 0; i < count; ++i) {
            PeerGrpc::Call call;
            fill(call, true);
            auto& started = *all.emplace_back(std::make_unique<Started>());
            started.answer = appliance_->AsyncTurn(&started.context, call, &queue_);
            started.answer->Finish(&started.result, &started.status, &started);
        }
        unsigned sum = 0;
        for (std::size_t i = 0; i < count; ++i) {
            void* tag = nullptr;
            bool good = false;
            if (!queue_.Next(&tag, &good) || !static_cast<Started*>(tag)->status.ok())
                throw std::runtime_error("a call failed");
            sum += static_cast<Started*>(tag)->result.state();
        }
        return sum;
    }
    unsigned list(std::size_t count) override {
        PeerGrpc::Calls calls;
        calls.mutable_calls()->Reserve(static_cast<int>(count));
        for (std::size_t i = 0; i < count; ++i)
            fill(*calls.add_calls(), true);
        unsigned sum = 0;
        const auto answer = exchange(&PeerGrpc::Appliance::Stub::Batch, calls, PeerGrpc::Results());
        for (const auto& result : answer.results())
            sum += result.state();
        return sum;
    }
    std::size_t download(std::size_t length) override {
        PeerGrpc::Length request;
        request.set_length(static_cast<std::uint32_t>(length));
        return exchange(&PeerGrpc::Appliance::Stub::Fetch, request, PeerGrpc::Block()).data().size();
    }
    void upload(const Bytes& data) override {
        PeerGrpc::Block block;
        block.set_data(data.data(), data.size());
        exchange(&PeerGrpc::Appliance::Stub::Store, block, PeerGrpc::Result());
    }

private:
    struct Started {
        grpc::ClientContext context;
        PeerGrpc::Result result;
        grpc::Status status;
        std::unique_ptr<grpc::ClientAsyncResponseReader<PeerGrpc::Result>> answer;
    };

    static grpc::ChannelArguments withoutLimits() {
        grpc::ChannelArguments arguments;
        arguments.SetMaxReceiveMessageSize(-1);
        return arguments;
    }
    static void fill(PeerGrpc::Call& call, bool on) {
        call.set_object(16);
        call.set_method(4);
        call.set_on(on);
    }
    template <class Operation, class Request, class Reply>
    Reply exchange(Operation operation, const Request& request, Reply reply) {
        grpc::ClientContext context;
        if (const auto status = ((*appliance_).*operation)(&context, request, &reply); !status.ok())
            throw std::runtime_error(status.error_message());
        return reply;
    }

    std::unique_ptr<PeerGrpc::Appliance::Stub> appliance_;
    grpc::CompletionQueue queue_;
};

void serve(const std::function<void(int)>& tell) {
    Served served;
    int port = 0;
    grpc::ServerBuilder builder;
    builder.AddListeningPort("127.0.0.1:0", grpc::InsecureServerCredentials(), &port);
    builder.RegisterService(&served);
    builder.SetMaxReceiveMessageSize(-1);
    const auto server = builder.BuildAndStart();
    tell(port);
    server->Wait();
}

} // namespace

int main(int argc, char** argv) {
    return bench::peers::compareEither(
        argc, argv, {"gRPC", serve, [](int port) { return std::make_unique<GrpcClient>(port); }},
        "grpc_client.py");
}
