# precompiled(TARGET HEADERS...): the headers that most files of the target read, read once. Halves the time to compile.
function(precompiled target)
  target_precompile_headers(${target} PRIVATE <algorithm> <any> <array> <cmath> <cstdint> <functional> <map> <optional>
    <span> <string> <string_view> <utility> <vector> ${ARGN})
  # So that ccache can keep what was made with them.
  target_compile_options(${target} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess>)
endfunction()

# room(NAME KNOWN...): one static library per room of the house. Each room gets an include directory of its
# own (a link to its folder), so that it sees its own headers and those of the rooms it names, and no others.
function(room name)
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/src/${name}/*.cpp)
  file(GLOB headers CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/src/${name}/*.h)
  if(sources)
    add_library(${name} STATIC ${sources} ${headers})
    set(scope PUBLIC)
    target_link_libraries(${name} PRIVATE fmt::fmt)
    precompiled(${name})
  else()
    add_library(${name} INTERFACE)
    set(scope INTERFACE)
  endif()
  set(include ${CMAKE_BINARY_DIR}/include/${name})
  file(MAKE_DIRECTORY ${include})
  file(CREATE_LINK ${CMAKE_SOURCE_DIR}/src/${name} ${include}/${name} SYMBOLIC)
  target_include_directories(${name} ${scope} ${include})
  foreach(known ${ARGN})
    target_link_libraries(${name} ${scope} ${known})
  endforeach()
endfunction()
