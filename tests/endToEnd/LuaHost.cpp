// Runs a Lua script against the container bindings: a Lua 5.1 state with the standard
// libraries, the bindings, and one function of its own, liveReferencedObjects(), that counts
// the referenced data objects (buffers and values) alive. Exits 0 only if the script ran to
// its end without an error and, once the state is closed, no such object is left alive.
//
//   luaContainerHost <script>

#include <zymData/Referenced.h>

#include <lua.hpp>

#include <cstdio>

// Written by tolua++ into the bindings.
int tolua_LuaContainers_open(lua_State* state);

namespace
{

int liveReferencedObjects(lua_State* state)
{
    lua_pushnumber(state, static_cast<lua_Number>(zymData::Referenced::liveCount()));
    return 1;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2)
    {
        std::fprintf(stderr, "Usage: %s <script>\n", argc > 0 ? argv[0] : "luaContainerHost");
        return 2;
    }

    lua_State* state = luaL_newstate();
    if (state == nullptr)
    {
        std::fprintf(stderr, "Could not create a Lua state\n");
        return 1;
    }
    luaL_openlibs(state);
    tolua_LuaContainers_open(state);
    lua_register(state, "liveReferencedObjects", liveReferencedObjects);

    const bool ran = luaL_dofile(state, argv[1]) == 0;
    if (!ran)
        std::fprintf(stderr, "%s\n", lua_tostring(state, -1));
    lua_close(state);
    if (!ran)
        return 1;

    if (zymData::Referenced::liveCount() != 0)
    {
        std::fprintf(stderr, "%lld referenced objects are still alive after the Lua state was closed\n",
                     static_cast<long long>(zymData::Referenced::liveCount()));
        return 1;
    }
    return 0;
}
