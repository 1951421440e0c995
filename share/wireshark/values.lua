-- Shows the values of a record. Wireshark ends a dissection with too many items, so lists are not shown to their end.

local mostShownElements = 200 -- of one list
local mostItems = 20000 -- in one piece of a frame
local mostWalkedElements = 20000 -- of a list that is not shown to its end
local shownBytes = 64
local shownText = 1024

local hidden = "***"
local showsSecrets = false

-- A place in a tvb: `at` moves on, `stop` is the end. After a failure `isCut` is set and nothing more is read.
local function readerOf(tvb, at, stop) return {tvb = tvb, at = at, stop = stop, items = 0, isCut = false} end

local function take(reader, size)
    if reader.isCut or size > reader.stop - reader.at then
        reader.isCut = true
        return nil
    end
    local at = reader.at
    reader.at = at + size
    return at
end

local function takeCount(reader)
    local at = take(reader, 4)
    return at and reader.tvb(at, 4):uint()
end

local function skipValue(form, reader)
    if form.size then
        take(reader, form.size)
    elseif form.kind == "record" then
        for _, field in ipairs(form.fields) do skipValue(field, reader) end
    else -- a text or bytes, or a list
        local count = takeCount(reader)
        if not count then return end
        local element = form.element
        if not element or element.size then
            take(reader, count * (element and element.size or 1))
        elseif count > mostWalkedElements then
            reader.isCut = true
        else
            for _ = 1, count do
                skipValue(element, reader)
                if reader.isCut then return end
            end
        end
    end
end

local showValue

-- Of a block that goes on behind what there is, the beginning is shown.
local function showBlock(tree, form, name, reader)
    local begin = reader.at
    local size = takeCount(reader)
    if not size then return end
    local at = reader.at
    local there = math.min(size, reader.stop - at)
    take(reader, size)
    local tvb = reader.tvb
    local most = form.kind == "text" and shownText or shownBytes
    local shown = math.min(there, most)
    local item
    if form.isSecret and not showsSecrets then
        tree:add(form.field, tvb(begin, 4 + there), hidden)
        return
    elseif form.kind == "text" or form.isSecret then
        item = tree:add(form.field, tvb(begin, 4 + there), shown > 0 and tvb(at, shown):string(ENC_UTF_8) or "")
    else
        item = tree:add(form.field, tvb(at, shown))
        if there > 0 then item:set_len(there) end
    end
    if shown < size then
        item:append_text(" (the first " .. shown .. " of " .. size .. " bytes)")
    elseif form.kind == "bytes" then
        item:append_text(" (" .. size .. " bytes)")
    end
end

local function showList(tree, form, name, reader)
    local begin = reader.at
    local count = takeCount(reader)
    if not count then return end
    local element = form.element
    local branch = tree:add(reader.tvb(begin, 4), name .. ": " .. count .. " elements")
    local shown = 0
    while shown < count and shown < mostShownElements and reader.items < mostItems do
        showValue(branch, element, name .. " " .. shown, reader)
        if reader.isCut then return end
        shown = shown + 1
    end
    if shown < count then
        if element.size then
            take(reader, (count - shown) * element.size)
        elseif count - shown > mostWalkedElements then
            reader.isCut = true
        else
            for _ = shown + 1, count do skipValue(element, reader) end
        end
        branch:append_text(", of which " .. shown .. " are shown")
    end
    if not reader.isCut then branch:set_len(reader.at - begin) end
end

function showValue(tree, form, name, reader)
    reader.items = reader.items + 1
    if form.kind == "list" then
        showList(tree, form, name, reader)
    elseif form.kind == "record" then
        local begin = reader.at
        if begin >= reader.stop then
            reader.isCut = true
            return
        end
        local branch = tree:add(reader.tvb(begin, 1), name)
        for _, field in ipairs(form.fields) do showValue(branch, field, field.name, reader) end
        if not reader.isCut then branch:set_len(reader.at - begin) end
    elseif form.size then
        local at = take(reader, form.size)
        if not at then return end
        if form.isSecret and not showsSecrets then
            tree:add(form.field, reader.tvb(at, form.size), hidden)
        elseif form.isSecret then
            tree:add(form.field, reader.tvb(at, form.size), tostring(reader.tvb(at, form.size):uint()))
        else
            tree:add(form.field, reader.tvb(at, form.size))
        end
    else
        showBlock(tree, form, name, reader)
    end
end

-- Shows the fields of a record, and what is behind the last one. Returns whether all fields were there.
local function showRecord(tree, record, reader, rest)
    for _, field in ipairs(record) do
        showValue(tree, field, field.name, reader)
        if reader.isCut then return false end
    end
    if reader.at < reader.stop then
        tree:add(rest, reader.tvb(reader.at, math.min(reader.stop - reader.at, shownBytes)))
    end
    return true
end
