-- Calls every member of every container class bound from the README's type map: those of one
-- type that is constructed and destroyed (zym::Name), of the string type (zym::String, a Lua
-- string on this side), and of every type its Vector, Array, Buffer and Value (none for String).
-- The host fails the run if a buffer or value that Lua made is left when the state closes.

local function expect(expected, actual, what)
  if expected ~= actual then
    error(string.format("%s: expected %s, got %s", what, tostring(expected), tostring(actual)), 2)
  end
end

local kinds = {Name = {make = zym.Name, key = function(v) return v:c_str() end},
               String = {make = tostring, key = tostring}}
for prefix, kind in pairs(kinds) do
  for _, c in ipairs({zym[prefix .. "Vector"](), zym[prefix .. "Buffer"](zym.Name(prefix))}) do
    for i = 1, 5 do c:push_back(kind.make("e" .. i)) end
    expect("e2 e1 e5", kind.key(c:at(1)) .. " " .. kind.key(c:front()) .. " " .. kind.key(c:back()), tolua.type(c))
    c:resize(7)
    c:reserve(100)
    expect("", kind.key(c:back()), tolua.type(c) .. ":back() after resize(7)")
    c:clear()
    expect(true, c:empty() and c:size() == 0, tolua.type(c) .. " after clear")
  end
end
local value = zym.NameValue(zym.Name("v"), zym.Name("e8"))
value:set(zym.Name("e9"))
expect("e9 ", value:get():c_str() .. " " .. zym.NameValue(zym.Name("w")):get():c_str(), "NameValue")
expect(nil, zym.StringValue, "StringValue")

for _, entry in ipairs({{zym, "Vec3"}, {zym, "Name"}, {zym.render, "Color"}, {zym.geo, "Ray"}}) do
  local namespace, prefix = entry[1], entry[2]
  local buffer, indices = namespace[prefix .. "Buffer"](), zymData.IndexArray()
  indices:push_back(0)
  buffer:commit(); buffer:commit(0); buffer:commit(indices); buffer:commit(zym.IndexRange32(0, 1))
  expect(2, namespace[prefix .. "Vector"](2):size() + namespace[prefix .. "Array"]():size(), prefix .. " sizes")
  expect(buffer:getFormat(), namespace[prefix .. "Value"]():getFormat(), prefix .. " formats")
end
expect(7, zym.Vec3Value(zym.Vec3(7, 0, 0)):get().x, "Vec3Value(value):get()")
zym.StringBuffer():print()
