// Runs a Lua script against the container bindings, in a Lua 5.1 state with the standard
// libraries and liveReferencedObjects(), the number of buffers and values alive. Exits 0 only if
// the script ran to its end and, once the state is closed, no such object is left.
//
//   luaContainerHost <script>

#include <StandIns.h>

#include <lua.hpp>

#include <cstdio>

int tolua_LuaContainers_open(lua_State* state);

int main(int argc, char** argv)
{
    lua_State* state = luaL_newstate();
    luaL_openlibs(state);
    tolua_LuaContainers_open(state);
    lua_register(state, "liveReferencedObjects", [](lua_State* lua) {
        lua_pushnumber(lua, static_cast<lua_Number>(zymData::Referenced::live));
        return 1;
    });
    const bool ran = argc == 2 && luaL_dofile(state, argv[1]) == 0;
    if (!ran)
        std::fprintf(stderr, "%s\n", argc == 2 ? lua_tostring(state, -1) : "usage: luaContainerHost <script>");
    lua_close(state);
    return ran && zymData::Referenced::live == 0 ? 0 : 1;
}
