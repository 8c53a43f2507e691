# Language level, warnings and the switches that every target of the project shares.
set(CMAKE_CXX_STANDARD 23)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_AUTOMOC ON)

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE_PROGRAM})
  set(CMAKE_OBJCXX_COMPILER_LAUNCHER ${CCACHE_PROGRAM})
endif()

add_library(vantle_options INTERFACE)
target_compile_options(vantle_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Wold-style-cast)
target_compile_definitions(vantle_options INTERFACE
  QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING QT_NO_FOREACH QT_NO_KEYWORDS
  QT_STRICT_ITERATORS)
target_include_directories(vantle_options INTERFACE ${CMAKE_SOURCE_DIR}/src)

if(APPLE)
  # libc++ hides std::jthread and what belongs to it behind a switch before its version 20; nothing has to be linked for it.
  include(CheckCXXSourceCompiles)
  set(jthread "#include <condition_variable>\n#include <mutex>\n#include <thread>\n
    std::mutex lock;
    std::condition_variable_any ended;
    int main() {
      std::jthread([](std::stop_token stop) { std::unique_lock held(lock); ended.wait(held, stop, [] { return false; }); });
    }")
  check_cxx_source_compiles("${jthread}" VANTLE_HAS_JTHREAD)
  if(NOT VANTLE_HAS_JTHREAD)
    set(CMAKE_REQUIRED_DEFINITIONS -D_LIBCPP_ENABLE_EXPERIMENTAL)
    check_cxx_source_compiles("${jthread}" VANTLE_HAS_HIDDEN_JTHREAD)
    unset(CMAKE_REQUIRED_DEFINITIONS)
    if(NOT VANTLE_HAS_HIDDEN_JTHREAD)
      message(FATAL_ERROR "This compiler's library has no std::jthread: Xcode 16 or later is needed.")
    endif()
    target_compile_definitions(vantle_options INTERFACE _LIBCPP_ENABLE_EXPERIMENTAL)
  endif()
endif()

option(VANTLE_WERROR "Treat warnings as errors, with the compiler that every change is tested with" OFF)
# What other compilers and libraries warn about, GCC 13's optimizer for one without a reason, keeps nobody from building.
if(VANTLE_WERROR AND CMAKE_CXX_COMPILER_ID STREQUAL GNU AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  target_compile_options(vantle_options INTERFACE -Werror)
endif()

set(VANTLE_SANITIZE "" CACHE STRING "Sanitizers, comma separated: address,undefined or thread")
if(VANTLE_SANITIZE)
  target_compile_options(vantle_options INTERFACE -fsanitize=${VANTLE_SANITIZE} -fno-omit-frame-pointer -g)
  target_link_options(vantle_options INTERFACE -fsanitize=${VANTLE_SANITIZE})
endif()

option(VANTLE_HARDENED "Build as programs are built that are handed to others" OFF)
if(VANTLE_HARDENED)
  include(CheckPIESupported)
  check_pie_supported()
  set(CMAKE_POSITION_INDEPENDENT_CODE ON)
  # No path of the machine that built it is left in the program.
  target_compile_options(vantle_options INTERFACE
    -fstack-protector-strong -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2 -Wformat -Werror=format-security
    -ffile-prefix-map=${CMAKE_SOURCE_DIR}=.)
  if(NOT APPLE)
    target_link_options(vantle_options INTERFACE LINKER:-z,relro LINKER:-z,now)
  endif()
endif()
