-- UCI package files, read and written in this process: the root records every shell that a command would take.
local uci = {}

local no_such_file = 2 -- ENOENT

-- The lines of a package as lists of words.
local function parse(text)
    local lines, line, word = {}, {}, nil
    local function end_word()
        line[#line + 1] = word
        word = nil
    end
    local function end_line()
        end_word()
        if #line > 0 then lines[#lines + 1] = line end
        line = {}
    end
    local i = 1
    while i <= #text do
        local c = text:sub(i, i)
        if c == "'" then
            local close = text:find("'", i + 1, true) or #text + 1
            word = (word or "") .. text:sub(i + 1, close - 1)
            i = close
        elseif c == '"' then
            word = word or ""
            i = i + 1
            while i <= #text and text:sub(i, i) ~= '"' do
                if text:sub(i, i) == "\\" then i = i + 1 end
                word = word .. text:sub(i, i)
                i = i + 1
            end
        elseif c == "\\" then
            i = i + 1
            word = (word or "") .. text:sub(i, i)
        elseif c == "\n" then
            end_line()
        elseif c:find("%s") then
            end_word()
        elseif c == "#" and not word then
            i = (text:find("\n", i, true) or #text + 1) - 1
        else
            word = (word or "") .. c
        end
        i = i + 1
    end
    end_line()
    return lines
end

local function sections_of(text)
    local sections = {}
    for _, line in ipairs(parse(text)) do
        local kind, name, value = line[1], line[2], line[3]
        if kind == "config" then
            sections[#sections + 1] = {type = name, name = value, entries = {}}
        elseif (kind == "option" or kind == "list") and #sections > 0 then
            local entries = sections[#sections].entries
            entries[#entries + 1] = {kind = kind, name = name, value = value or ""}
        end
    end
    return sections
end

local function quoted(text) return "'" .. text:gsub("'", "'\\''") .. "'" end

local function text_of(sections)
    local lines = {}
    for _, section in ipairs(sections) do
        lines[#lines + 1] = "config " .. section.type .. (section.name and " " .. quoted(section.name) or "")
        for _, entry in ipairs(section.entries) do
            lines[#lines + 1] = "\t" .. entry.kind .. " " .. entry.name .. " " .. quoted(entry.value)
        end
        lines[#lines + 1] = ""
    end
    return table.concat(lines, "\n") .. "\n"
end

local Store = {}
Store.__index = Store

-- The packages of a directory. Changes are kept until commit().
function uci.open(directory) return setmetatable({directory = directory, packages = {}, changed = {}}, Store) end

function Store:package(name)
    if not self.packages[name] then
        local file, why, code = io.open(self.directory .. "/" .. name)
        local text = file and assert(file:read("*a")) or ""
        if file then file:close() elseif code ~= no_such_file then error(why) end
        self.packages[name] = sections_of(text)
    end
    return self.packages[name]
end

function Store:section(package, name)
    for _, section in ipairs(self:package(package)) do
        if section.name == name then return section end
    end
end

function Store:get(package, name, option)
    local section = self:section(package, name)
    for _, entry in ipairs(section and section.entries or {}) do
        if entry.kind == "option" and entry.name == option then return entry.value end
    end
end

-- An empty value deletes the option; a missing section is created with its own name as type.
function Store:set(package, name, option, value)
    local section = self:section(package, name)
    if not section then
        section = {type = name, name = name, entries = {}}
        table.insert(self:package(package), section)
    end
    self.changed[package] = true
    for i, entry in ipairs(section.entries) do
        if entry.name == option then
            if value == "" then table.remove(section.entries, i) else entry.value = value end
            return
        end
    end
    if value ~= "" then table.insert(section.entries, {kind = "option", name = option, value = value}) end
end

-- Every package is written out before the first one takes its place, so that a full disk changes none.
function Store:commit()
    for name in pairs(self.changed) do
        local file = assert(io.open(self.directory .. "/" .. name .. ".new", "w"))
        local written, why = file:write(text_of(self.packages[name]))
        local closed, why_not = file:close()
        assert(written, why)
        assert(closed, why_not)
    end
    for name in pairs(self.changed) do
        local path = self.directory .. "/" .. name
        assert(os.rename(path .. ".new", path))
    end
    self.changed = {}
end

return uci
