# lotmere_library(NAME [LINKS target...])
#
# One static library for the room whose folder calls it. Its headers are reached as "NAME/file.hpp" through an
# include root of its own, so that a room sees only the rooms it links: a wrong include doesn't compile. A
# NAME with a slash, "ui/look", is the target lotmere_ui_look.
add_library(lotmere_options INTERFACE)
target_compile_options(lotmere_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion
                                                 -Wno-sign-conversion
                                                 -Wnon-virtual-dtor $<$<BOOL:${LOTMERE_WERROR}>:-Werror>
                                                 # GCC 12 warns falsely in std::string
                                                 $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
if(LOTMERE_SANITIZE OR LOTMERE_FUZZ OR CMAKE_BUILD_TYPE STREQUAL "Debug")
  target_compile_definitions(lotmere_options INTERFACE LOTMERE_ASSERTS)
endif()
if(LOTMERE_SANITIZE)
  target_compile_options(lotmere_options INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=all
                                                   -fno-omit-frame-pointer)
  target_link_options(lotmere_options INTERFACE -fsanitize=address,undefined)
endif()
if(LOTMERE_FUZZ)
  if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    message(FATAL_ERROR "The fuzz targets need clang: configure with the preset fuzz")
  endif()
  # The code is watched everywhere; the fuzzer itself is linked into the targets alone.
  target_compile_options(lotmere_options INTERFACE -fsanitize=fuzzer-no-link,address,undefined
                                                   -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(lotmere_options INTERFACE -fsanitize=address,undefined)
endif()

function(lotmere_library name)
  cmake_parse_arguments(ARG "" "" "LINKS" ${ARGN})
  string(REPLACE "/" "_" target ${name})
  set(root ${CMAKE_BINARY_DIR}/include-roots/${target})
  get_filename_component(parent ${root}/${name} DIRECTORY)
  file(MAKE_DIRECTORY ${parent})
  if(NOT EXISTS ${root}/${name})
    file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR} ${root}/${name} SYMBOLIC)
  endif()
  file(GLOB sources CONFIGURE_DEPENDS *.cpp *.hpp)
  list(FILTER sources EXCLUDE REGEX "/main\\.cpp$")
  add_library(lotmere_${target} STATIC ${sources})
  target_include_directories(lotmere_${target} PUBLIC ${root})
  target_link_libraries(lotmere_${target} PUBLIC ${ARG_LINKS} PRIVATE lotmere_options)
endfunction()
