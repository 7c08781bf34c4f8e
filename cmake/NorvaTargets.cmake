# How the project's targets are made: one object library a folder, gathered in libraries.

# What every target of the project is compiled with.
add_library(norva_flags INTERFACE)
target_compile_features(norva_flags INTERFACE cxx_std_20)
target_compile_options(norva_flags INTERFACE
  $<$<COMPILE_LANGUAGE:CXX>:-Wall -Wextra -Wpedantic -Wconversion -Wshadow>
  # Calls within a library need not allow for another one that replaces the function.
  $<$<COMPILE_LANGUAGE:CXX>:-fno-semantic-interposition>)

# norva_configure_library(TARGET): the settings that all installed libraries share.
function(norva_configure_library target)
  set_target_properties(${target} PROPERTIES
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON
    POSITION_INDEPENDENT_CODE ON)
  target_compile_features(${target} PUBLIC cxx_std_20)
  target_link_libraries(${target} PRIVATE $<BUILD_INTERFACE:norva_flags>)
  target_link_options(${target} PRIVATE -Wl,-Bsymbolic-functions)
  target_include_directories(${target} PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>)
  if(NOT BUILD_SHARED_LIBS)
    target_compile_definitions(${target} PUBLIC NORVA_STATIC)
  endif()
endfunction()

# norva_add_part(NAME [HEADERS ...] [SOURCES ...] [LINK ...])
# An object library norva::NAME from one folder, which becomes part of norva::norva. HEADERS are
# installed; headers of an internal/ folder are not listed. LINK names the parts it may use.
function(norva_add_part name)
  cmake_parse_arguments(PARSE_ARGV 1 part "" "" "HEADERS;SOURCES;LINK")
  set(target norva_${name})
  add_library(${target} OBJECT ${part_SOURCES})
  add_library(norva::${name} ALIAS ${target})
  set_target_properties(${target} PROPERTIES
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON
    POSITION_INDEPENDENT_CODE ON)
  target_link_libraries(${target} PUBLIC norva_flags ${part_LINK})
  target_include_directories(${target} PUBLIC ${PROJECT_SOURCE_DIR})
  if(NOT BUILD_SHARED_LIBS)
    target_compile_definitions(${target} PUBLIC NORVA_STATIC)
  endif()
  list(TRANSFORM part_HEADERS PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
  target_sources(norva PRIVATE $<TARGET_OBJECTS:${target}>)
  target_sources(norva PUBLIC FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR} FILES ${part_HEADERS})
endfunction()

# norva_add_test(NAME SOURCES ... [LINK ...] [ENVIRONMENT ...] [LABELS ...])
# A GoogleTest program, run as one test.
function(norva_add_test name)
  cmake_parse_arguments(PARSE_ARGV 1 test "" "" "SOURCES;LINK;ENVIRONMENT;LABELS")
  add_executable(${name} ${test_SOURCES})
  target_link_libraries(${name} PRIVATE norva_flags norva::norva ${test_LINK} GTest::gtest_main)
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR})
  target_compile_definitions(${name} PRIVATE
    NORVA_TEST_VECTORS="${PROJECT_SOURCE_DIR}/tests/vectors"
    NORVA_EXAMPLES="${PROJECT_SOURCE_DIR}/examples")
  add_test(NAME ${name} COMMAND ${name})
  set_tests_properties(${name} PROPERTIES
    ENVIRONMENT "LC_ALL=C;${test_ENVIRONMENT}"
    LABELS "${test_LABELS}")
endfunction()
