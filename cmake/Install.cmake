# What an installation on Linux consists of, and the Debian package made of it.

set(vorrin_packaging ${CMAKE_SOURCE_DIR}/packaging)
set(vorrin_id org.vorrin.Vorrin)

install(TARGETS vorrin RUNTIME)

# Icon: the drawing itself, and pictures of it, for Qt reads a drawing only with a plug-in that need
# not be there. They lie in the build tree as they do in an installation, so that the program finds
# them in both.
set(vorrin_drawing ${vorrin_packaging}/icon/${vorrin_id}.svg)
set(vorrin_icons)
foreach(size 16 24 32 48 64 128 256)
  set(folder share/icons/hicolor/${size}x${size}/apps)
  set(picture ${CMAKE_BINARY_DIR}/${folder}/${vorrin_id}.png)
  add_custom_command(OUTPUT ${picture}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_BINARY_DIR}/${folder}
    COMMAND ${VORRIN_RSVG_CONVERT} --width=${size} --height=${size} --output=${picture} ${vorrin_drawing}
    DEPENDS ${vorrin_drawing} VERBATIM)
  list(APPEND vorrin_icons ${picture})
  install(FILES ${picture} DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps)
endforeach()
add_custom_target(vorrin_icons ALL DEPENDS ${vorrin_icons})
add_dependencies(vorrin vorrin_icons)
install(FILES ${vorrin_drawing} DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)

# Desktop
install(FILES ${vorrin_packaging}/desktop/${vorrin_id}.desktop
        DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${vorrin_packaging}/desktop/${vorrin_id}.metainfo.xml
        DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)

configure_file(${vorrin_packaging}/desktop/${vorrin_id}.service.in
               ${CMAKE_BINARY_DIR}/${vorrin_id}.service @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/${vorrin_id}.service
        DESTINATION ${CMAKE_INSTALL_DATADIR}/dbus-1/services)

# Documents, compressed as Debian wants them.
set(vorrin_documents)
function(vorrin_install_compressed source name folder)
  set(compressed ${CMAKE_BINARY_DIR}/documents/${name}.gz)
  add_custom_command(OUTPUT ${compressed}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_BINARY_DIR}/documents
    COMMAND sh -c "exec \"$1\" -9nc \"$2\" >\"$3\"" - ${VORRIN_GZIP} ${source} ${compressed}
    DEPENDS ${source} VERBATIM)
  list(APPEND vorrin_documents ${compressed})
  set(vorrin_documents ${vorrin_documents} PARENT_SCOPE)
  install(FILES ${compressed} DESTINATION ${folder})
endfunction()
vorrin_install_compressed(${vorrin_packaging}/man/vorrin.1 vorrin.1 ${CMAKE_INSTALL_MANDIR}/man1)
vorrin_install_compressed(${vorrin_packaging}/man/vorrin-input-helper.8 vorrin-input-helper.8
                          ${CMAKE_INSTALL_MANDIR}/man8)
set(vorrin_doc ${CMAKE_INSTALL_DATADIR}/doc/vorrin)
vorrin_install_compressed(${CMAKE_SOURCE_DIR}/CHANGELOG.md NEWS ${vorrin_doc})
vorrin_install_compressed(${vorrin_packaging}/debian/changelog changelog ${vorrin_doc})
add_custom_target(vorrin_documents ALL DEPENDS ${vorrin_documents})
install(FILES ${vorrin_packaging}/debian/copyright DESTINATION ${vorrin_doc})
install(FILES ${vorrin_packaging}/debian/lintian-overrides
  DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides RENAME vorrin)
install(FILES ${CMAKE_SOURCE_DIR}/docs/guide.md DESTINATION ${vorrin_doc})

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME vorrin)
# It depends on the libraries of the release it was built on, and the version says so: 0.1.0~deb12. Where there is
# a later release's package, that one is the newer.
cmake_host_system_information(RESULT vorrin_release QUERY DISTRIB_INFO)
string(REPLACE "debian" "deb" vorrin_distribution "${vorrin_release_ID}")
set(CPACK_DEBIAN_PACKAGE_VERSION ${PROJECT_VERSION}~${vorrin_distribution}${vorrin_release_VERSION_ID})
# Full paths are written into the program and its files, so a package is made of a build for /usr; and
# some of those files have their place whatever the prefix.
set(CPACK_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_SET_DESTDIR ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
# The name of a domain that nobody can have: there is no address to write to.
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "The Vorrin developers <developers@vorrin.invalid>")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA
    ${vorrin_packaging}/debian/postinst ${vorrin_packaging}/debian/prerm ${vorrin_packaging}/debian/postrm)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
# The window is set in the system's fixed-pitch font.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "fonts-dejavu-core | fonts-liberation | fonts-noto-mono")
# Without a session bus a second start or a locked screen is not noticed; polkit gives the permission
# that sessions other than X11 ask for.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "default-dbus-session-bus | dbus-session-bus, polkitd")
# Qt's windows in a Wayland session, and gdbus, by which the icon's "Stop Both Macros" is carried out where the
# desktop does not call D-Bus itself.
string(APPEND CPACK_DEBIAN_PACKAGE_RECOMMENDS ", qt6-wayland, libglib2.0-bin")
# With it a macro keeps its pace on a machine that is busy with something else. Desktops with sound
# have it.
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "rtkit")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "repeat a digit key or a left click")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"Vorrin repeats input for its user: one macro presses a digit key over and
over, the other clicks the left mouse button wherever the pointer is. A
macro's shortcut starts and stops it in any application, and Escape always
stops both.
.
Intervals go from 0.001 to 3600 seconds. Settings save themselves, and named
presets keep whole sets of them. Both macros are off at every start, and stop
before sleep and when the screen is locked.
.
This package was built for ${vorrin_release_PRETTY_NAME}.")
include(CPack)
