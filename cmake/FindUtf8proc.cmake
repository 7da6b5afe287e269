# Finds utf8proc, the tables and rules of Unicode, and defines Utf8proc::utf8proc. On a Mac the static
# library, so that Vorrin.app needs nothing beside itself.
if(APPLE)
  set(utf8proc_names libutf8proc.a utf8proc)
else()
  set(utf8proc_names utf8proc)
endif()
find_path(Utf8proc_INCLUDE_DIR utf8proc.h)
find_library(Utf8proc_LIBRARY NAMES ${utf8proc_names})
mark_as_advanced(Utf8proc_INCLUDE_DIR Utf8proc_LIBRARY)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Utf8proc REQUIRED_VARS Utf8proc_LIBRARY Utf8proc_INCLUDE_DIR)

if(Utf8proc_FOUND AND NOT TARGET Utf8proc::utf8proc)
  add_library(Utf8proc::utf8proc UNKNOWN IMPORTED)
  set_target_properties(Utf8proc::utf8proc PROPERTIES
    IMPORTED_LOCATION ${Utf8proc_LIBRARY}
    INTERFACE_INCLUDE_DIRECTORIES ${Utf8proc_INCLUDE_DIR})
endif()
