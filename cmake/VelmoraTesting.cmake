# velmora_add_test(<name> SOURCES ... LIBS ... [LABELS ...] [ENV ...] [OWN_MAIN])
# OWN_MAIN: the sources bring their own main() (GUI tests need a QApplication).
# One GoogleTest executable registered with CTest. Every test runs with the
# offscreen Qt platform and a private VELMORA_HOME so it never touches the
# user's data.
include(GoogleTest)
find_package(GTest REQUIRED)

function(velmora_add_test name)
  cmake_parse_arguments(T "OWN_MAIN" "" "SOURCES;LIBS;LABELS;ENV" ${ARGN})
  add_executable(${name} ${T_SOURCES})
  target_link_libraries(${name} PRIVATE ${T_LIBS} GTest::gtest GTest::gmock velmora_testsupport)
  if(NOT T_OWN_MAIN)
    target_link_libraries(${name} PRIVATE velmora_testmain)
  endif()
  set(env "QT_QPA_PLATFORM=offscreen" ${T_ENV})
  gtest_discover_tests(${name}
    DISCOVERY_TIMEOUT 60
    PROPERTIES LABELS "${T_LABELS}" ENVIRONMENT "${env}" TIMEOUT 300)
endfunction()
