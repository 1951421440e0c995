-- The names of objects and methods: learnt from the replies of a conversation, or read from a file.

local methodsMethodId = 3 -- on every object
local mostNames = 10000 -- of one reply
local longestName = 256

local function printable(name) return (name:gsub("[^\32-\126]", "?")) end

local function freshNames()
    return {
        [0] = {name = "device", type = "device", methods = {}},
        [1] = {name = "system", type = "system", methods = {}},
        [2] = {name = "private", type = "private", methods = {}},
    }
end

-- The file, which holds JSON. Each reader takes a text and a position, and returns a value and the next position.
local readJson
local jsonEscapes = {b = "\b", f = "\f", n = "\n", r = "\r", t = "\t"}

local function jsonFault(at, what) error("byte " .. at .. ": " .. what, 0) end

local function skipSpace(text, at) return text:find("[^ \t\r\n]", at) or #text + 1 end

local function readJsonText(text, at)
    local stop = at
    repeat
        stop = text:find('["\\]', stop + 1)
        if not stop then jsonFault(at, "a text does not end") end
        local isEscape = text:sub(stop, stop) == "\\"
        if isEscape then stop = stop + 1 end
    until not isEscape
    local content = text:sub(at + 1, stop - 1):gsub("\\u%x%x%x%x", "?"):gsub("\\(.)", function(letter)
        return jsonEscapes[letter] or letter
    end)
    return content, stop + 1
end

local function readJsonItems(text, at, closing, depth, readItem)
    at = skipSpace(text, at + 1)
    if text:sub(at, at) == closing then return at + 1 end
    while true do
        at = skipSpace(text, readItem(skipSpace(text, at)))
        local separator = text:sub(at, at)
        if separator == closing then return at + 1 end
        if separator ~= "," then jsonFault(at, "neither ',' nor '" .. closing .. "'") end
        at = at + 1
    end
end

function readJson(text, at, depth)
    if depth > 200 then jsonFault(at, "nested too deeply") end
    at = skipSpace(text, at)
    local first = text:sub(at, at)
    if first == '"' then return readJsonText(text, at) end
    local value = {}
    if first == "[" then
        return value, readJsonItems(text, at, "]", depth, function(from)
            local item, next = readJson(text, from, depth + 1)
            value[#value + 1] = item
            return next
        end)
    elseif first == "{" then
        return value, readJsonItems(text, at, "}", depth, function(from)
            if text:sub(from, from) ~= '"' then jsonFault(from, "a name is missing") end
            local name, colon = readJsonText(text, from)
            colon = skipSpace(text, colon)
            if text:sub(colon, colon) ~= ":" then jsonFault(colon, "':' is missing") end
            local item, next = readJson(text, colon + 1, depth + 1)
            value[name] = item
            return next
        end)
    end
    local word, next = text:match("^([%w.+-]+)()", at)
    if not word then jsonFault(at, "no value") end
    if word == "null" then return false, next end
    if word == "true" or word == "false" then return word == "true", next end
    return tonumber(word) or jsonFault(at, "no value"), next
end

local function versionOf(text)
    local major, minor = tostring(text):match("^(%d+)%.?(%d*)")
    return major and tonumber(major) * 1000 + (tonumber(minor) or 0)
end

local function asList(value) return type(value) == "table" and value or {} end

local function addFromFile(names, objects)
    for _, object in ipairs(asList(objects)) do
        object = asList(object)
        if type(object.instanceId) == "number" then
            local methods = {}
            for _, method in ipairs(asList(object.methods)) do
                if type(method) == "table" and type(method.id) == "number" then
                    methods[method.id] = printable(tostring(method.name))
                end
            end
            names[object.instanceId] = {
                name = printable(tostring(object.fullName)), type = tostring(object.type),
                version = versionOf(object.version), methods = methods,
            }
        end
        addFromFile(names, object.members)
    end
end

-- What `tavo --json tree --methods` has printed. Returns the names, or nothing and what is wrong.
local function readNamesFile(path)
    local isRead, result = pcall(function()
        local file, why = io.open(path, "rb")
        if not file then error(why, 0) end
        local text = file:read("*a") or ""
        file:close()
        local tree, stop = readJson(text, 1, 0)
        if stop <= #text and skipSpace(text, stop) <= #text then jsonFault(stop, "more than one document") end
        if type(tree) ~= "table" or type(tree.objects) ~= "table" then
            error("it has no \"objects\", as 'tavo --json tree --methods' prints them", 0)
        end
        local names = freshNames()
        addFromFile(names, tree.objects)
        return names
    end)
    if isRead then return result end
    return nil, path .. ": " .. tostring(result)
end

local fileNames = nil
local noMethods = {}

-- What is known of a call: {text = "object.method", row = its records, learns = what its reply teaches}.
local function describe(conversation, instance, method)
    local key = instance .. "." .. method
    local known = conversation.described[key]
    if known then return known end
    local learnt = conversation.names[instance] or noMethods
    local filed = fileNames and fileNames[instance] or noMethods
    local methodName = (learnt.methods or noMethods)[method] or (filed.methods or noMethods)[method]
        or method == methodsMethodId and "methods" or nil
    local row
    if methodName then
        local version = learnt.version or filed.version
        local own = methodsOf(learnt.type or filed.type, version)
        row = own and own[methodName] or methodsOf("base")[methodName]
    end
    known = {
        text = (learnt.name or filed.name or "#" .. instance) .. "." .. (methodName or "#" .. method),
        instance = instance, method = method, name = methodName, row = row,
    }
    conversation.described[key] = known
    return known
end

local function learnable(conversation, instance)
    local names = conversation.names
    local object = names[instance] or {methods = {}}
    names[instance] = object
    return object
end

-- Calls `learn` with name and id of each element of a reply's list.
local function forNamedIds(tvb, at, stop, hasSignature, learn)
    if at + 4 > stop then return end
    local count = math.min(tvb(at, 4):uint(), mostNames)
    at = at + 4
    local function text()
        if at + 4 > stop then return nil end
        local length = tvb(at, 4):uint()
        if length > stop - at - 4 then return nil end
        local from = at + 4
        at = from + length
        if length == 0 then return "" end
        return printable(tvb(from, math.min(length, longestName)):raw())
    end
    for _ = 1, count do
        local name = text()
        if not name or at + 4 > stop then return end
        learn(name, tvb(at, 4):uint())
        at = at + 4
        if hasSignature and not text() then return end
    end
end

-- Takes the names from a result; `at` is behind its return code.
local function learnFrom(conversation, call, tvb, at, stop)
    local name = call.name
    if name == "methods" or name == "methodsVerbose" then
        local object = learnable(conversation, call.instance)
        forNamedIds(tvb, at, stop, name == "methodsVerbose", function(method, id) object.methods[id] = method end)
    elseif name == "members" or (name == "rootMembers" and call.instance == 0) then
        local parent = name == "members" and learnable(conversation, call.instance).name
        forNamedIds(tvb, at, stop, false, function(member, id)
            learnable(conversation, id).name = parent and parent .. "." .. member or member
        end)
    elseif name == "type" then
        local length = at + 4 <= stop and tvb(at, 4):uint() or 0
        if length > 0 and length <= math.min(stop - at - 4, longestName) then
            learnable(conversation, call.instance).type = tvb(at + 4, length):raw()
        end
    elseif name == "version" and at + 8 <= stop then
        local major, minor = tvb(at, 4):uint(), tvb(at + 4, 4):uint()
        learnable(conversation, call.instance).version = major * 1000 + (minor < 1000 and minor or 0)
    else
        return
    end
    conversation.described = {}
end
