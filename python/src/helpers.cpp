#include "helpers.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <pybind11/stl.h>

#include <tavo/toolkit/i2c.h>
#include <tavo/toolkit/jtag_scan.h>
#include <tavo/toolkit/post_codes.h>
#include <tavo/toolkit/rom.h>
#include <tavo/toolkit/svf.h>

#include "checked.h"
#include "failure.h"
#include "node.h"
#include "serial.h"
#include "values.h"

namespace TAVO::python {

namespace {

using SharedStop = std::shared_ptr<Stop>;
using Bytes = toolkit::RomMemory::Bytes;
using HWDebug::LpcRomEmulation_v1_0;

/// The content of anything with bytes in it, held as it is.
class Content {
public:
    explicit Content(const py::object& object) {
        if (PyObject_GetBuffer(object.ptr(), &view_, PyBUF_SIMPLE) != 0)
            throw py::error_already_set();
    }
    Content(const Content&) = delete;
    Content& operator=(const Content&) = delete;
    ~Content() { PyBuffer_Release(&view_); }

    std::span<const std::uint8_t> bytes() const {
        return {static_cast<const std::uint8_t*>(view_.buf), static_cast<std::size_t>(view_.len)};
    }
    std::string_view text() const {
        return {static_cast<const char*>(view_.buf), static_cast<std::size_t>(view_.len)};
    }

private:
    Py_buffer view_{};
};

/// Bytes as Python has them.
py::bytes bytesOf(const Bytes& data) { return {reinterpret_cast<const char*>(data.data()), data.size()}; }

/// A text that Python gave, surrogates as the bytes that they stand for.
std::string nameOf(const py::str& text) {
    const auto encoded = text.attr("encode")("utf-8", "surrogateescape");
    return std::string(py::cast<py::bytes>(encoded));
}

/// Runs a helper with an object of a class.
template <class Object, class Work>
void helpWith(const Node& node, const SharedStop& stop, Work work) {
    const auto object = std::dynamic_pointer_cast<Object>(node.object());
    if (!object)
        Failure::ofThisSide(node.object()->getFullName() + " is of another type").raise();
    auto& connection = *node.connection();
    ConnectionAccess access(connection);
    connection.help(stop, [&] { work(access, object); });
}

/// What is told during a transfer, if somebody wants to know.
toolkit::Progress progressTo(const Node& node, const py::object& function) {
    if (function.is_none())
        return [](std::string_view, std::uint64_t, std::uint64_t) {};
    return [&connection = *node.connection(), &function](std::string_view phase, std::uint64_t done,
                                                         std::uint64_t total) {
        connection.callBack(function, [&] { return py::make_tuple(phase, done, total); });
    };
}

py::tuple scanChain(const Node& node, const SharedStop& stop) {
    toolkit::ChainSurvey survey;
    helpWith<Object_v1_0>(node, stop, [&](toolkit::Access& access, const auto& jtag) {
        survey = toolkit::scanChain(access, *jtag);
    });
    py::list idcodes;
    for (const auto& tap : survey.taps)
        idcodes.append(tap ? py::object(py::int_(tap->value)) : py::object(py::none()));
    return py::make_tuple(idcodes, survey.instructionCapture.size(),
                          bytesOf(survey.instructionCapture.bytes()), survey.splits, survey.hasMoreSplits);
}

std::vector<std::uint32_t> detect(const Node& node, std::uint32_t first, std::uint32_t last,
                                  const SharedStop& stop) {
    std::vector<std::uint32_t> found;
    helpWith<HWDebug::I2c_v1_0>(node, stop, [&](toolkit::Access& access, const auto& bus) {
        found = toolkit::acknowledgingAddresses(access, *bus, first, last);
    });
    return found;
}

py::list takeCodes(const Node& node, const SharedStop& stop) {
    std::vector<dto::lpcPostCode::FifoEntry> entries;
    helpWith<HWDebug::LpcPostCode_v1_0>(node, stop, [&](toolkit::Access& access, const auto& receiver) {
        entries = toolkit::takeCodes(access, *receiver);
    });
    py::list codes;
    for (const auto& entry : entries)
        codes.append(py::make_tuple(entry.byte1, entry.byte2, entry.byte3, entry.value));
    return codes;
}

/// @param[out] notes gets what has been done, if this raises after something was changed.
bool loadRom(const Node& node, const py::object& image, const py::str& name,
             const toolkit::RomLoadOptions& options, const py::object& progress, const SharedStop& stop,
             py::list& notes) {
    const Content content(image);
    const auto file = nameOf(name);
    const auto told = progressTo(node, progress);
    std::string state;
    bool enabled = false;
    try {
        helpWith<LpcRomEmulation_v1_0>(node, stop, [&](toolkit::Access& access, const auto& rom) {
            toolkit::RomLoading loading(access, rom, content.bytes(), file, options);
            try {
                loading.run(told);
            } catch (...) {
                state = loading.stateText();
                throw;
            }
            enabled = loading.isEnabled();
        });
    } catch (...) {
        if (!state.empty())
            notes.append(state);
        throw;
    }
    return enabled;
}

/// @param write takes each chunk.
std::uint64_t saveRom(const Node& node, const py::object& write, std::uint32_t offset,
                      std::optional<std::uint32_t> wanted, const py::object& progress,
                      const SharedStop& stop) {
    std::uint64_t length = 0;
    const auto told = progressTo(node, progress);
    helpWith<LpcRomEmulation_v1_0>(node, stop, [&](toolkit::Access& access, const auto& rom) {
        toolkit::RomMemory memory(access, rom);
        length = wanted.value_or(memory.size() - std::min(offset, memory.size()));
        memory.require(offset, length);
        memory.read(
            "reading", offset, static_cast<std::uint32_t>(length),
            [&](std::uint32_t, const Bytes& data) {
                node.connection()->callBack(write, [&] { return py::make_tuple(bytesOf(data)); });
            },
            told);
    });
    return length;
}

void verifyRom(const Node& node, const py::object& image, const py::str& name, std::uint32_t offset,
               const py::object& progress, const SharedStop& stop) {
    const Content content(image);
    const auto file = nameOf(name);
    const auto told = progressTo(node, progress);
    helpWith<LpcRomEmulation_v1_0>(node, stop, [&](toolkit::Access& access, const auto& rom) {
        toolkit::RomMemory memory(access, rom);
        memory.require(offset, content.bytes().size());
        memory.compare(offset, content.bytes(), file, told);
    });
}

toolkit::svf::StopAt stopAtOf(const std::string& word) {
    using toolkit::svf::StopAt;
    return word == "batch" ? StopAt::batch : word == "end" ? StopAt::end : StopAt::check;
}

/// The same failure, with where in the file it happened.
std::exception_ptr placed(const std::string& place) {
    const auto failure = std::current_exception();
    auto known = Failure::of(failure);
    if (!known || known->kind == "Mismatch" || place.empty())
        return failure;
    known->text = place + ": " + known->text;
    return std::make_exception_ptr(KnownFailure(std::move(*known)));
}

py::dict playSvf(const Node& node, const py::object& text, const py::str& name, const std::string& stopAt,
                 std::int32_t retries, bool compares, const py::object& progress, const SharedStop& stop,
                 py::list& notes) {
    const Content content(text);
    const auto file = nameOf(name);
    const auto told = progressTo(node, progress);
    std::string warning;
    std::optional<toolkit::SvfPlay> play;
    ConnectionAccess access(*node.connection());
    try {
        node.connection()->help(stop, [&] {
            const auto total = content.bytes().size();
            toolkit::svf::PlanOptions options{.stopAt = stopAtOf(stopAt),
                                              .retries = retries,
                                              .compares = compares,
                                              .checkpoint = [&] { access.throwIfStopped(); }};
            toolkit::measureSvf(content.text(), file, options);
            play.emplace(access, node.object(), content.text(), file, std::move(options),
                         toolkit::SvfPlay::Hooks{[&](std::size_t done) { told("playing", done, total); },
                                                 [&](const std::exception& failure) {
                                                     warning = "the options of " +
                                                               node.object()->getFullName() +
                                                               " are not restored: " + failure.what();
                                                 }});
            told("playing", 0, total);
            try {
                play->run();
            } catch (...) {
                std::rethrow_exception(placed(play->place()));
            }
        });
    } catch (...) {
        if (!warning.empty())
            notes.append(textOf(warning));
        throw;
    }
    py::list others;
    for (const auto& other : play->otherFrequencies())
        others.append(py::make_tuple(other.line, other.asked, other.set));
    const auto& totals = play->totals();
    py::dict result;
    result["statements"] = totals.statements;
    result["scans"] = totals.scans;
    result["checked_scans"] = totals.checkedScans;
    result["bits"] = totals.bits;
    result["wait_seconds"] = std::chrono::duration<double>(totals.waits).count();
    result["exchanges"] = play->exchanges();
    result["seconds"] = play->time().count();
    result["frequency"] = play->frequency();
    result["other_frequencies"] = py::tuple(others);
    return result;
}

} // namespace

void addHelpers(py::module_& module) {
    py::class_<Stop, SharedStop>(module, "Stop")
        .def(py::init<>())
        .def("interrupt", checked(&Stop::interrupt));
    module.def("scan_chain", scanChain);
    module.def("detect", detect);
    module.def("take_codes", takeCodes);
    module.def("load_rom", [](const Node& node, const py::object& image, const py::str& name,
                              std::uint32_t offset, bool verify, bool enable, bool live,
                              const py::object& progress, const SharedStop& stop, py::list notes) {
        return loadRom(node, image, name,
                       {.offset = offset, .verifies = verify, .enables = enable, .isLive = live}, progress,
                       stop, notes);
    });
    module.def("save_rom", saveRom);
    module.def("verify_rom", verifyRom);
    module.def("play_svf", playSvf);
    addSerial(module);
}

} // namespace TAVO::python
