# Read by CMake right after project(): it goes on as on a Mac, with the libraries of the machine it runs on. Only to be
# asked what would be compiled how; nothing of this can be built.
find_package(Qt6 REQUIRED COMPONENTS Core Gui Widgets Network Svg Sql)
foreach(library IN ITEMS Qt6Keychain PNG simdjson PkgConfig CURL OpenSSL)
  find_package(${library} REQUIRED)
endforeach()
# Found above: what Linux libraries ask of the system differs from here on.
macro(find_package)
endmacro()
set(APPLE TRUE)
