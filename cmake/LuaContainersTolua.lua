-- The tolua++ extension that the package file needs, loaded with tolua++'s -L option before it
-- reads the package file (lua_container_generate gives its path as <name>_TOLUA_EXTENSIONS).
-- zym::String travels between C++ and Lua as a Lua string.
_basic['zym::String'] = 'cppstring'

-- TOLUA_REFERENCED_CLASS stands inside a class, like TOLUA_PROTECTED_DESTRUCTOR, which it implies:
-- the objects count their references and delete themselves on the last release(). One that Lua
-- owns gives its reference back when Lua collects it.
local referencedClasses = {}

function parser_hook(code)
  local first, last = string.find(code, "^%s*TOLUA_REFERENCED_CLASS%s*;?")
  if first then
    classContainer.curr:set_protected_destructor(true)
    table.insert(referencedClasses, classContainer.curr)
    return string.sub(code, last + 1)
  end
end

function pre_register_hook(package)
  for _, class in ipairs(referencedClasses) do
    local collector = "tolua_release_" .. clean_template(class.type)
    output("static int " .. collector .. " (lua_State* tolua_S)")
    output("{")
    output(" ((" .. class.type .. "*) tolua_tousertype(tolua_S,1,0))->release();")
    output(" return 0;")
    output("}")
    _collect[class.type] = collector
  end
end
