# SPDX-License-Identifier: Apache-2.0
# Finds zlog, which ships neither a CMake nor a pkg-config file, as Zlog::zlog.
find_path(Zlog_INCLUDE_DIR zlog.h)
find_library(Zlog_LIBRARY zlog)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Zlog REQUIRED_VARS Zlog_LIBRARY Zlog_INCLUDE_DIR)
mark_as_advanced(Zlog_INCLUDE_DIR Zlog_LIBRARY)

if(Zlog_FOUND AND NOT TARGET Zlog::zlog)
  add_library(Zlog::zlog UNKNOWN IMPORTED)
  set_target_properties(Zlog::zlog PROPERTIES
    IMPORTED_LOCATION "${Zlog_LIBRARY}"
    INTERFACE_INCLUDE_DIRECTORIES "${Zlog_INCLUDE_DIR}")
endif()
