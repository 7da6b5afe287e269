# Builds the Mac program, for both processors, on another system: with LLVM 16 and a macOS SDK laid
# out as a sysroot, whose place the variable VORRIN_MACOS_SDK tells. The SDK is Apple's and no part
# of this project. What it lacks are the stubs of the C and C++ libraries, so their symbols stay to be
# found at start, as do those of utf8proc; packaging/macos/check-undefined-symbols makes sure that
# nothing else does.

set(VORRIN_MACOS_SDK "$ENV{VORRIN_MACOS_SDK}" CACHE PATH "Sysroot made of a macOS SDK")
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES VORRIN_MACOS_SDK)
if(NOT EXISTS ${VORRIN_MACOS_SDK}/System/Library/Frameworks/AppKit.framework)
  message(FATAL_ERROR "VORRIN_MACOS_SDK (\"${VORRIN_MACOS_SDK}\") is no macOS SDK: it has no AppKit")
endif()

set(CMAKE_SYSTEM_NAME Darwin)
set(CMAKE_OSX_SYSROOT ${VORRIN_MACOS_SDK})
set(CMAKE_OSX_DEPLOYMENT_TARGET 12.0)
set(CMAKE_OSX_ARCHITECTURES arm64 x86_64)

set(llvm_version 16)
find_program(VORRIN_CLANG clang-${llvm_version} REQUIRED)
find_program(VORRIN_CLANGXX clang++-${llvm_version} REQUIRED)
set(CMAKE_C_COMPILER ${VORRIN_CLANG})
set(CMAKE_CXX_COMPILER ${VORRIN_CLANGXX})
set(CMAKE_OBJCXX_COMPILER ${VORRIN_CLANGXX})
foreach(language C CXX OBJCXX)
  set(CMAKE_${language}_COMPILER_TARGET arm64-apple-macos)
endforeach()
find_program(CMAKE_AR llvm-ar-${llvm_version} REQUIRED)
find_program(CMAKE_RANLIB llvm-ranlib-${llvm_version} REQUIRED)
find_program(CMAKE_INSTALL_NAME_TOOL llvm-install-name-tool-${llvm_version} REQUIRED)
find_program(VORRIN_LIPO llvm-lipo-${llvm_version} REQUIRED)
find_program(VORRIN_LIBTOOL llvm-libtool-darwin-${llvm_version} REQUIRED)

# The compiler joins the two processors' code by a program called plainly "lipo".
set(tools ${CMAKE_BINARY_DIR}/macos-cross-tools)
file(MAKE_DIRECTORY ${tools})
file(CREATE_LINK ${VORRIN_LIPO} ${tools}/lipo SYMBOLIC)
foreach(language C CXX OBJCXX)
  set(CMAKE_${language}_FLAGS_INIT "-B${tools}")
  # ar knows nothing of objects for two processors.
  set(CMAKE_${language}_CREATE_STATIC_LIBRARY
      "<CMAKE_COMMAND> -E rm -f <TARGET>" "${VORRIN_LIBTOOL} -static -o <TARGET> <OBJECTS>")
endforeach()
# lld wants to be told of a linker version that knows the option naming platform and SDK.
set(CMAKE_EXE_LINKER_FLAGS_INIT
    "-fuse-ld=lld-${llvm_version} -mlinker-version=907 -nostdlib -Wl,-undefined,dynamic_lookup")

set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# The JSON library is headers only, so the host's serve; alone, since the folder they lie in holds all
# of the host's others too.
set(json ${CMAKE_BINARY_DIR}/macos-cross-json)
find_path(VORRIN_JSON_HEADERS nlohmann/json.hpp PATHS /usr/include /usr/local/include
          NO_CMAKE_FIND_ROOT_PATH REQUIRED)
file(MAKE_DIRECTORY ${json}/include)
file(CREATE_LINK ${VORRIN_JSON_HEADERS}/nlohmann ${json}/include/nlohmann SYMBOLIC)
file(WRITE ${json}/nlohmann_json-config.cmake
"if(NOT TARGET nlohmann_json::nlohmann_json)
  add_library(nlohmann_json::nlohmann_json INTERFACE IMPORTED)
  set_target_properties(nlohmann_json::nlohmann_json PROPERTIES
    INTERFACE_INCLUDE_DIRECTORIES \${CMAKE_CURRENT_LIST_DIR}/include)
endif()
")
set(nlohmann_json_DIR ${json})

# Of the Unicode library the host's header serves, alone too; its symbols stay open like those of the C
# library. On a Mac the real library is linked.
set(unicode ${CMAKE_BINARY_DIR}/macos-cross-utf8proc)
find_path(VORRIN_UTF8PROC_HEADER utf8proc.h PATHS /usr/include /usr/local/include
          NO_CMAKE_FIND_ROOT_PATH REQUIRED)
file(MAKE_DIRECTORY ${unicode}/include)
file(CREATE_LINK ${VORRIN_UTF8PROC_HEADER}/utf8proc.h ${unicode}/include/utf8proc.h SYMBOLIC)
file(WRITE ${unicode}/utf8proc-config.cmake
"if(NOT TARGET Utf8proc::utf8proc)
  add_library(Utf8proc::utf8proc INTERFACE IMPORTED)
  set_target_properties(Utf8proc::utf8proc PROPERTIES
    INTERFACE_INCLUDE_DIRECTORIES \${CMAKE_CURRENT_LIST_DIR}/include)
endif()
")
set(Utf8proc_DIR ${unicode})
set(CMAKE_FIND_PACKAGE_PREFER_CONFIG ON)

# The test framework is compiled from its sources.
set(framework ${CMAKE_BINARY_DIR}/macos-cross-gtest)
set(VORRIN_GTEST_SOURCES /usr/src/googletest CACHE PATH "Sources of GoogleTest")
file(WRITE ${framework}/GTestConfig.cmake
"if(NOT TARGET GTest::gtest)
  set(INSTALL_GTEST OFF)
  add_subdirectory(\${VORRIN_GTEST_SOURCES} ${framework}/build EXCLUDE_FROM_ALL)
endif()
")
set(GTest_DIR ${framework})
