-- The library's extensions of tolua++, loaded with its -L option before it reads the package.
--
-- zym::String travels between C++ and Lua as a Lua string, the way tolua++ passes std::string.
--
-- TOLUA_REFERENCED_CLASS stands inside a class declaration, like TOLUA_PROTECTED_DESTRUCTOR,
-- and marks a class whose objects count their references: an object is created holding one
-- reference and deletes itself when release() gives back the last one. Lua never deletes
-- such an object (the marker implies TOLUA_PROTECTED_DESTRUCTOR). An object that Lua owns,
-- made with new_local or the call form, or handed over with tolua.takeownership, gives its
-- reference back with release() when Lua collects it; one made with new keeps it.

_basic['zym::String'] = 'cppstring'

local referencedClasses = {}

function parser_hook(code)
  local first, last = string.find(code, "^%s*TOLUA_REFERENCED_CLASS%s*;?")
  if not first then
    return nil
  end
  local class = classContainer.curr
  if class.classtype ~= 'class' then
    error("#TOLUA_REFERENCED_CLASS outside a class declaration")
  end
  class:set_protected_destructor(true)
  table.insert(referencedClasses, class)
  return string.sub(code, last + 1)
end

-- Runs after the binding functions are written and before the classes are registered: writes
-- the collectors of the referenced classes and names them for the registration.
function pre_register_hook(package)
  for _, class in ipairs(referencedClasses) do
    local collector = "tolua_release_" .. clean_template(class.type)
    output("/* function to give back the reference of a collected " .. class.type .. " */")
    output("static int " .. collector .. " (lua_State* tolua_S)")
    output("{")
    output(" " .. class.type .. "* self = (" .. class.type .. "*) tolua_tousertype(tolua_S,1,0);")
    output(" self->release();")
    output(" return 0;")
    output("}")
    output("")
    _collect[class.type] = collector
  end
end
