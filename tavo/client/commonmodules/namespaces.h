#pragma once

#include <tavo/client/transcode/base_tables.h>

/// The method tables of the common modules lie here; what they are made of is shared with the rest of the
/// library.
namespace CommonModules::TAVOXTranscode {

using namespace TAVO::TAVOXTranscode;

} // namespace CommonModules::TAVOXTranscode
