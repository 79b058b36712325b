# How every target of the house is made: one language level, one set of warnings, one output folder.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)

find_package(PkgConfig REQUIRED)
find_package(Threads REQUIRED)

find_program(VELMORA_MOLD mold)
if(VELMORA_MOLD)
  add_link_options(-fuse-ld=mold)
endif()

if(VELMORA_SANITIZE)
  add_compile_options(-fsanitize=${VELMORA_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${VELMORA_SANITIZE})
endif()

add_library(velmora_warnings INTERFACE)
# GCC 12 sees overlapping copies inside std::string where there are none (its bug 105651).
target_compile_options(velmora_warnings INTERFACE -Wall -Wextra -Wpedantic -Werror
                       $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)

# velmora_add_layer(<name> SOURCES ... DEPENDS ... [PRIVATE_DEPENDS ...])
# One layer of the engine: the static library velmora_<name>. DEPENDS names the layers it may use;
# PRIVATE_DEPENDS names packages that stay behind its implementation.
function(velmora_add_layer name)
  cmake_parse_arguments(LAYER "" "" "SOURCES;DEPENDS;PRIVATE_DEPENDS" ${ARGN})
  add_library(velmora_${name} STATIC ${LAYER_SOURCES})
  target_include_directories(velmora_${name} PUBLIC ${PROJECT_SOURCE_DIR}/engine)
  target_link_libraries(velmora_${name} PUBLIC ${LAYER_DEPENDS}
                                        PRIVATE velmora_warnings ${LAYER_PRIVATE_DEPENDS})
endfunction()

# velmora_add_widget_layer(<name> SOURCES ... DEPENDS ...)
# One folder below widgets/: the static library velmora_widgets_<name>.
function(velmora_add_widget_layer name)
  cmake_parse_arguments(LAYER "" "" "SOURCES;DEPENDS" ${ARGN})
  add_library(velmora_widgets_${name} STATIC ${LAYER_SOURCES})
  set_target_properties(velmora_widgets_${name} PROPERTIES AUTOMOC ON)
  target_include_directories(velmora_widgets_${name} PUBLIC ${PROJECT_SOURCE_DIR})
  target_link_libraries(velmora_widgets_${name} PUBLIC ${LAYER_DEPENDS} Qt6::Widgets PRIVATE velmora_warnings)
endfunction()

# velmora_add_test(<name> LINK ... SOURCES ... [LABELS ...] [DEFINITIONS ...] [DEPENDS ...])
# One test program, <name>_test, whose cases register themselves with CTest.
function(velmora_add_test name)
  cmake_parse_arguments(TEST "" "" "SOURCES;LINK;LABELS;DEFINITIONS;DEPENDS" ${ARGN})
  add_executable(${name}_test ${TEST_SOURCES})
  target_include_directories(${name}_test PRIVATE ${PROJECT_SOURCE_DIR})
  target_link_libraries(${name}_test PRIVATE velmora_warnings velmora_test_support ${TEST_LINK}
                                             GTest::gtest GTest::gmock GTest::gtest_main)
  target_compile_definitions(${name}_test PRIVATE ${TEST_DEFINITIONS})
  if(TEST_DEPENDS)
    add_dependencies(${name}_test ${TEST_DEPENDS})
  endif()
  if(NOT TEST_LABELS)
    set(TEST_LABELS ${name})
  endif()
  gtest_discover_tests(${name}_test DISCOVERY_TIMEOUT 60 PROPERTIES LABELS "${TEST_LABELS}" TIMEOUT 300)
endfunction()

# velmora_add_widget_test(<name> LINK ... SOURCES ... [DEFINITIONS ...] [DEPENDS ...])
# One test program of widgets, widgets_<name>_test, which needs no display.
function(velmora_add_widget_test name)
  cmake_parse_arguments(TEST "" "" "SOURCES;LINK;DEFINITIONS;DEPENDS" ${ARGN})
  set(target widgets_${name}_test)
  add_executable(${target} ${TEST_SOURCES} ${PROJECT_SOURCE_DIR}/tests/support/leak_suppressions.cpp
                 ${PROJECT_SOURCE_DIR}/tests/support/widget_test_main.cpp)
  set_target_properties(${target} PROPERTIES AUTOMOC ON)
  target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/tests)
  target_link_libraries(${target} PRIVATE velmora_warnings velmora_test_support ${TEST_LINK}
                                          GTest::gtest GTest::gmock Qt6::Widgets Qt6::Test)
  target_compile_definitions(${target} PRIVATE ${TEST_DEFINITIONS})
  if(TEST_DEPENDS)
    add_dependencies(${target} ${TEST_DEPENDS})
  endif()
  gtest_discover_tests(${target} DISCOVERY_TIMEOUT 60 PROPERTIES LABELS widgets TIMEOUT 300)
endfunction()

# velmora_add_plugin(<name> SOURCES ... [OUTPUT_FOLDER ...])
# One plug-in library <name>.so made of the given sources and the contract's own.
function(velmora_add_plugin name)
  cmake_parse_arguments(PLUGIN "" "OUTPUT_FOLDER;TARGET" "SOURCES" ${ARGN})
  if(NOT PLUGIN_TARGET)
    set(PLUGIN_TARGET plugin_${name})
  endif()
  add_library(${PLUGIN_TARGET} MODULE ${PLUGIN_SOURCES}
              ${PROJECT_SOURCE_DIR}/BaseClassFiles/plugin.cpp
              ${PROJECT_SOURCE_DIR}/BaseClassFiles/pluginobjects.cpp)
  target_include_directories(${PLUGIN_TARGET} PRIVATE ${PROJECT_SOURCE_DIR}/BaseClassFiles)
  target_link_libraries(${PLUGIN_TARGET} PRIVATE velmora_warnings)
  target_compile_options(${PLUGIN_TARGET} PRIVATE -fvisibility=hidden
                         $<$<CXX_COMPILER_ID:GNU>:-fno-gnu-unique>)
  set_target_properties(${PLUGIN_TARGET} PROPERTIES PREFIX "" OUTPUT_NAME ${name})
  if(PLUGIN_OUTPUT_FOLDER)
    set_target_properties(${PLUGIN_TARGET} PROPERTIES LIBRARY_OUTPUT_DIRECTORY ${PLUGIN_OUTPUT_FOLDER})
  endif()
endfunction()
