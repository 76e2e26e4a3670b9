# The loader looks for a library first in the folder of the program, where another user of the computer may have
# put one of the same name. It spares those that Windows keeps loaded for everybody ("KnownDLLs"), and the common
# controls, whose version the manifest asks for. Any other library is delayed: src/common/SystemLibraries.cpp
# loads it, at the first call, from the system's folder.
#
# The headers must not declare the functions as imported ones: the 32-bit linker leaves out the code that looks a
# function up when all calls go past it, and they would end at address 0.
#
#   ktools_delayed(NAME...)       makes a target delayed_NAME for each
function(ktools_delayed)
  file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/delayed)
  foreach(name ${ARGN})
    set(library ${CMAKE_BINARY_DIR}/delayed/lib${name}.a)
    set(maker ${CMAKE_SOURCE_DIR}/cmake/delayed-library)
    add_custom_command(OUTPUT ${library} COMMAND ${maker} ${KTOOLS_TRIPLET} ${name} ${library} DEPENDS ${maker}
      VERBATIM)
    add_custom_target(delayed_${name}_library DEPENDS ${library})
    add_library(delayed_${name} INTERFACE)
    add_dependencies(delayed_${name} delayed_${name}_library)
    target_link_libraries(delayed_${name} INTERFACE ${library} common)
    target_compile_definitions(delayed_${name} INTERFACE _UXTHEME_ WINSOCK_API_LINKAGE=)
  endforeach()
endfunction()
