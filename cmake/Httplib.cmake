# Finds cpp-httplib, which the server of the tests and the examples is built on, as httplib::httplib. Homebrew has a CMake
# package of it, Debian a file for pkg-config.
find_package(httplib CONFIG QUIET)
if(NOT TARGET httplib::httplib)
    find_package(PkgConfig REQUIRED)
    pkg_check_modules(HTTPLIB REQUIRED IMPORTED_TARGET cpp-httplib)
    add_library(httplib::httplib ALIAS PkgConfig::HTTPLIB)
endif()
