-- Follows a conversation: which piece of which message comes next in each direction.
--
-- The pieces are the head of a request, each of its calls, the head of a reply, and each of its results. Wireshark
-- is asked to put together the segments of one piece, never of a whole message: with a batch of many large blocks it
-- would copy all of them anew for each.

local longestParameters = 64 * 1024 * 1024
local longestResult = 256 * 1024 * 1024
local longestBlockOfHead = 1024 * 1024
-- Wireshark takes ever longer for each segment of a piece: of what is longer, the beginning is shown.
local longestAssembled = 3 * 1024 * 1024
local beginningOfLonger = 4096
local mostCalls = 256 * 1024 * 1024 / 12

local conversations = {}
-- How matters stood where Wireshark began to hand over bytes, and which exchange began at which: it hands them over
-- again, in any order, to show them.
local beginnings = {}
local exchanges = {}

local function newConversation()
    return {
        names = freshNames(), described = {},
        request = {part = "unknown", skip = 0}, reply = {part = "unknown", skip = 0},
    }
end

local function forgetAll()
    conversations, beginnings, exchanges = {}, {}, {}
end

local function copyOf(stream)
    return {
        part = stream.part, skip = stream.skip, exchange = stream.exchange, left = stream.left, index = stream.index,
    }
end

-- Each of these returns how many bytes a piece needs, and whether that is all of it; or nothing if it cannot be one.
local needed = {}

function needed.requestHead(tvb, at, have)
    if have < 8 then return 8, true end
    if tvb(at + 4, 4):uint() > mostCalls then return nil end
    return 8, true
end

function needed.call(tvb, at, have)
    if have < 12 then return 12, false end
    local size = tvb(at + 8, 4):uint()
    if size > longestParameters then return nil end
    return 12 + size, true
end

function needed.replyHead(tvb, at, have)
    local size = 0
    for _ = 1, 2 do -- status and error
        size = size + 4
        if have < size then return size, false end
        local block = tvb(at + size - 4, 4):uint()
        if block > longestBlockOfHead then return nil end
        size = size + block
        if have < size then return size, false end
    end
    return size + 4, true
end

function needed.result(tvb, at, have)
    if have < 4 then return 4, false end
    local size = tvb(at, 4):uint()
    if size > longestResult then return nil end
    return 4 + size, true
end

-- Whether a message may begin here, in a capture that began in the midst of one, or has lost some of it.
local function looksLikeRequest(tvb, at, have)
    if have < 8 then return false end
    local count = tvb(at + 4, 4):uint()
    if count == 0 or count > 100000 or have < 20 then return count == 0 and have == 8 end
    return tvb(at + 12, 4):uint() <= 0xFFFF and tvb(at + 16, 4):uint() <= longestParameters
end

local function looksLikeReply(tvb, at, have)
    local size, isAll = needed.replyHead(tvb, at, have)
    return isAll and size <= have and tvb(at + size - 4, 4):uint() <= 100000
end

-- What a piece leaves behind in the state of its direction.

local function enterRequest(conversation, stream, exchange)
    stream.part = exchange.count > 0 and "call" or "requestHead"
    stream.exchange, stream.left, stream.index = exchange, exchange.count, 0
    -- The device answers one request after the other, so what was not answered will not be.
    conversation.exchange = exchange
    if conversation.reply.skip == 0 then conversation.reply.part = "replyHead" end
end

local function enterReply(stream, exchange, count)
    stream.part = count > 0 and "result" or "replyHead"
    stream.exchange, stream.left, stream.index = exchange, count, 0
end

local function passPiece(stream, first)
    stream.index = stream.index + 1
    stream.left = stream.left - 1
    if stream.left == 0 then stream.part = first end
end
