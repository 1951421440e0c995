#pragma once

#include <memory>
#include <string>
#include <vector>

#include <tavo/c/tavo_c.h>
#include <tavo/client/transcode/packet.h>

/// What is behind the handle of a reply.
struct tavo_reply {
    std::string json;
    std::vector<tavo_bytes> blocks;
    /// The records in which the blocks lie.
    std::vector<std::shared_ptr<const TAVO::dto::reply_packet>> records;
};
