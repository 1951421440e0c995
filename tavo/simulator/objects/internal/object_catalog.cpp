#include <map>
#include <string_view>
#include <utility>

#include <tavo/client/object/method_tables.h>
#include <tavo/client/object/version.h>
#include <tavo/simulator/internal/library_types.h>
#include <tavo/simulator/models/eeprom.h>
#include <tavo/simulator/models/spd_image.h>
#include <tavo/simulator/models/temperature_sensor.h>
#include <tavo/simulator/objects/cfa633.h>
#include <tavo/simulator/objects/com.h>
#include <tavo/simulator/objects/gpu.h>
#include <tavo/simulator/objects/hdt.h>
#include <tavo/simulator/objects/i2c.h>
#include <tavo/simulator/objects/internal/json_entries.h>
#include <tavo/simulator/objects/internal/object_description.h>
#include <tavo/simulator/objects/internal/tap_entries.h>
#include <tavo/simulator/objects/jtag.h>
#include <tavo/simulator/objects/lpc.h>
#include <tavo/simulator/objects/rack.h>
#include <tavo/simulator/objects/relay.h>

namespace TAVO::simulator {

namespace {

using Made = std::unique_ptr<SimulatedObject>;

struct Request {
    Appliance& appliance;
    const std::string& type;
    const std::string& version;
    JsonEntries options;
};

std::vector<std::uint8_t> bytesOfHex(const std::string& text) {
    constexpr std::string_view digits = "0123456789abcdefABCDEF";
    if (text.size() % 2 != 0 || text.find_first_not_of(digits) != std::string::npos)
        throw std::invalid_argument("'content' must be an even number of hexadecimal digits");
    std::vector<std::uint8_t> bytes;
    for (std::size_t i = 0; i < text.size(); i += 2)
        bytes.push_back(static_cast<std::uint8_t>(std::stoul(text.substr(i, 2), nullptr, 16)));
    return bytes;
}

std::shared_ptr<I2cDevice> makeI2cDevice(const std::shared_ptr<Board>& board, const std::string& kind,
                                         bool needsPower, std::vector<std::uint8_t> content) {
    const auto now = [board] { return board->now(); };
    std::function<bool()> powered;
    if (needsPower)
        powered = [board] { return board->powered(); };
    if (kind == "spd")
        return std::make_shared<Eeprom>(Eeprom::bytes256, spdImage(), now, powered);
    if (kind == "eeprom256")
        return std::make_shared<Eeprom>(Eeprom::bytes256, std::move(content), now, powered);
    if (kind == "eeprom64k")
        return std::make_shared<Eeprom>(Eeprom::kilobytes64, std::move(content), now, powered);
    if (kind == "temperature")
        return std::make_shared<TemperatureSensor>(board);
    throw std::invalid_argument("there is no I2C device '" + kind +
                                "', only spd, eeprom256, eeprom64k, temperature");
}

void attachDevice(I2c& i2c, const std::shared_ptr<Board>& board, const nlohmann::json& description) {
    JsonEntries entries(description);
    const auto address = entries.require<std::int64_t>("address", "a number from 0 to 127");
    const auto kind = entries.require<std::string>("kind", "text");
    const auto needsPower = entries.take<bool>("needsPower", "true or false", true);
    auto content = bytesOfHex(entries.take<std::string>("content", "hexadecimal digits", ""));
    entries.finish();
    if (address < 0 || address > 0x7F)
        throw std::invalid_argument("'address' is " + std::to_string(address) +
                                    ": expected a number from 0 to 127");
    i2c.bus().attach(static_cast<std::uint8_t>(address),
                     makeI2cDevice(board, kind, needsPower, std::move(content)));
}

Made makeI2c(Request& request) {
    const auto& board = request.appliance.board();
    auto i2c = std::make_unique<I2c>(board);
    const auto* devices = request.options.find("devices");
    if (!devices) {
        i2c->attachStandardDevices();
        return i2c;
    }
    if (!devices->is_array())
        throw std::invalid_argument("'devices' is " + devices->dump() + ": expected a list");
    for (std::size_t i = 0; i < devices->size(); ++i)
        try {
            attachDevice(*i2c, board, (*devices)[i]);
        } catch (const std::invalid_argument& error) {
            throw std::invalid_argument("devices[" + std::to_string(i) + "]: " + error.what());
        }
    return i2c;
}

Made makeRelay(Request& request) {
    auto relay = std::make_unique<Relay>();
    const auto drives = request.options.take<std::string>("drives", "\"power\"", "");
    if (drives == "power")
        relay->drivePowerOf(request.appliance.board());
    else if (!drives.empty())
        throw std::invalid_argument("'drives' is '" + drives + "': expected \"power\"");
    return relay;
}

Made makeCmosRelay(Request& request) {
    auto relay = std::make_unique<CmosRelay>();
    relay->clearCmosOf(request.appliance.board());
    return relay;
}

Made makeRomEmulation(Request& request) {
    const auto expected = "a number from 1 to " + std::to_string(RomEmulation::largestSize);
    const auto size = request.options.take<std::int64_t>("size", expected.c_str(), RomEmulation::size);
    if (size < 1 || size > static_cast<std::int64_t>(RomEmulation::largestSize))
        throw std::invalid_argument("'size' is " + std::to_string(size) + ": expected " + expected);
    return std::make_unique<LpcRomEmulation>(request.appliance.board(), static_cast<std::size_t>(size));
}

bool someRomServesBoot(const Appliance& appliance) {
    for (const auto& [id, object] : appliance.objects())
        if (auto* emulation = dynamic_cast<LpcRomEmulation*>(object))
            if (emulation->rom().servesBoot())
                return true;
    return false;
}

Made makePostCode(Request& request) {
    auto& appliance = request.appliance;
    return std::make_unique<LpcPostCode>(appliance.board(),
                                         [&appliance] { return someRomServesBoot(appliance); });
}

/// For objects that need only the board.
template <class Object>
Made makeOnBoard(Request& request) {
    return std::make_unique<Object>(request.appliance.board());
}

template <class Object>
Made makeAlone(Request&) {
    return std::make_unique<Object>();
}

/// For types with versions 1.0 and 1.1: the one whose methods the version's proxy has.
std::string modelledVersion(const Request& request) {
    registerLibraryTypes();
    const auto* table = findObjectTable(request.type, Version(request.version));
    return table && table->version == "1.0" ? "1.0" : "1.1";
}

template <class Object>
Made makeVersioned(Request& request) {
    return std::make_unique<Object>(modelledVersion(request), request.appliance.board());
}

Made makeJtag(Request& request) {
    const auto* taps = request.options.find("taps");
    return std::make_unique<Jtag>(modelledVersion(request), request.appliance.board(),
                                  taps ? readTaps(*taps) : standardTaps());
}

using Builder = Made (*)(Request&);

const std::map<std::string_view, Builder>& builders() {
    static const std::map<std::string_view, Builder> all{
        {"cfa633", makeAlone<Cfa633>},
        {"cmosRelay", makeCmosRelay},
        {"com", makeOnBoard<Com>},
        {"cpuDebug", makeVersioned<CpuDebug>},
        {"csJtag", makeAlone<CsJtag>},
        {"gpuDebug", makeOnBoard<GpuDebug>},
        {"gpuScan", makeOnBoard<GpuScan>},
        {"hdt", makeVersioned<Hdt>},
        {"i2c", makeI2c},
        {"jtag", makeJtag},
        {"kelvorGpuDebugMux", makeAlone<KelvorGpuDebugMux>},
        {"lpc", makeOnBoard<Lpc>},
        {"lpcPostCode", makePostCode},
        {"lpcRomEmulation", makeRomEmulation},
        {"rack", makeAlone<Rack>},
        {"relay", makeRelay},
    };
    return all;
}

/// The client library has no table for this version, so the object has only the methods of every object.
constexpr auto noTable = "0.0";

Made makePlain(const std::string& type) { return std::make_unique<SimulatedObject>(type, noTable); }

void addBelow(SimulatedObject& parent, Appliance& appliance, const ObjectDescription& description);

/// Builds the object with its members. Failures name its place.
Made makeTree(Appliance& appliance, const ObjectDescription& description) {
    Made made;
    try {
        made = makeObject(appliance, description);
    } catch (const std::exception& error) {
        throw std::invalid_argument(description.place + ": " + error.what());
    }
    for (const auto& member : description.members)
        addBelow(*made, appliance, member);
    return made;
}

template <class Parent>
void addTo(Parent& parent, Appliance& appliance, const ObjectDescription& description) {
    auto made = makeTree(appliance, description);
    try {
        parent.add(description.name, std::move(made));
    } catch (const std::exception& error) {
        throw std::invalid_argument(description.place + ": " + error.what());
    }
}

void addBelow(SimulatedObject& parent, Appliance& appliance, const ObjectDescription& description) {
    addTo(parent, appliance, description);
}

} // namespace

std::unique_ptr<SimulatedObject> makeObject(Appliance& appliance, const ObjectDescription& description) {
    const auto builder = builders().find(description.type);
    Request request{appliance, description.type, description.version, JsonEntries(description.options)};
    auto made = builder == builders().end() ? makePlain(description.type) : builder->second(request);
    request.options.finish();
    made->setVersion(description.version);
    return made;
} // NOLINT(clang-analyzer-cplusplus.NewDeleteLeaks): the caller owns it

void addObjects(Appliance& appliance, const std::vector<ObjectDescription>& objects) {
    for (const auto& description : objects) {
        if (appliance.find(description.name))
            throw std::invalid_argument(description.place + ": there is an object '" + description.name +
                                        "' already");
        addTo(appliance, appliance, description);
    }
}

} // namespace TAVO::simulator
