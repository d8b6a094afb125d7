# velmora_add_test(<name> SOURCES ... LIBS ... [LABELS label] [OWN_MAIN] [XVFB])
# OWN_MAIN: the sources bring their own main() (GUI tests need a QApplication).
# XVFB: real windows on the xcb platform, each test on a private X server.
# One GoogleTest executable registered with CTest. Every test runs with the
# offscreen Qt platform and a private VELMORA_HOME so it never touches the
# user's data.
include(GoogleTest)
find_package(GTest REQUIRED)

function(velmora_add_test name)
  cmake_parse_arguments(T "OWN_MAIN;XVFB" "" "SOURCES;LIBS;LABELS" ${ARGN})
  # gtest_discover_tests flattens list values of PROPERTIES: a second label
  # would be read as a property name. Refuse rather than mislabel.
  list(LENGTH T_LABELS label_count)
  if(label_count GREATER 1)
    message(FATAL_ERROR "velmora_add_test(${name}): one label only, got ${T_LABELS}")
  endif()
  add_executable(${name} ${T_SOURCES})
  target_link_libraries(${name} PRIVATE ${T_LIBS} GTest::gtest GTest::gmock velmora_testsupport)
  if(NOT T_OWN_MAIN)
    target_link_libraries(${name} PRIVATE velmora_testmain)
  endif()
  set(env "QT_QPA_PLATFORM=offscreen")
  if(T_XVFB)
    set_target_properties(${name} PROPERTIES CROSSCOMPILING_EMULATOR "xvfb-run;-a;-s;-screen 0 1600x1000x24")
    set(env "QT_QPA_PLATFORM=xcb")
  endif()
  gtest_discover_tests(${name}
    DISCOVERY_TIMEOUT 60
    PROPERTIES LABELS "${T_LABELS}" ENVIRONMENT "${env}" TIMEOUT 300)
endfunction()
