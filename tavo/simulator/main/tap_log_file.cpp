#include <tavo/simulator/main/tap_log_file.h>

#include <cerrno>
#include <functional>
#include <stdexcept>
#include <system_error>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include <tavo/simulator/models/tap_log.h>
#include <tavo/simulator/objects/jtag.h>
#include <tavo/simulator/vcd_writer.h>

namespace {

using namespace TAVO::simulator;

constexpr std::size_t bufferBytes = std::size_t{1} << 16;

std::vector<Jtag*> jtagsOf(const Appliance& appliance) {
    std::vector<Jtag*> found;
    const auto addBelow = [&](const auto& addAll, const auto& members) -> void {
        for (const auto& member : members) {
            if (auto* jtag = dynamic_cast<Jtag*>(member.get()))
                found.push_back(jtag);
            addAll(addAll, member->members());
        }
    };
    addBelow(addBelow, appliance.rootMembers());
    return found;
}

/// Lines that are in the file when the call is over.
class FlushedLog : public TapLog {
public:
    FlushedLog(const std::string& name, Sink sink, std::function<void()> flush)
        : TapLog(name, std::move(sink))
        , flush_(std::move(flush)) {}
    void callEnded() override { flush_(); }

private:
    std::function<void()> flush_;
};

class DumpScope : public TapObserver {
public:
    DumpScope(std::shared_ptr<VcdWriter> dump, std::size_t scope, std::function<void()> flush)
        : dump_(std::move(dump))
        , scope_(scope)
        , flush_(std::move(flush)) {}
    void clock(TapState, bool tms, bool tdi, bool tdo) override { dump_->clock(scope_, tms, tdi, tdo); }
    void trst(TapState, bool level) override { dump_->trst(scope_, level); }
    void callEnded() override {
        dump_->flush();
        flush_();
    }

private:
    std::shared_ptr<VcdWriter> dump_;
    std::size_t scope_;
    std::function<void()> flush_;
};

} // namespace

TapLogFile::TapLogFile(std::string path, Appliance& appliance)
    : path_(std::move(path))
    , file_(std::fopen(path_.c_str(), "wb"), std::fclose) {
    if (!file_)
        throw std::runtime_error(complaint(errno));
    std::setvbuf(file_.get(), nullptr, _IOFBF, bufferBytes);
    if (path_.ends_with(".vcd"))
        followAsDump(appliance);
    else
        followInLines(appliance);
    flush();
    isServing_ = true;
}

void TapLogFile::followInLines(Appliance& appliance) {
    for (auto* jtag : jtagsOf(appliance))
        jtag->port().setObserver(std::make_shared<FlushedLog>(
            jtag->fullName(), [this](std::string_view text) { write(text); }, [this] { flush(); }));
}

void TapLogFile::followAsDump(Appliance& appliance) {
    const auto jtags = jtagsOf(appliance);
    std::vector<std::string> names;
    names.reserve(jtags.size());
    for (const auto* jtag : jtags)
        names.push_back(jtag->fullName());
    const auto dump = std::make_shared<VcdWriter>(names, [this](std::string_view text) { write(text); });
    dump->flush();
    for (std::size_t scope = 0; scope < jtags.size(); ++scope)
        jtags[scope]->port().setObserver(std::make_shared<DumpScope>(dump, scope, [this] { flush(); }));
}

void TapLogFile::write(std::string_view text) {
    if (!hasFailed_)
        check(std::fwrite(text.data(), 1, text.size(), file_.get()) == text.size());
}

void TapLogFile::flush() {
    if (!hasFailed_)
        check(std::fflush(file_.get()) == 0);
}

bool TapLogFile::close() {
    auto* file = file_.release();
    if (std::fclose(file) != 0 && !hasFailed_)
        check(false);
    return !hasFailed_;
}

void TapLogFile::check(bool written) {
    if (written)
        return;
    const auto text = complaint(errno);
    hasFailed_ = true;
    if (!isServing_)
        throw std::runtime_error(text);
    std::fputs(fmt::format("tavo-sim: {}; nothing more is written to it\n", text).c_str(), stderr);
}

std::string TapLogFile::complaint(int error) const {
    return fmt::format("cannot write '{}': {}", path_, std::generic_category().message(error));
}
