-- The protocol: its fields, its settings, and what is shown of each piece.

local tavox = Proto("tavox", "TAVOX")

-- The exceptions that a client throws for them.
local errorNames = {
    [1000] = "ConfigurationError", [1001] = "LockError", [1002] = "SpecificationError", [1003] = "SpecificationError",
    [1004] = "SpecificationError", [1005] = "SpecificationError", [1006] = "ExecutionError", [1013] = "TAVOLoginError",
}

local f = {
    lock = ProtoField.string("tavox.lock_id", "Lock id"),
    callCount = ProtoField.uint32("tavox.call_count", "Number of calls"),
    call = ProtoField.string("tavox.call", "Call"),
    instance = ProtoField.uint32("tavox.instance_id", "Instance id"),
    method = ProtoField.uint32("tavox.method_id", "Method id"),
    parameterSize = ProtoField.uint32("tavox.parameter_size", "Size of the parameters"),
    parameters = ProtoField.bytes("tavox.parameters", "Parameters"),
    status = ProtoField.bytes("tavox.status", "Status"),
    errorWord = ProtoField.uint32("tavox.error.position", "Position"),
    errorCode = ProtoField.uint32("tavox.error.code", "Error code", base.DEC, errorNames),
    errorMessage = ProtoField.string("tavox.error.message", "Error message"),
    resultCount = ProtoField.uint32("tavox.result_count", "Number of results"),
    resultOf = ProtoField.string("tavox.result_of", "Result of"),
    resultSize = ProtoField.uint32("tavox.result_size", "Size of the result"),
    returnCode = ProtoField.int32("tavox.return_code", "Return code"),
    result = ProtoField.bytes("tavox.result", "Result"),
    rest = ProtoField.bytes("tavox.rest", "More bytes than fields"),
    data = ProtoField.bytes("tavox.data", "Data"),
    requestIn = ProtoField.framenum("tavox.request_in", "Request in", base.NONE, frametype.REQUEST),
    responseIn = ProtoField.framenum("tavox.response_in", "Response in", base.NONE, frametype.RESPONSE),
    time = ProtoField.relative_time("tavox.time", "Time since the request"),
}
for _, field in pairs(f) do allFields[#allFields + 1] = field end
tavox.fields = allFields

local e = {
    unknown = ProtoExpert.new("tavox.note.unknown", "Not the beginning of a message", expert.group.SEQUENCE,
        expert.severity.NOTE),
    strange = ProtoExpert.new("tavox.note.strange", "No message of this protocol", expert.group.PROTOCOL,
        expert.severity.WARN),
    cut = ProtoExpert.new("tavox.note.cut", "Ends before its last field", expert.group.PROTOCOL, expert.severity.WARN),
    partly = ProtoExpert.new("tavox.note.partly", "Not all of it was captured or put together", expert.group.SEQUENCE,
        expert.severity.NOTE),
    refused = ProtoExpert.new("tavox.note.refused", "The device reports an error", expert.group.RESPONSE_CODE,
        expert.severity.NOTE),
    failed = ProtoExpert.new("tavox.note.failed", "The method reports a failure", expert.group.RESPONSE_CODE,
        expert.severity.NOTE),
}
tavox.experts = {e.unknown, e.strange, e.cut, e.partly, e.refused, e.failed}

tavox.prefs.ports = Pref.range("TCP ports", "6123-6124", "Ports of appliances and shares, such as 6123-6124,7000",
    65535)
tavox.prefs.names_file = Pref.string("File of names", "",
    "What 'tavo --json tree --methods' has printed: names for captures that begin later than the conversation")
tavox.prefs.show_secrets = Pref.bool("Show passwords and lock ids", false, "Otherwise they are shown as ***")
tavox.prefs.desegment = Pref.bool("Reassemble messages spanning multiple TCP segments", true,
    "TCP must be allowed to reassemble streams as well")

local streamOf = Field.new("tcp.stream")

local function showData(context, at, size, note)
    local shown = math.min(size, context.captured - at)
    local item = context.tree:add(f.data, context.tvb(at, math.min(shown, shownBytes)))
    if shown > shownBytes then
        item:set_len(shown)
        item:append_text(" (the first " .. shownBytes .. " of " .. shown .. " bytes)")
    end
    if note then item:add_proto_expert_info(note) end
end

local function say(context, text) context.said[#context.said + 1] = text end

local function showRequestIn(tree, exchange)
    if exchange and exchange.requestFrame then tree:add(f.requestIn, exchange.requestFrame):set_generated() end
end

local function showResponseIn(tree, exchange)
    if exchange and exchange.replyFrame then tree:add(f.responseIn, exchange.replyFrame):set_generated() end
end

local function timeOf(seconds)
    local size = math.abs(seconds)
    local sign = seconds < 0 and -1 or 1
    return NSTime.new(sign * math.floor(size), sign * math.floor(size % 1 * 1e9 + 0.5))
end

-- The exchange that begins here: when the same bytes are shown again, that of the first time.
local function exchangeAt(context, at, make)
    local key = context.key .. ":" .. at
    if not context.isAgain then exchanges[key] = make() or false end
    return exchanges[key] or nil
end

local function addBytes(tree, field, tvb, at, stop)
    if at >= stop then return end
    local size = stop - at
    local item = tree:add(field, tvb(at, math.min(size, shownBytes)))
    if size > shownBytes then
        item:set_len(size)
        item:append_text(" (the first " .. shownBytes .. " of " .. size .. " bytes)")
    end
end

-- The pieces. Each gets where it begins, where what there is of it ends, and whether that is all.
local show = {}

function show.requestHead(context, stream, at, stop, isAll)
    local tvb = context.tvb
    if stop - at < 8 then return showData(context, at, stop - at, e.partly) end
    local count = tvb(at + 4, 4):uint()
    local exchange = exchangeAt(context, at, function() return {count = count, calls = {}} end)
    if not exchange then return end
    local lock = tvb(at, 4):uint()
    local branch = context.tree:add(tvb(at, 8), "Request, number of calls: " .. count)
    branch:add(f.lock, tvb(at, 4), lock == 0 and "none" or showsSecrets and tostring(lock) or hidden)
    branch:add(f.callCount, tvb(at + 4, 4))
    if count == 0 then
        exchange.requestFrame = exchange.requestFrame or context.pinfo.number
        exchange.requestTime = exchange.requestTime or context.pinfo.rel_ts
        say(context, "empty request")
    end
    showResponseIn(branch, exchange)
    if context.isAgain then
        stream.part = count > 0 and "call" or "requestHead"
        stream.exchange, stream.left, stream.index = exchange, count, 0
    else
        enterRequest(context.conversation, stream, exchange)
    end
end

function show.call(context, stream, at, stop, isAll)
    local tvb = context.tvb
    local exchange = stream.exchange
    if stop - at < 12 then return showData(context, at, stop - at, e.partly) end
    local instance, method = tvb(at, 4):uint(), tvb(at + 4, 4):uint()
    local call = exchange.calls[stream.index + 1]
    if not call then
        call = describe(context.conversation, instance, method)
        exchange.calls[stream.index + 1] = call
    end
    local branch = context.tree:add(tvb(at, stop - at), call.text)
    branch:add(f.call, tvb(at, 8), call.text)
    branch:add(f.instance, tvb(at, 4))
    branch:add(f.method, tvb(at + 4, 4))
    branch:add(f.parameterSize, tvb(at + 8, 4))
    if call.row then
        local reader = readerOf(tvb, at + 12, stop)
        if not showRecord(branch, call.row.request, reader, f.rest) then
            branch:add_proto_expert_info(isAll and e.cut or e.partly)
        end
    else
        addBytes(branch, f.parameters, tvb, at + 12, stop)
    end
    say(context, call.text)
    passPiece(stream, "requestHead")
    if stream.left == 0 and not context.isAgain then
        exchange.requestFrame, exchange.requestTime = context.pinfo.number, context.pinfo.rel_ts
    end
    showResponseIn(branch, exchange)
end

local function showError(context, branch, at, size)
    local tvb = context.tvb
    if size < 8 then return branch:add_proto_expert_info(e.cut) end
    branch:add(f.errorWord, tvb(at, 4))
    branch:add(f.errorCode, tvb(at + 4, 4))
    local message = ""
    local length = size >= 12 and tvb(at + 8, 4):uint() or nil
    if not length or length > size - 12 then
        branch:add_proto_expert_info(e.cut)
    elseif length > 0 then
        message = tvb(at + 12, math.min(length, shownText)):string(ENC_UTF_8)
        branch:add(f.errorMessage, tvb(at + 12, length), message)
    end
    branch:add_proto_expert_info(e.refused)
    say(context, "error " .. tvb(at + 4, 4):uint() .. (message ~= "" and ": " .. message or ""))
end

function show.replyHead(context, stream, at, stop, isAll)
    local tvb = context.tvb
    if not isAll then return showData(context, at, stop - at, e.partly) end
    local statusSize = tvb(at, 4):uint()
    local errorAt = at + 4 + statusSize
    local errorSize = tvb(errorAt, 4):uint()
    local count = tvb(stop - 4, 4):uint()
    local exchange = exchangeAt(context, at, function()
        local waiting = context.conversation.exchange
        context.conversation.exchange = nil
        if waiting then waiting.replyFrame, waiting.replyTime = context.pinfo.number, context.pinfo.rel_ts end
        return waiting
    end)
    local branch = context.tree:add(tvb(at, stop - at), "Reply, number of results: " .. count)
    addBytes(branch, f.status, tvb, at + 4, errorAt)
    if errorSize > 0 then showError(context, branch, errorAt + 4, errorSize) end
    branch:add(f.resultCount, tvb(stop - 4, 4))
    if count == 0 and errorSize == 0 then say(context, "empty reply") end
    showRequestIn(branch, exchange)
    if exchange and exchange.requestTime then
        branch:add(f.time, timeOf(exchange.replyTime - exchange.requestTime)):set_generated()
    end
    enterReply(stream, exchange, count)
end

function show.result(context, stream, at, stop, isAll)
    local tvb = context.tvb
    local exchange = stream.exchange
    if stop - at < 4 then return showData(context, at, stop - at, e.partly) end
    local call = exchange and exchange.calls[stream.index + 1]
    local text = call and call.text or "unknown call"
    local branch = context.tree:add(tvb(at, stop - at), "Result of " .. text)
    branch:add(f.resultOf, tvb(at, 4), text)
    branch:add(f.resultSize, tvb(at, 4))
    if stop - at < 8 then
        branch:add_proto_expert_info(isAll and e.cut or e.partly)
    else
        local code = tvb(at + 4, 4):int()
        local item = branch:add(f.returnCode, tvb(at + 4, 4))
        if code ~= 0 then item:add_proto_expert_info(e.failed) end
        if call and call.row then
            if not showRecord(branch, call.row.reply, readerOf(tvb, at + 8, stop), f.rest) then
                branch:add_proto_expert_info(isAll and e.cut or e.partly)
            end
        else
            addBytes(branch, f.result, tvb, at + 8, stop)
        end
        if call and code == 0 and isAll and not context.isAgain then
            learnFrom(context.conversation, call, tvb, at + 8, stop)
        end
        say(context, code == 0 and text or text .. " returned " .. code)
    end
    showRequestIn(branch, exchange)
    passPiece(stream, "replyHead")
end

-- Finds out whether a message begins here. Returns false if it does not.
local function findBeginning(context, stream, at)
    local have = context.captured - at
    if context.isRequest and looksLikeRequest(context.tvb, at, have) then
        stream.part = "requestHead"
    elseif not context.isRequest and looksLikeReply(context.tvb, at, have) then
        stream.part = "replyHead"
    end
    return stream.part ~= "unknown"
end

-- Shows all pieces in the bytes at hand. Returns where and how many more bytes are needed, if Wireshark is to get them.
local function walk(context, stream)
    local at = 0
    local reported = context.tvb:reported_len()
    while at < reported do
        local have = context.captured - at
        if have <= 0 then
            if stream.skip > 0 then
                stream.skip = math.max(0, stream.skip - (reported - at))
            else
                stream.part = "unknown"
            end
            return
        elseif stream.skip > 0 then
            local size = math.min(stream.skip, reported - at)
            showData(context, at, size, nil)
            say(context, "more of a block")
            stream.skip = stream.skip - size
            at = at + size
        else
            local note = stream.part == "unknown" and e.unknown or e.strange
            local size, isSizeOfAll
            if stream.part ~= "unknown" or findBeginning(context, stream, at) then
                size, isSizeOfAll = needed[stream.part](context.tvb, at, have)
            end
            if not size then
                stream.part = "unknown"
                showData(context, at, have, note)
                say(context, "data")
                return
            end
            local wanted = size <= longestAssembled and size or beginningOfLonger
            if wanted > have and context.mayWait and context.captured == reported then return at, wanted - have end
            show[stream.part](context, stream, at, at + math.min(size, have), size <= have)
            if size > have then
                -- What Wireshark does not put together is passed over, if its size is known.
                stream.skip = isSizeOfAll and math.max(0, size - (reported - at)) or 0
                if not isSizeOfAll then stream.part = "unknown" end
            end
            at = at + math.min(size, reported - at)
        end
    end
end

local function conversationOf(pinfo, isRequest)
    local stream = streamOf()
    local key = stream and tostring(stream)
    if not key then
        local from, to = tostring(pinfo.src) .. " " .. pinfo.src_port, tostring(pinfo.dst) .. " " .. pinfo.dst_port
        key = isRequest and from .. " " .. to or to .. " " .. from
    end
    local conversation = conversations[key]
    if not conversation then
        conversation = newConversation()
        conversations[key] = conversation
    end
    return conversation
end

local function infoText(isRequest, said)
    local most = 5
    local text = table.concat(said, ", ", 1, math.min(#said, most))
    if #said > most then text = text .. ", and " .. #said - most .. " more" end
    return (isRequest and "Request: " or "Reply: ") .. text
end

function tavox.dissector(tvb, pinfo, root)
    local isRequest = pinfo.dst_port == pinfo.match
    local key = pinfo.number .. ":" .. tvb:offset() .. ":" .. tvb:reported_len()
    local beginning = beginnings[key]
    if not pinfo.visited or not beginning then
        local conversation = conversationOf(pinfo, isRequest)
        local stream = isRequest and conversation.request or conversation.reply
        beginning = {conversation = conversation, stream = copyOf(stream)}
        if not pinfo.visited then beginnings[key] = beginning end
    end
    local conversation = beginning.conversation
    local stream = pinfo.visited and copyOf(beginning.stream)
        or isRequest and conversation.request or conversation.reply
    pinfo.cols.protocol = "TAVOX"
    local context = {
        tvb = tvb, captured = tvb:captured_len(), pinfo = pinfo, key = key, conversation = conversation,
        isRequest = isRequest, isAgain = pinfo.visited, said = {},
        mayWait = tavox.prefs.desegment and pinfo.can_desegment > 0,
        tree = root:add(tavox, tvb(), isRequest and "TAVOX, to the device" or "TAVOX, from the device"),
    }
    local at, more = walk(context, stream)
    if at then
        pinfo.desegment_offset = at
        pinfo.desegment_len = more
    end
    if #context.said > 0 then
        pinfo.cols.info:set(infoText(isRequest, context.said))
        pinfo.cols.info:fence()
    end
end

function tavox.init() forgetAll() end

local tcpPorts = DissectorTable.get("tcp.port")
local registeredPorts = nil
local readFile = nil

local function applySettings()
    local ports = tostring(tavox.prefs.ports)
    if ports ~= registeredPorts then
        if registeredPorts and registeredPorts ~= "" then tcpPorts:remove(registeredPorts, tavox) end
        if ports ~= "" then tcpPorts:add(ports, tavox) end
        registeredPorts = ports
    end
    showsSecrets = tavox.prefs.show_secrets
    local file = tavox.prefs.names_file
    if file ~= readFile then
        readFile = file
        local why
        fileNames = nil
        if file ~= "" then fileNames, why = readNamesFile(file) end
        if why then report_failure("TAVOX: " .. why) end
    end
end

tavox.prefs_changed = applySettings
applySettings()
tcpPorts:add_for_decode_as(tavox)
