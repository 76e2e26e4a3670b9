# The platform's and the library's headers take far longer to compile than our code: every target shares one
# precompiled header. Sources still include what they use; ./scripts/tidy reads them without it.
add_library(ktools_precompiled OBJECT ${CMAKE_CURRENT_LIST_DIR}/precompiled.cpp)
target_precompile_headers(ktools_precompiled PRIVATE
  <windows.h> <commctrl.h> <algorithm> <chrono> <cstdint> <filesystem> <functional> <memory> <optional> <string>
  <string_view> <variant> <vector>)
target_link_libraries(ktools_precompiled PRIVATE ktools_warnings)

# A folder of src/ is one library. Its headers are included as "folder/Header.h", and that path exists only
# for targets that name the folder in DEPENDS, or name one that does: including upwards or sideways is a compile
# error.
#
#   ktools_layer(NAME [DEPENDS layer...] [LIBRARIES systemlib...])
#
# All .cpp files of the folder are compiled into the library. Its .rc files are compiled once and handed to
# every program that links the library, because a linker never pulls resources out of an archive.
function(ktools_layer name)
  cmake_parse_arguments(ARG "" "" "DEPENDS;LIBRARIES" ${ARGN})
  ktools_add_layer(${name} ${CMAKE_SOURCE_DIR}/src/${name} "${ARG_DEPENDS}" "${ARG_LIBRARIES}")
endfunction()

function(ktools_add_layer name folder depends libraries)
  set(view ${CMAKE_BINARY_DIR}/layers/${name})
  file(MAKE_DIRECTORY ${view})
  file(CREATE_LINK ${folder} ${view}/${name} SYMBOLIC)
  file(GLOB sources CONFIGURE_DEPENDS ${folder}/*.cpp)
  file(GLOB headers CONFIGURE_DEPENDS ${folder}/*.h)
  file(GLOB resources CONFIGURE_DEPENDS ${folder}/*.rc)
  if(NOT sources)
    add_library(${name} INTERFACE)
    set(scope INTERFACE)
  else()
    add_library(${name} STATIC ${sources} ${headers})
    set(scope PUBLIC)
    target_link_libraries(${name} PRIVATE ktools_warnings)
    target_precompile_headers(${name} REUSE_FROM ktools_precompiled)
  endif()
  target_include_directories(${name} ${scope} ${view})
  target_link_libraries(${name} ${scope} ${depends} ${libraries})
  if(resources)
    file(GLOB ids CONFIGURE_DEPENDS ${folder}/*.ids.h ${folder}/*.ico ${folder}/*.manifest)
    add_library(${name}_rc OBJECT ${resources})
    set_source_files_properties(${resources} PROPERTIES OBJECT_DEPENDS "${ids}")
    target_include_directories(${name}_rc PRIVATE ${folder})
    target_compile_definitions(${name}_rc PRIVATE KTOOLS_RC IDC_STATIC=-1)
    target_link_libraries(${name} INTERFACE $<TARGET_OBJECTS:${name}_rc>)
    add_dependencies(${name} ${name}_rc)
  endif()
endfunction()
