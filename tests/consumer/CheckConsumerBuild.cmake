# Copies the consumer below WORK_DIR once for each CMake generator, and checks what each build runs
# as its inputs change, and nothing else: "Generating" is the tool, "Binding" the next step, which
# depends on the package file alone, "Building" the library of the subdirectory.
cmake_minimum_required(VERSION 3.21)

set(steps
  # step                 change                                               runs
  "first build           -                                                    Generating Binding Building"
  "second build          -                                                    -"
  "type map touched      LuaContainerPrimitives.xml                           Generating"
  "map in data touched   data/LuaContainerPrimitives.xml                      -"
  "banner changed        data/tools/Generator/zym_copyright.txt /* second */  Generating Binding Building"
  "type added            LuaContainerPrimitives.xml <Type name='Anchor' namespace='consumer' />  Generating Binding Building"
  "type map broken       LuaContainerPrimitives.xml <Type name='Broken'       failure")
set(Generating "Generating Lua container")
set(Binding "Binding the Lua containers")
set(Building "Building CXX object src/")

foreach(generator "Unix Makefiles" Ninja)
  string(REPLACE " " "" build "${WORK_DIR}/${generator}")
  set(source "${build}/source")
  set(typedefs "${build}/generated/zymLua/generated_container_typedefs.h")
  file(REMOVE_RECURSE "${build}")
  file(COPY "${CONSUMER_DIR}/" DESTINATION "${source}" PATTERN "CheckConsumerBuild.cmake" EXCLUDE)
  execute_process(COMMAND "${CMAKE_COMMAND}" -S "${source}" -B "${build}" -G "${generator}" "-DCMAKE_CXX_COMPILER=${CXX_COMPILER}"
                          "-DLUA_CONTAINER_GENERATOR_DIR=${PROJECT_DIR}" "-DSTAND_INS_DIR=${STAND_INS_DIR}" "-DTOLUA_DIR=${TOLUA_DIR}"
                  RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "${generator}: configuring the consumer failed:\n${output}")
  endif()

  foreach(step IN LISTS steps)
    string(REGEX REPLACE "  +" ";" fields "${step}")
    list(GET fields 0 what)
    list(GET fields 1 change)
    list(GET fields 2 runs)
    # A changed file is made newer than what was built from it, also where time stamps are coarse.
    if(change MATCHES "^([^ ]+) ?(.*)$")
      file(APPEND "${source}/${CMAKE_MATCH_1}" "${CMAKE_MATCH_2}")
      foreach(attempt RANGE 30)
        file(TIMESTAMP "${source}/${CMAKE_MATCH_1}" changed "%s.%f" UTC)
        file(TIMESTAMP "${build}/bindings.cpp" built "%s.%f" UTC)
        if(changed VERSION_GREATER built)
          break()
        endif()
        execute_process(COMMAND "${CMAKE_COMMAND}" -E sleep 0.1)
        file(TOUCH_NOCREATE "${source}/${CMAKE_MATCH_1}")
      endforeach()
    endif()
    if(EXISTS "${typedefs}")
      file(READ "${typedefs}" before)
    endif()

    execute_process(COMMAND "${CMAKE_COMMAND}" --build "${build}" --parallel 2
                    RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(EXISTS "${typedefs}")
      file(READ "${typedefs}" after)
    endif()
    if(runs STREQUAL "failure")
      if(status EQUAL 0 OR NOT output MATCHES "Could not load LuaContainerPrimitives.xml" OR NOT after STREQUAL before)
        message(FATAL_ERROR "${generator}, ${what}: the build did not fail, or replaced the header:\n${output}")
      endif()
      continue()
    elseif(NOT status EQUAL 0)
      message(FATAL_ERROR "${generator}, ${what}: the build failed:\n${output}")
    endif()
    foreach(kind Generating Binding Building)
      string(FIND "${output}" "${${kind}}" found)
      string(FIND "${runs}" "${kind}" wanted)
      if((wanted EQUAL -1 AND NOT found EQUAL -1) OR (NOT wanted EQUAL -1 AND found EQUAL -1))
        message(FATAL_ERROR "${generator}, ${what}: '${${kind}}' should (${runs}) be in the build output:\n${output}")
      endif()
    endforeach()
  endforeach()

  foreach(expected "/* second */" "consumer::Anchor > AnchorVector;")
    string(FIND "${after}" "${expected}" found)
    if(found EQUAL -1 OR after MATCHES "Decoy")
      message(FATAL_ERROR "${generator}: no '${expected}', or the map in data/, which the tool never reads, in:\n${after}")
    endif()
  endforeach()
endforeach()
