#pragma once

/// Everything that an application may use.
///
/// @code
/// TAVO::CoreObjects::registerCoreObjects();
/// TAVO::HWDebug::HwdObjects::registerCoreObjects();
/// CommonModules::CommonModulesObjects::registerCoreObjects();
/// auto device = TAVO::DeviceFactory::buildDevice("lab-tavo", 6123, "user", "password", false);
/// @endcode

#include <tavo/client/commonmodules/common_modules_objects.h>
#include <tavo/client/commonmodules/relay.h>
#include <tavo/client/device/core_objects.h>
#include <tavo/client/device/device.h>
#include <tavo/client/device/device_factory.h>
#include <tavo/client/device/device_v1_0.h>
#include <tavo/client/device/private_v1_0.h>
#include <tavo/client/device/server_keys.h>
#include <tavo/client/device/system_v1_0.h>
#include <tavo/client/hwdebug/hwd_objects.h>
#include <tavo/client/method_tables.h>
#include <tavo/client/object/bound_method.h>
#include <tavo/client/object/container.h>
#include <tavo/client/object/method.h>
#include <tavo/client/object/multicall_queue.h>
#include <tavo/client/object/object.h>
#include <tavo/client/object/object_factory.h>
#include <tavo/client/object/version.h>
#include <tavo/client/transcode/header_status_tables.h>
#include <tavo/client/transcode/value.h>
#include <tavo/client/version_number.h>
#include <tavo/client/wire/call_exchange.h>
#include <tavo/client/wire/error.h>
#include <tavo/client/wire/input_stream.h>
#include <tavo/client/wire/output_stream.h>
#include <tavo/client/wire/socket_transport.h>
#include <tavo/client/wire/tavox_device.h>
#include <tavo/client/wire/transport.h>
