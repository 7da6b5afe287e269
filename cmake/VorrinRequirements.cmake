# Finds everything that the build uses, before any folder is read: what is missing is named at once, libraries
# by their names for pkg-config.

set(vorrin_missing)
macro(vorrin_require name found)
  if(NOT ${found})
    list(APPEND vorrin_missing ${name})
  endif()
endmacro()

# vorrin_find(NAME PACKAGE ...): finds the package PACKAGE, for which pkg-config's name is NAME.
macro(vorrin_find name package)
  find_package(${package} ${ARGN} QUIET)
  vorrin_require(${name} ${package}_FOUND)
endmacro()

# vorrin_find_modules(NAME ...): makes a target PkgConfig::NAME of each.
macro(vorrin_find_modules)
  foreach(module ${ARGN})
    pkg_check_modules(${module} QUIET IMPORTED_TARGET ${module})
    vorrin_require(${module} ${module}_FOUND)
  endforeach()
endmacro()

# vorrin_find_tool(VARIABLE NAME)
macro(vorrin_find_tool variable name)
  find_program(${variable} ${name})
  vorrin_require(${name} ${variable})
endmacro()

vorrin_find(nlohmann_json nlohmann_json)
vorrin_find(libutf8proc Utf8proc)
if(CMAKE_SYSTEM_NAME STREQUAL "Linux")
  vorrin_find(pkg-config PkgConfig)
  # Qt's windows count as missing where this is, for their build files name it.
  vorrin_find(gl OpenGL)
  foreach(part Core Gui Widgets DBus)
    vorrin_find(Qt6${part} Qt6 6.4 COMPONENTS ${part})
  endforeach()
  vorrin_find_modules(libevdev libsystemd xcb xcb-xinput xcb-xkb xcb-xtest xkbcommon-x11)
  vorrin_find_tool(VORRIN_RSVG_CONVERT rsvg-convert)
  vorrin_find_tool(VORRIN_GZIP gzip)
  if(VORRIN_TESTS)
    vorrin_find(Qt6Test Qt6 6.4 COMPONENTS Test)
    vorrin_find_modules(gmock)
    vorrin_find(x11 X11)
    vorrin_require(xi X11_Xi_FOUND)
    vorrin_require(xtst X11_Xtst_FOUND)
  endif()
endif()
if(VORRIN_TESTS)
  vorrin_find(gtest GTest)
endif()

if(vorrin_missing)
  list(JOIN vorrin_missing " " vorrin_missing)
  message(FATAL_ERROR "Building Vorrin needs what is missing here: ${vorrin_missing}\n"
                      "docs/other-distributions.md names the packages they are in (Qt: 6.4 or later).")
endif()
