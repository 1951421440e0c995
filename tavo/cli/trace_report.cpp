#include <tavo/cli/trace_report.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <memory>
#include <numeric>
#include <optional>

#include <tavo/cli/values/value_output.h>
#include <tavo/client/wire/input_stream.h>
#include <tavo/trace/secrets.h>

namespace TAVO::cli {

namespace {

using Milliseconds = std::chrono::duration<double, std::milli>;

std::vector<std::uint8_t> blanked(std::vector<std::uint8_t> bytes, trace::SecretFields secrets) {
    for (std::size_t begin = 0; begin < bytes.size();) {
        const auto run = secrets.next(std::span(bytes).subspan(begin));
        if (run.isSecret)
            std::fill_n(bytes.begin() + static_cast<std::ptrdiff_t>(begin), run.length, trace::blank);
        begin += run.length;
    }
    return bytes;
}

/// A record as it was read; empty where it cannot be read as a whole.
template <class Packet>
std::shared_ptr<Packet> recordIn(const TAVOXTranscode::RecordDescription<Packet>& description,
                                 TAVOX::InputStream& in) {
    const auto packet = description.create();
    description.read(in, *packet);
    return in.failed() ? nullptr : packet;
}

/// What is known of one call.
class ShownCall {
public:
    ShownCall(const trace::RecordedCall& call, const trace::Names& names)
        : call_(call)
        , row_(names.row(call.id))
        , name_(names.nameOf(call.id)) {
        if (row_ && row_->request && call.parameters.size() == call.parameterSize) {
            const auto bytes = blanked(call.parameters, trace::secretParameters(names, call.id));
            TAVOX::InputStream in(bytes.data(), bytes.size());
            parameters_ = recordIn(*row_->request, in);
        }
        if (!call.hasResult || call.result.size() < sizeof(std::uint32_t))
            return;
        const auto bytes = blanked(call.result, trace::secretResult(names, call.id));
        TAVOX::InputStream in(bytes.data(), bytes.size());
        code_ = in.readInt32();
        if (row_ && row_->reply && call.isWhole())
            reply_ = recordIn(*row_->reply, in);
    }

    const std::string& name() const { return name_; }
    const std::optional<std::int32_t>& code() const { return code_; }

    void write(TextWriter& text) const {
        text.print("{}(", name_);
        if (parameters_)
            writeValue(text, row_->request->view(*parameters_));
        else if (call_.parameterSize > 0)
            text.print("{} bytes", call_.parameterSize);
        text.write(")");
        if (code_)
            text.print(" -> {}", *code_);
        if (reply_) {
            text.write(" ");
            writeValue(text, row_->reply->view(*reply_));
        } else if (call_.resultSize > sizeof(std::uint32_t)) {
            text.print(" {} bytes", call_.resultSize - sizeof(std::uint32_t));
        }
    }

    /// @param exchange writes what is the same for all calls of it; its keys come between those of the call.
    template <class WriteExchange>
    void write(JsonWriter& json, WriteExchange exchange) const {
        json.key("call").text(name_);
        json.key("code");
        if (code_)
            json.number(*code_);
        else
            json.null();
        exchange();
        json.key("instanceId").number(call_.id.instanceId);
        json.key("methodId").number(call_.id.methodId);
        json.key("parameterBytes").number(call_.parameterSize);
        json.key("parameters");
        if (parameters_)
            writeValue(json, row_->request->view(*parameters_));
        else
            json.null();
        json.key("result");
        if (reply_)
            writeValue(json, row_->reply->view(*reply_));
        else
            json.null();
        json.key("resultBytes").number(call_.resultSize);
    }

private:
    const trace::RecordedCall& call_;
    const TAVOXTranscode::MethodRow* row_;
    std::string name_;
    std::optional<std::int32_t> code_;
    std::shared_ptr<dto::request_packet> parameters_;
    std::shared_ptr<dto::reply_packet> reply_;
};

/// Times of a file may be anything: they wrap around instead of being undefined.
std::chrono::nanoseconds elapsed(std::chrono::nanoseconds begin, std::chrono::nanoseconds end) {
    return std::chrono::nanoseconds(static_cast<std::int64_t>(static_cast<std::uint64_t>(end.count()) -
                                                              static_cast<std::uint64_t>(begin.count())));
}

/// The error concerns the call behind those with results.
bool isBlamed(const trace::Exchange& exchange, std::size_t call) {
    if (!exchange.error)
        return false;
    std::size_t results = 0;
    while (results < exchange.calls.size() && exchange.calls[results].hasResult)
        ++results;
    return call + 1 == std::max<std::size_t>(results, 1);
}

/// The value behind that part of the sorted ones.
double quantile(const std::vector<double>& sorted, double part) {
    const auto place = std::llround(part * static_cast<double>(sorted.size() - 1));
    return sorted[static_cast<std::size_t>(place)];
}

} // namespace

void showExchange(Output& output, const trace::Exchange& exchange, const trace::Names& names,
                  std::chrono::nanoseconds start) {
    const auto begin = Milliseconds(elapsed(start, exchange.begin)).count();
    const auto took = Milliseconds(elapsed(exchange.begin, exchange.end)).count();
    for (std::size_t i = 0; i < exchange.calls.size(); ++i) {
        const ShownCall call(exchange.calls[i], names);
        const bool blamed = isBlamed(exchange, i);
        output.showNext(
            [&](JsonWriter& json) {
                json.object([&] {
                    json.key("answered").flag(exchange.isAnswered);
                    json.key("at").write(begin);
                    json.key("batch").number(exchange.calls.size());
                    call.write(json, [&] {
                        json.key("conversation").number(exchange.conversation);
                        json.key("error");
                        if (blamed)
                            json.object([&] {
                                json.key("code").number(exchange.error->code);
                                json.key("message").text(exchange.error->message);
                            });
                        else
                            json.null();
                        json.key("exchangeMilliseconds").write(took);
                    });
                });
            },
            [&](TextWriter& text) {
                text.print("{:12.3f} ms  ", begin);
                call.write(text);
                if (blamed)
                    text.print(" error {}: {}", exchange.error->code, exchange.error->message);
                if (!exchange.isAnswered)
                    text.write("  no reply\n");
                else if (exchange.calls.size() == 1)
                    text.print("  {:.3f} ms\n", took);
                else
                    text.print("  {:.3f} ms, call {} of {}\n", took, i + 1, exchange.calls.size());
            });
    }
}

void CallTimes::add(const trace::Exchange& exchange, const trace::Names& names) {
    if (!exchange.isAnswered || exchange.calls.empty())
        return;
    const auto each = Milliseconds(elapsed(exchange.begin, exchange.end)).count() /
                      static_cast<double>(exchange.calls.size());
    for (const auto& call : exchange.calls)
        milliseconds_[names.nameOf(call.id)].push_back(each);
}

void CallTimes::show(Output& output) const {
    struct Line {
        std::string method;
        std::size_t count;
        double median, p90, most, sum;
    };
    std::vector<Line> lines;
    double whole = 0;
    std::size_t width = 6;
    for (const auto& [method, times] : milliseconds_) {
        auto sorted = times;
        std::ranges::sort(sorted);
        const auto sum = std::accumulate(sorted.begin(), sorted.end(), 0.0);
        lines.push_back(
            {method, sorted.size(), quantile(sorted, 0.5), quantile(sorted, 0.9), sorted.back(), sum});
        whole += sum;
        width = std::max(width, method.size());
    }
    std::ranges::stable_sort(lines, [](const Line& a, const Line& b) { return a.sum > b.sum; });
    const auto share = [whole](const Line& line) { return whole > 0 ? line.sum / whole : 0.0; };
    output.show(
        [&](JsonWriter& json) {
            json.array([&] {
                for (const auto& line : lines)
                    json.object([&] {
                        json.key("count").number(line.count);
                        json.key("max").write(line.most);
                        json.key("median").write(line.median);
                        json.key("method").text(line.method);
                        json.key("p90").write(line.p90);
                        json.key("share").write(share(line));
                    });
            });
        },
        [&](TextWriter& text) {
            const auto gap = [width](std::size_t used) {
                return std::string(width - std::min(width, used), ' ');
            };
            text.print("method{}     count  median ms     p90 ms     max ms   share\n", gap(6));
            for (const auto& line : lines)
                text.print("{}{}  {:8}  {:9.3f}  {:9.3f}  {:9.3f}  {:5.1f}%\n", line.method,
                           gap(line.method.size()), line.count, line.median, line.p90, line.most,
                           100 * share(line));
        });
}

} // namespace TAVO::cli
