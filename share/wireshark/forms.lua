-- The forms of the registry, such as "name: text, ids: list of u32", as tables, and a field of Wireshark for each
-- value.

local sizeOfKind = {bool = 1, u8 = 1, i32 = 4, u32 = 4, i64 = 8, u64 = 8}
local makerOfKind = {
    bool = ProtoField.bool, u8 = ProtoField.uint8, i32 = ProtoField.int32, u32 = ProtoField.uint32,
    i64 = ProtoField.int64, u64 = ProtoField.uint64, text = ProtoField.string, bytes = ProtoField.bytes,
}

-- What opens a device for whoever reads it.
local secretFields = {
    ["tavox.device.lock.request.password"] = true,
    ["tavox.device.lock.reply.lockId"] = true,
    ["tavox.device.unlock.request.password"] = true,
    ["tavox.device.CHAPRespond.request.response"] = true,
}

local function parseForm(text)
    local at = 1
    local parseFields
    local function take(pattern)
        local found, stop = text:match("^(" .. pattern .. ")()", at)
        if found then at = stop end
        return found
    end
    local function parseType()
        if take("list of ") then return {kind = "list", element = parseType()} end
        if take("{") then
            local record = {kind = "record", fields = parseFields()}
            take("}")
            return record
        end
        return {kind = take("%w+")}
    end
    function parseFields()
        local fields = {}
        while true do
            local name = take("[%w_]+")
            if not name then return fields end
            take(": ")
            local field = parseType()
            field.name = name
            fields[#fields + 1] = field
            if not take(", ") then return fields end
        end
    end
    return parseFields()
end

-- Bytes of a value, if they are always the same number.
local function fixedSize(form)
    if form.kind ~= "record" then return sizeOfKind[form.kind] end
    local sum = 0
    for _, field in ipairs(form.fields) do
        local size = fixedSize(field)
        if not size then return nil end
        sum = sum + size
    end
    return sum
end

local allFields = {}
local fieldsByName = {}

-- The same name twice, as in two versions of a type, is one field; with another form it gets a name of its own.
local function fieldFor(path, name, kind)
    local isSecret = secretFields[path]
    local maker = isSecret and ProtoField.string or makerOfKind[kind]
    for _, candidate in ipairs({path, path .. "_" .. kind}) do
        local known = fieldsByName[candidate]
        if known and known.kind == kind then return known.field, isSecret end
        if not known then
            local field = maker(candidate, name)
            fieldsByName[candidate] = {kind = kind, field = field}
            allFields[#allFields + 1] = field
            return field, isSecret
        end
    end
end

local function addFields(form, path, name)
    form.size = fixedSize(form)
    if form.kind == "list" then
        addFields(form.element, path, name)
    elseif form.kind == "record" then
        for _, field in ipairs(form.fields) do addFields(field, path .. "." .. field.name, field.name) end
    else
        form.field, form.isSecret = fieldFor(path, name, form.kind)
    end
end

local function recordOf(text, path)
    local record = parseForm(text)
    for _, field in ipairs(record) do addFields(field, path .. "." .. field.name, field.name) end
    return record
end

-- Type name to its tables, the highest version first: {version = {major, minor}, methods = {name = row}}.
local tablesOfType = {}
for _, entry in ipairs(registry) do
    local methods = {}
    for _, row in ipairs(entry.methods) do
        local path = "tavox." .. entry.type .. "." .. row[1]
        methods[row[1]] = {request = recordOf(row[2], path .. ".request"), reply = recordOf(row[3], path .. ".reply")}
    end
    local tables = tablesOfType[entry.type] or {}
    tablesOfType[entry.type] = tables
    tables[#tables + 1] = {version = {entry.version:match("^(%d+)%.(%d+)")}, methods = methods}
end
for _, tables in pairs(tablesOfType) do
    for _, of in ipairs(tables) do of.version = tonumber(of.version[1]) * 1000 + tonumber(of.version[2]) end
    table.sort(tables, function(a, b) return a.version > b.version end)
end

-- The methods of a type: of the highest version that is not above the object's, which may be unknown.
local function methodsOf(typeName, version)
    local tables = tablesOfType[typeName]
    if not tables then return nil end
    for _, of in ipairs(tables) do
        if not version or of.version <= version then return of.methods end
    end
    return tables[#tables].methods
end
