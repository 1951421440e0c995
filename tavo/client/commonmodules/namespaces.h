#pragma once

#include <tavo/client/transcode/base_tables.h>

/// The methods of the common modules and their tables, one namespace for each type and version. Contains the
/// names of TAVO::TAVOXTranscode as well.
namespace CommonModules::TAVOXTranscode {

using namespace TAVO::TAVOXTranscode;

} // namespace CommonModules::TAVOXTranscode
