# How every target of Vorrin is made: language level, warnings, sanitizers, and the layer rule.

include(CheckPIESupported)
check_pie_supported()
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

add_library(vorrin_options INTERFACE)
target_compile_features(vorrin_options INTERFACE cxx_std_20)
target_compile_options(vorrin_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Wold-style-cast
  -fno-strict-aliasing
  # GCC 12 sees overlaps in std::string that cannot be there (GCC bug 105651).
  $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
if(VORRIN_WARNINGS_ARE_ERRORS AND
   ((CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION MATCHES "^1[2-4]\\.") OR
    (CMAKE_CXX_COMPILER_ID STREQUAL "Clang" AND CMAKE_CXX_COMPILER_VERSION MATCHES "^1[69]\\.")))
  # Of other compilers nobody knows what they will warn of.
  target_compile_options(vorrin_options INTERFACE -Werror)
endif()
if(CMAKE_SYSTEM_NAME STREQUAL "Linux")
  # Qt's build files name the OpenGL libraries, which Vorrin never calls: without this they would be
  # loaded at every start.
  target_link_options(vorrin_options INTERFACE -Wl,--as-needed)
endif()
if(CMAKE_SYSTEM_NAME STREQUAL "Linux" AND NOT VORRIN_SANITIZE)
  include(VorrinHardening)
endif()
if(VORRIN_SANITIZE)
  target_compile_options(vorrin_options INTERFACE
    -fsanitize=${VORRIN_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer
    # In the tests' own sources these take a third of the time to compile and find what ends them anyway.
    $<$<PATH:IS_PREFIX,${CMAKE_SOURCE_DIR}/tests,$<TARGET_PROPERTY:SOURCE_DIR>>:-fno-sanitize=alignment,null,vptr>)
  target_link_options(vorrin_options INTERFACE -fsanitize=${VORRIN_SANITIZE})
endif()
if(VORRIN_COVERAGE)
  # The counts lie in files that every process maps, so those of a process that is killed, or has given up
  # its rights, are there too.
  target_compile_options(vorrin_options INTERFACE
    -fprofile-instr-generate=${CMAKE_BINARY_DIR}/counts/%m%c.profraw -fcoverage-mapping
    -fprofile-update=atomic "SHELL:-mllvm -runtime-counter-relocation"
    # GCC 12's own headers call one that was deprecated since.
    -Wno-deprecated-declarations)
  target_link_options(vorrin_options INTERFACE -fprofile-instr-generate)
endif()

# vorrin_expose_folder(TARGET SCOPE FOLDER): makes FOLDER's headers reachable as "folder/name.h" for
# whoever links TARGET, and for nobody else. An include path holding the whole source tree would let
# every layer see every other; a link of its own in the build tree lets a wrong include fail.
function(vorrin_expose_folder target scope folder)
  set(root ${CMAKE_BINARY_DIR}/layers/${folder})
  get_filename_component(parent ${root}/${folder} DIRECTORY)
  file(MAKE_DIRECTORY ${parent})
  file(CREATE_LINK ${CMAKE_SOURCE_DIR}/${folder} ${root}/${folder} SYMBOLIC)
  target_include_directories(${target} ${scope} ${root})
endfunction()

# vorrin_layer(TARGET FOLDER SOURCES ... LINKS ...): the library of one folder.
function(vorrin_layer target folder)
  cmake_parse_arguments(PARSE_ARGV 2 layer "" "" "SOURCES;LINKS;PRIVATE_LINKS")
  add_library(${target} STATIC ${layer_SOURCES})
  vorrin_expose_folder(${target} PUBLIC ${folder})
  target_link_libraries(${target} PUBLIC ${layer_LINKS} PRIVATE vorrin_options ${layer_PRIVATE_LINKS})
endfunction()
