-- Fills and reads back every kind of container of the bindings made from the shipped type map,
-- for a trivially copied math type (zym::Vec3), a type that is constructed and destroyed
-- (zym::Name) and the string type (zym::String, a Lua string on this side). Any wrong value
-- raises an error, which fails the run.

local function fail(message)
  error(message, 3)
end

local function check(condition, message)
  if not condition then
    fail(message)
  end
end

local function expectEqual(expected, actual, what)
  if expected ~= actual then
    fail(string.format("%s: expected %s, got %s", what, tostring(expected), tostring(actual)))
  end
end

local elementTypes = {
  {
    name = "zym::Vec3", module = zym, prefix = "Vec3",
    make = function(i) return zym.Vec3(i, i * 0.5, -i) end,
    default = function() return zym.Vec3() end,
    same = function(a, b) return a.x == b.x and a.y == b.y and a.z == b.z end,
    show = function(v) return string.format("Vec3(%g, %g, %g)", v.x, v.y, v.z) end,
    luaType = "zym::Vec3",
  },
  {
    name = "zym::Name", module = zym, prefix = "Name",
    make = function(i) return zym.Name("name " .. i) end,
    default = function() return zym.Name() end,
    same = function(a, b) return a:c_str() == b:c_str() end,
    show = function(v) return "Name('" .. v:c_str() .. "')" end,
    luaType = "zym::Name",
  },
  {
    name = "zym::String", module = zym, prefix = "String",
    make = function(i) return "text " .. i end,
    default = function() return "" end,
    same = function(a, b) return a == b end,
    show = function(v) return "'" .. tostring(v) .. "'" end,
    luaType = "string",
  },
}

local function expectElement(t, expected, actual, what)
  expectEqual(t.luaType, tolua.type(actual), what .. " type")
  if not t.same(expected, actual) then
    fail(string.format("%s: expected %s, got %s", what, t.show(expected), t.show(actual)))
  end
end

-- The operations that a Vector and a Buffer share, on an empty container `c`.
local function checkSequence(t, c, kind)
  local what = t.prefix .. kind
  check(c:empty(), what .. " is not empty when made")
  expectEqual(0, c:size(), what .. " size when made")

  for i = 1, 10 do
    c:push_back(t.make(i))
  end
  expectEqual(10, c:size(), what .. " size after ten push_back")
  check(not c:empty(), what .. " is empty after push_back")
  for i = 1, 10 do
    expectElement(t, t.make(i), c:at(i - 1), what .. ":at(" .. (i - 1) .. ")")
  end
  expectElement(t, t.make(1), c:front(), what .. ":front()")
  expectElement(t, t.make(10), c:back(), what .. ":back()")

  c:resize(3)
  expectEqual(3, c:size(), what .. " size after resize(3)")
  expectElement(t, t.make(3), c:back(), what .. ":back() after resize(3)")
  c:resize(5)
  expectEqual(5, c:size(), what .. " size after resize(5)")
  expectElement(t, t.make(3), c:at(2), what .. ":at(2) after resize(5)")
  expectElement(t, t.default(), c:at(4), what .. ":at(4) after resize(5)")

  c:reserve(100)
  expectEqual(5, c:size(), what .. " size after reserve(100)")
  expectElement(t, t.make(1), c:front(), what .. ":front() after reserve(100)")
  expectElement(t, t.make(2), c:at(1), what .. ":at(1) after reserve(100)")

  c:clear()
  expectEqual(0, c:size(), what .. " size after clear()")
  check(c:empty(), what .. " is not empty after clear()")
  c:push_back(t.make(42))
  expectElement(t, t.make(42), c:front(), what .. ":front() after clear() and push_back")
end

local formats = {}

for _, t in ipairs(elementTypes) do
  local m = t.module

  -- Vector
  local vector = m[t.prefix .. "Vector"]()
  expectEqual("zym::" .. t.prefix .. "Vector", tolua.type(vector), t.prefix .. "Vector class")
  checkSequence(t, vector, "Vector")
  local sized = m[t.prefix .. "Vector"](4)
  expectEqual(4, sized:size(), t.prefix .. "Vector(4) size")
  expectElement(t, t.default(), sized:at(3), t.prefix .. "Vector(4):at(3)")

  -- Array: made from Lua it views nothing.
  local array = m[t.prefix .. "Array"]()
  expectEqual("zym::" .. t.prefix .. "Array", tolua.type(array), t.prefix .. "Array class")
  expectEqual(0, array:size(), t.prefix .. "Array size")
  check(array:empty(), t.prefix .. "Array is not empty")

  -- Buffer
  local buffer = m[t.prefix .. "Buffer"](zym.Name(t.prefix .. " buffer"))
  expectEqual("zym::" .. t.prefix .. "Buffer", tolua.type(buffer), t.prefix .. "Buffer class")
  checkSequence(t, buffer, "Buffer")
  buffer:resize(6)
  buffer:commit()
  buffer:commit(5)
  local indices = zymData.IndexArray()
  indices:push_back(0)
  indices:push_back(5)
  buffer:commit(indices)
  buffer:commit(zym.IndexRange32(1, 6))
  buffer:print()
  local format = buffer:getFormat()
  check(format ~= nil, t.prefix .. "Buffer:getFormat() is nil")
  check(rawequal(format, m[t.prefix .. "Buffer"]():getFormat()),
        t.prefix .. "Buffer: two buffers of one element type have different formats")
  for other, otherFormat in pairs(formats) do
    check(not rawequal(format, otherFormat), t.prefix .. "Buffer has the format of " .. other)
  end
  formats[t.prefix] = format

  -- Value: every element type but the string has one.
  local valueClass = m[t.prefix .. "Value"]
  if t.prefix == "String" then
    expectEqual(nil, valueClass, "StringValue class")
  else
    local plain = valueClass()
    expectEqual("zym::" .. t.prefix .. "Value", tolua.type(plain), t.prefix .. "Value class")
    expectElement(t, t.default(), plain:get(), t.prefix .. "Value():get()")
    plain:set(t.make(7))
    expectElement(t, t.make(7), plain:get(), t.prefix .. "Value:get() after set")

    local named = valueClass(zym.Name("named"), t.make(8))
    expectElement(t, t.make(8), named:get(), t.prefix .. "Value(name, value):get()")
    named:set(t.make(9))
    expectElement(t, t.make(9), named:get(), t.prefix .. "Value(name, value):get() after set")
    check(rawequal(named:getFormat(), format), t.prefix .. "Value and " .. t.prefix .. "Buffer have different formats")

    if t.prefix ~= "Name" then
      expectElement(t, t.make(3), valueClass(t.make(3)):get(), t.prefix .. "Value(value):get()")
    end
  end
end

-- Every type of the shipped map has its classes, in the namespace of its type.
local shipped = {
  {zym, "Vec2"}, {zym, "Vec3"}, {zym, "Vec4"}, {zym, "Quat"}, {zym, "Matrix3x3"},
  {zym, "AffineMatrix4x4"}, {zym, "Uuid"}, {zym, "String"}, {zym, "Name"},
  {zym.render, "Color"}, {zym.geo, "Ray"}, {zym.geo, "BoundingBox"},
}
for _, entry in ipairs(shipped) do
  local m, prefix = entry[1], entry[2]
  local vector = m[prefix .. "Vector"](3)
  expectEqual(3, vector:size(), prefix .. "Vector(3) size")
  expectEqual(0, m[prefix .. "Array"]():size(), prefix .. "Array size")
  local buffer = m[prefix .. "Buffer"]()
  buffer:resize(2)
  expectEqual(2, buffer:size(), prefix .. "Buffer size after resize(2)")
  if prefix ~= "String" then
    check(m[prefix .. "Value"]():getFormat() == buffer:getFormat(), prefix .. "Value and Buffer formats differ")
  end
end

-- Buffers and values count their references: Lua's own ones give theirs back when collected.
collectgarbage("collect")
collectgarbage("collect")
local before = liveReferencedObjects()
local function makeAndDrop()
  local owned = {zym.Vec3Buffer(), zym.NameValue(), zym.geo.RayBuffer:new_local(), zym.StringBuffer:new()}
  tolua.takeownership(owned[4])
  expectEqual(before + 4, liveReferencedObjects(), "referenced objects alive while Lua holds them")
end
makeAndDrop()
collectgarbage("collect")
collectgarbage("collect")
expectEqual(before, liveReferencedObjects(), "referenced objects alive after Lua collected them")
