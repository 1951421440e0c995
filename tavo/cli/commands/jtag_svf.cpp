#include <tavo/cli/commands/jtag.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include <fmt/format.h>

#include <tavo/cli/borrowed_port.h>
#include <tavo/cli/files.h>
#include <tavo/cli/progress_bar.h>
#include <tavo/cli/values/visible_text.h>
#include <tavo/toolkit/svf.h>

namespace TAVO::cli {

namespace {

namespace svf = jtag::svf;

double secondsOf(std::chrono::duration<double> time) { return time.count(); }

svf::PlanOptions planOptions(const JtagSvfOptions& options) {
    svf::PlanOptions plan{.retries = options.retry.value_or(0),
                          .compares = !options.noCheck,
                          .checkpoint = InterruptWatch::throwIfInterrupted};
    if (options.stopAt == "batch")
        plan.stopAt = svf::StopAt::batch;
    else if (options.stopAt == "end")
        plan.stopAt = svf::StopAt::end;
    return plan;
}

/// @throws Failure (usage) for a file that cannot be played.
svf::Totals measured(const std::string& text, const JtagSvfOptions& options) {
    try {
        return toolkit::measureSvf(text, options.file, planOptions(options));
    } catch (const svf::SvfError& error) {
        throw Failure(ExitCode::usage, error.what());
    }
}

nlohmann::json documentOf(const svf::Totals& totals, const JtagSvfOptions& options) {
    return {{"bits", totals.bits},
            {"checkedScans", totals.checkedScans},
            {"dryRun", options.dryRun},
            {"file", options.file},
            {"scans", totals.scans},
            {"statements", totals.statements},
            {"waitSeconds", secondsOf(totals.waits)}};
}

void write(TextWriter& text, const svf::Totals& totals) {
    text.print("statements  {}\nscans       {}, checked {}\nbits        {}\nwaits       {:.6f} s\n",
               totals.statements, totals.scans, totals.checkedScans, totals.bits, secondsOf(totals.waits));
}

void play(toolkit::SvfPlay& svfPlay) {
    try {
        svfPlay.run();
    } catch (const svf::SvfError& error) {
        throw Failure(ExitCode::usage, error.what());
    } catch (const svf::Mismatch& mismatch) {
        throw Failure(ExitCode::refused, mismatch.what());
    } catch (const Failure& failure) {
        const auto place = svfPlay.place();
        throw Failure(failure.code, fmt::format("{}{}{}", place, place.empty() ? "" : ": ", failure.what()),
                      failure.returned);
    }
}

} // namespace

void JtagSvfOptions::describe(OptionList& list) {
    list.add("file", file, "SVF file; - is standard input", {.required = true, .kind = ValueKind::file});
    list.add("--stop-at", stopAt,
             "How far to go before what came is compared: after a checked scan nothing but more of\n"
             "them, 100 checked scans, or the whole file",
             {.showsDefault = true, .choices = {"check", "batch", "end"}});
    list.add("--retry", retry, "Repeat a checked scan on the device while it differs, up to N times",
             {.limits = positive(), .valueName = "N"});
    list.add("--no-check", noCheck, "Compare nothing", {.excludes = {"--retry"}});
    list.add("--dry-run", dryRun, "Read the file and tell what it does, without a device");
    list.add("--stats", stats, "Tell exchanges, scans, bits and time");
}

void measureSvf(Output& output, const JtagSvfOptions& options) {
    const auto totals = measured(readFile(options.file), options);
    output.show(documentOf(totals, options), [&](TextWriter& text) { write(text, totals); });
}

void playSvf(Session& session, Output& output, const JtagSvfOptions& options) {
    const auto text = readFile(options.file);
    // Nothing is sent of a file that cannot be played.
    measured(text, options);

    const auto jtag = chooseJtag(session, options);
    SessionAccess access(session);
    std::optional<ProgressBar> bar;
    toolkit::SvfPlay svfPlay(access, jtag, text, options.file, planOptions(options),
                             {[&](std::size_t done) { bar->show(done); },
                              [&](const std::exception& failure) {
                                  bar.reset();
                                  warnOfOptions(output, *jtag, failure);
                              }});
    bar.emplace("playing", text.size());
    play(svfPlay);
    bar.reset();

    const auto& totals = svfPlay.totals();
    auto document = documentOf(totals, options);
    document["exchanges"] = svfPlay.exchanges();
    document["frequency"] = svfPlay.frequency();
    document["object"] = jtag->getFullName();
    document["seconds"] = svfPlay.time().count();
    auto others = nlohmann::json::array();
    for (const auto& other : svfPlay.otherFrequencies())
        others.push_back({{"asked", other.asked}, {"line", other.line}, {"set", other.set}});
    document["otherFrequencies"] = std::move(others);
    output.show(document, [&](TextWriter& writer) {
        writer.print("{}: {} scans, {} of them checked\n", visible(options.file), totals.scans,
                     totals.checkedScans);
        if (!options.stats)
            return;
        write(writer, totals);
        writer.print("exchanges   {}\ntime        {:.3f} s\nTCK         {} Hz\n", svfPlay.exchanges(),
                     svfPlay.time().count(), svfPlay.frequency());
        for (const auto& other : svfPlay.otherFrequencies())
            writer.print("line {}: FREQUENCY asks for {} Hz, TCK has {} Hz\n", other.line, other.asked,
                         other.set);
    });
}

} // namespace TAVO::cli
