#pragma once

#include <tavo/client/transcode/base_tables.h>

/// The methods of the common modules and their tables, in one namespace for each type and version. What
/// tables are made of comes from TAVO::TAVOXTranscode.
namespace CommonModules::TAVOXTranscode {

using namespace TAVO::TAVOXTranscode;

} // namespace CommonModules::TAVOXTranscode
