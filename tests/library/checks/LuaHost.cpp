// Runs a Lua script against the container bindings, in a Lua 5.1 state with the standard
// libraries. Exits 0 only if the script ran to its end and, once the state is closed, no buffer
// or value is left alive: Lua gives back the references of those it owns when it collects them.
//
//   luaHost <script>

#include <zymData/Buffer.h>

#include <lua.hpp>

#include <cstdio>

int tolua_zymLua_open(lua_State* state);

int main(int argc, char** argv)
{
    lua_State* state = luaL_newstate();
    luaL_openlibs(state);
    tolua_zymLua_open(state);
    const bool ran = argc == 2 && luaL_dofile(state, argv[1]) == 0;
    if (!ran)
        std::fprintf(stderr, "%s\n", argc == 2 ? lua_tostring(state, -1) : "usage: luaHost <script>");
    lua_close(state);
    return ran && zymData::Referenced::live == 0 ? 0 : 1;
}
