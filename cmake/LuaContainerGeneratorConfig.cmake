# The installed LuaContainerGenerator: the imported executables LuaContainers::Generator and
# LuaContainers::Check, and lua_container_generate(), which runs them.
include("${CMAKE_CURRENT_LIST_DIR}/LuaContainerGeneratorTargets.cmake")
include("${CMAKE_CURRENT_LIST_DIR}/LuaContainers.cmake")
