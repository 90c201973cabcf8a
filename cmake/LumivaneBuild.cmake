# What every target of the house has in common: the language, the warnings, the sanitizers, the include root.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_C_COMPILER_LAUNCHER ${CCACHE_PROGRAM})
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE_PROGRAM})
endif()

add_library(lumivane_flags INTERFACE)
target_include_directories(lumivane_flags INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_options(lumivane_flags INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
# With full optimisation gcc 12 finds uninitialised members in std::variant and overlapping copies in std::string where
# there are none.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  target_compile_options(lumivane_flags INTERFACE
                         $<$<CONFIG:Release,RelWithDebInfo>:-Wno-maybe-uninitialized;-Wno-restrict>)
endif()
if(LUMIVANE_WERROR)
  target_compile_options(lumivane_flags INTERFACE -Werror)
endif()
if(LUMIVANE_SANITIZE)
  target_compile_options(lumivane_flags INTERFACE -fsanitize=${LUMIVANE_SANITIZE} -fno-omit-frame-pointer
                                                  -fno-sanitize-recover=all)
  target_link_options(lumivane_flags INTERFACE -fsanitize=${LUMIVANE_SANITIZE})
endif()

# lumivane_room(<name> SOURCES <file>... LINKS <target>...)
# A static library for one folder, linking only what it may use.
function(lumivane_room name)
  cmake_parse_arguments(ROOM "" "" "SOURCES;LINKS;PRIVATE_LINKS" ${ARGN})
  add_library(${name} STATIC ${ROOM_SOURCES})
  target_link_libraries(${name} PUBLIC lumivane_flags ${ROOM_LINKS} PRIVATE ${ROOM_PRIVATE_LINKS})
endfunction()

# What all test programs begin with, compiled once. Programs whose libraries change the compiler's flags (Qt, libvips)
# cannot share it and say OWN_HEADERS.
set(LUMIVANE_TEST_HEADERS <gmock/gmock.h> <gtest/gtest.h> <functional> <map> <memory> <string> <vector>)
function(lumivane_shared_test_headers)
  if(NOT TARGET lumivane_test_headers)
    file(WRITE ${PROJECT_BINARY_DIR}/test-headers.cpp "// Only here to be compiled with the headers.\n")
    add_library(lumivane_test_headers OBJECT EXCLUDE_FROM_ALL ${PROJECT_BINARY_DIR}/test-headers.cpp)
    target_link_libraries(lumivane_test_headers PRIVATE lumivane_flags GTest::gmock GTest::gtest)
    target_precompile_headers(lumivane_test_headers PRIVATE ${LUMIVANE_TEST_HEADERS})
  endif()
endfunction()

# lumivane_test(<name> LABELS <label>... SOURCES <file>... LINKS <target>... [ENVIRONMENT <NAME=value>...]
#               [TIMEOUT <seconds>] [OWN_HEADERS])
# One GoogleTest program, which is one ctest entry.
function(lumivane_test name)
  cmake_parse_arguments(TEST "OWN_HEADERS" "TIMEOUT" "LABELS;SOURCES;LINKS;ENVIRONMENT" ${ARGN})
  add_executable(${name} ${TEST_SOURCES})
  target_link_libraries(${name} PRIVATE lumivane_flags ${TEST_LINKS} GTest::gmock GTest::gtest_main)
  if(TEST_OWN_HEADERS)
    target_precompile_headers(${name} PRIVATE ${LUMIVANE_TEST_HEADERS})
  else()
    lumivane_shared_test_headers()
    target_precompile_headers(${name} REUSE_FROM lumivane_test_headers)
  endif()
  add_test(NAME ${name} COMMAND ${name})
  if(NOT TEST_TIMEOUT)
    set(TEST_TIMEOUT 120)
  endif()
  set_tests_properties(${name} PROPERTIES LABELS "${TEST_LABELS}" TIMEOUT ${TEST_TIMEOUT}
                       ENVIRONMENT "${TEST_ENVIRONMENT}")
endfunction()
