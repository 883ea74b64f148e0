# Finds cpp-httplib, used by the server of the tests and examples, as httplib::httplib. Homebrew has a CMake package of it,
# Debian a pkg-config file.
find_package(httplib CONFIG QUIET)
if(NOT TARGET httplib::httplib)
    find_package(PkgConfig REQUIRED)
    pkg_check_modules(HTTPLIB REQUIRED IMPORTED_TARGET cpp-httplib)
    add_library(httplib::httplib ALIAS PkgConfig::HTTPLIB)
endif()
