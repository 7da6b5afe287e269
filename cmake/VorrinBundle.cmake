# Vorrin.app: the bundle around the executable, its icon, and its signature.

set(VORRIN_SIGNING_IDENTITY "-" CACHE STRING
    "Who signs Vorrin.app: - for nobody (ad hoc), or the name of a Developer ID certificate")
set(VORRIN_NOTARY_PROFILE "" CACHE STRING
    "Keychain profile of notarytool for the target notarize; empty without notarisation")

# Only a Mac has it; what is built elsewhere carries the linker's own ad-hoc signature.
if(NOT CMAKE_CROSSCOMPILING)
  find_program(VORRIN_CODESIGN codesign REQUIRED)
endif()

set(vorrin_macos_packaging ${CMAKE_SOURCE_DIR}/packaging/macos)

# Built for those of the wanted processors that the Unicode library has code for: a universal one of
# MacPorts for both, Homebrew's for the Mac's own alone.
if(NOT CMAKE_CROSSCOMPILING)
  execute_process(COMMAND lipo -archs ${Utf8proc_LIBRARY}
                  OUTPUT_VARIABLE vorrin_processors OUTPUT_STRIP_TRAILING_WHITESPACE
                  COMMAND_ERROR_IS_FATAL ANY)
  string(REPLACE " " "|" vorrin_processors "^(${vorrin_processors})$")
  list(FILTER CMAKE_OSX_ARCHITECTURES INCLUDE REGEX "${vorrin_processors}")
endif()

# What draws the icon while building: a program of our own on a Mac, the host's elsewhere.
add_executable(vorrin_render_icon EXCLUDE_FROM_ALL ${vorrin_macos_packaging}/render_icon.mm)
target_link_libraries(vorrin_render_icon PRIVATE vorrin_options "-framework AppKit" -lobjc)
set_target_properties(vorrin_render_icon PROPERTIES OBJCXX_STANDARD 20)
target_compile_options(vorrin_render_icon PRIVATE -fobjc-arc)

# vorrin_make_icon(RESULT): has the build make Vorrin.icns and sets RESULT to its path.
function(vorrin_make_icon result)
  set(drawing ${CMAKE_SOURCE_DIR}/packaging/icon/org.vorrin.Vorrin.svg)
  set(icon ${CMAKE_BINARY_DIR}/Vorrin.icns)
  if(NOT CMAKE_CROSSCOMPILING)
    set(renderer $<TARGET_FILE:vorrin_render_icon>)
  endif()
  add_custom_command(OUTPUT ${icon}
    COMMAND ${vorrin_macos_packaging}/make-icns ${drawing} ${icon} ${renderer}
    DEPENDS ${drawing} ${vorrin_macos_packaging}/make-icns ${renderer}
    VERBATIM)
  set(${result} ${icon} PARENT_SCOPE)
endfunction()

# Signs the bundle whenever something in it has changed: an unsigned program does not start on arm64, a
# stale signature is none, and the Accessibility grant belongs to a signature.
function(vorrin_sign_bundle target icon)
  set(options --force --sign ${VORRIN_SIGNING_IDENTITY})
  if(NOT VORRIN_SIGNING_IDENTITY STREQUAL "-")
    # Notarisation asks for both.
    list(APPEND options --options runtime --timestamp)
  endif()
  set(signed ${CMAKE_BINARY_DIR}/Vorrin.signed)
  add_custom_command(OUTPUT ${signed}
    COMMAND ${VORRIN_CODESIGN} ${options} $<TARGET_BUNDLE_DIR:${target}>
    COMMAND ${CMAKE_COMMAND} -E touch ${signed}
    DEPENDS ${target} $<TARGET_BUNDLE_CONTENT_DIR:${target}>/Info.plist ${icon}
    VERBATIM)
  add_custom_target(vorrin_signature ALL DEPENDS ${signed})
endfunction()

function(vorrin_add_notarize_target target)
  set(archive ${CMAKE_BINARY_DIR}/Vorrin.zip)
  add_custom_target(notarize
    COMMAND ditto -c -k --keepParent $<TARGET_BUNDLE_DIR:${target}> ${archive}
    COMMAND xcrun notarytool submit ${archive} --keychain-profile ${VORRIN_NOTARY_PROFILE} --wait
    COMMAND xcrun stapler staple $<TARGET_BUNDLE_DIR:${target}>
    VERBATIM)
  add_dependencies(notarize vorrin_signature)
endfunction()

# vorrin_make_bundle(TARGET): makes the executable TARGET the program of Vorrin.app.
function(vorrin_make_bundle target)
  vorrin_make_icon(icon)
  target_sources(${target} PRIVATE ${icon})
  set_source_files_properties(${icon} PROPERTIES MACOSX_PACKAGE_LOCATION Resources)
  set_target_properties(${target} PROPERTIES
    MACOSX_BUNDLE TRUE
    OUTPUT_NAME Vorrin
    MACOSX_BUNDLE_INFO_PLIST ${vorrin_macos_packaging}/Info.plist.in)
  if(VORRIN_CODESIGN)
    vorrin_sign_bundle(${target} ${icon})
  endif()
  if(VORRIN_NOTARY_PROFILE)
    vorrin_add_notarize_target(${target})
  endif()
  install(TARGETS ${target} BUNDLE DESTINATION .)
endfunction()
