#pragma once

/// @namespace TAVO
/// The client library: devices, their trees of proxies, and calls. Start at DeviceFactory.

/// @namespace TAVOX
/// The streams that values are written to and read from.

/// @file
/// Includes the whole interface of the library.
///
/// @code
/// TAVO::CoreObjects::registerCoreObjects();
/// TAVO::HWDebug::HwdObjects::registerCoreObjects();
/// CommonModules::CommonModulesObjects::registerCoreObjects();
/// auto device = TAVO::DeviceFactory::buildDevice("lab-tavo", 6123, "user", "password", false);
/// @endcode

#include <tavo/client/commonmodules/cfa633.h>
#include <tavo/client/commonmodules/com.h>
#include <tavo/client/commonmodules/common_modules_objects.h>
#include <tavo/client/commonmodules/relay.h>
#include <tavo/client/device/core_objects.h>
#include <tavo/client/device/device_factory.h>
#include <tavo/client/device/device_v1_0.h>
#include <tavo/client/device/open_options.h>
#include <tavo/client/device/private_v1_0.h>
#include <tavo/client/device/system_v1_0.h>
#include <tavo/client/exchange/call_exchange.h>
#include <tavo/client/exchange/server_keys.h>
#include <tavo/client/exchange/tavox_device.h>
#include <tavo/client/hwdebug/child.h>
#include <tavo/client/hwdebug/cpu_debug.h>
#include <tavo/client/hwdebug/cs_jtag.h>
#include <tavo/client/hwdebug/gpu_debug.h>
#include <tavo/client/hwdebug/gpu_scan.h>
#include <tavo/client/hwdebug/hdt.h>
#include <tavo/client/hwdebug/header_result.h>
#include <tavo/client/hwdebug/hwd_objects.h>
#include <tavo/client/hwdebug/i2c.h>
#include <tavo/client/hwdebug/jtag.h>
#include <tavo/client/hwdebug/kelvor_gpu_debug_mux.h>
#include <tavo/client/hwdebug/kelvor_uvd_mux.h>
#include <tavo/client/hwdebug/lpc.h>
#include <tavo/client/hwdebug/lpc_post_code.h>
#include <tavo/client/hwdebug/lpc_rom_emulation.h>
#include <tavo/client/hwdebug/tap_state.h>
#include <tavo/client/object/bound_method.h>
#include <tavo/client/object/container.h>
#include <tavo/client/object/device.h>
#include <tavo/client/object/method.h>
#include <tavo/client/object/method_tables.h>
#include <tavo/client/object/multicall_queue.h>
#include <tavo/client/object/object.h>
#include <tavo/client/object/object_factory.h>
#include <tavo/client/object/proxy.h>
#include <tavo/client/object/type_factory.h>
#include <tavo/client/object/version.h>
#include <tavo/client/transcode/block_receiver.h>
#include <tavo/client/transcode/header_status_tables.h>
#include <tavo/client/transcode/table.h>
#include <tavo/client/transcode/value.h>
#include <tavo/client/transcode/value_view.h>
#include <tavo/client/version_number.h>
#include <tavo/client/wire/deadline.h>
#include <tavo/client/wire/error.h>
#include <tavo/client/wire/error_facts.h>
#include <tavo/client/wire/input_stream.h>
#include <tavo/client/wire/interrupter.h>
#include <tavo/client/wire/output_stream.h>
#include <tavo/client/wire/socket_transport.h>
#include <tavo/client/wire/trace.h>
#include <tavo/client/wire/transport.h>
