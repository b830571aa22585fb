# Compiler settings that every target shares, and the helpers by which targets are declared.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 99)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_C_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_LINK_DEPENDS_NO_SHARED ON)

if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Release CACHE STRING "" FORCE)
endif()

find_program(ORVANE_CCACHE ccache)
if(ORVANE_CCACHE)
  set(CMAKE_C_COMPILER_LAUNCHER ${ORVANE_CCACHE})
  set(CMAKE_CXX_COMPILER_LAUNCHER ${ORVANE_CCACHE})
endif()

include(GNUInstallDirs)
# Installed libraries and tools find each other wherever they are put.
set(CMAKE_INSTALL_RPATH "$ORIGIN;$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")
include(CheckCXXCompilerFlag)

add_library(orvane_flags INTERFACE)
target_compile_options(orvane_flags INTERFACE -Wall -Wextra -Wpedantic -Werror -Wno-unused-parameter)
# GCC 12 takes "text" + std::string for an overlapping copy (its own bug 105651).
target_compile_options(orvane_flags INTERFACE $<$<COMPILE_LANG_AND_ID:CXX,GNU>:-Wno-restrict>)
# Its guesses about buffers misfire on <string> when that is read from a precompiled header. AddressSanitizer's lane sees
# what they would.
foreach(guess array-bounds stringop-overflow stringop-overread)
  target_compile_options(orvane_flags INTERFACE $<$<COMPILE_LANG_AND_ID:CXX,GNU>:-Wno-${guess}>)
endforeach()
if(ORVANE_SANITIZE)
  target_compile_options(orvane_flags INTERFACE -fsanitize=${ORVANE_SANITIZE} -fno-omit-frame-pointer)
  target_link_options(orvane_flags INTERFACE -fsanitize=${ORVANE_SANITIZE})
  # This one misfires on instrumented code (its own <regex> for one); the builds without sanitizers keep it.
  target_compile_options(orvane_flags INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
  if(ORVANE_SANITIZE MATCHES "undefined")
    # Objects of sibling libraries are reached through interfaces alone: the two sides share no identity of types, which
    # is what the vptr check compares.
    target_compile_options(orvane_flags INTERFACE -fno-sanitize-recover=undefined -fno-sanitize=vptr)
  endif()
endif()

# Reads the headers that nearly every file begins with once for the target, which halves the time of its build: the
# standard ones, and those of the target's own that are given. Clang reads each file as it stands, and so finds an include
# that is missing.
function(orvane_precompile_standard_headers target)
  if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
    target_precompile_headers(${target} PRIVATE <algorithm> <array> <atomic> <chrono> <condition_variable> <cstring>
                              <functional> <map> <memory> <mutex> <sstream> <string> <string_view> <thread> <vector> ${ARGN})
  endif()
endfunction()

# The revision that orvanecore_get_version_hash gives: that of the checkout, else (a source archive) that of its file.
function(orvane_source_revision out)
  set(revision "")
  find_package(Git QUIET)
  if(Git_FOUND AND EXISTS ${PROJECT_SOURCE_DIR}/.git)
    execute_process(COMMAND ${GIT_EXECUTABLE} rev-parse HEAD WORKING_DIRECTORY ${PROJECT_SOURCE_DIR}
                    OUTPUT_VARIABLE revision OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
  endif()
  if(NOT revision MATCHES "^[0-9a-f]+$" AND EXISTS ${PROJECT_SOURCE_DIR}/REVISION)
    file(STRINGS ${PROJECT_SOURCE_DIR}/REVISION revision LIMIT_COUNT 1)
  endif()
  string(LENGTH "${revision}" length)
  if(NOT length EQUAL 40)
    message(WARNING "This is no git checkout (or git does not trust its owner), and there is no file REVISION of 40 "
                    "hexadecimal digits: orvanecore_get_version_hash() will give forty zeros")
    set(revision 0000000000000000000000000000000000000000)
  endif()
  set(${out} ${revision} PARENT_SCOPE)
endfunction()
