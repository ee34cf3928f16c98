# lx_add_test(NAME <name> LABELS <label>... SOURCES <file>...
#             [PLATFORM none|offscreen|xcb|wayland] [NETNS] [SDK_ONLY] [LIBS <target>...]
#             [TIMEOUT <seconds>] [COST <seconds>] [BUSY] [MAIN <file>] [RESOURCE_LOCK <name>])
#
# Makes one test program from GoogleTest cases and registers it with ctest. The program is linked with the objects of
# the libraries, so that internal classes can be tested. PLATFORM says which Qt platform it runs on: "offscreen" (the
# default for a test of windows), "xcb" and "wayland" (a private Xvfb or weston is started for it), or "none" (no Qt).
# NETNS runs it in a network namespace of its own. Tests that use threads carry the label "concurrency" too and also run under the thread
# sanitizer. Most tests spend their time waiting, so more of them run at once than there are cores; a BUSY one counts
# twice. COST says that it takes long and starts early.
set(LXGUI_TEST_SUPPORT ${CMAKE_SOURCE_DIR}/tests/support)
# All programs that the tests labelled "concurrency" run: what is built for the thread sanitizer.
add_custom_target(concurrency_tests)

# The precompiled headers of all tests, and their optimisation: most of a test's time is its compilation.
set(LXGUI_TEST_OPTIONS -O0)
# Files of a test that are compiled together, which shares the templates that they instantiate: few where people work.
set(LXGUI_TEST_BATCH 4)
if(LXGUI_SANITIZE)
  set(LXGUI_TEST_BATCH 16)
endif()
function(lx_add_test_headers name)
  add_library(${name} STATIC ${LXGUI_TEST_SUPPORT}/PrecompiledHeaders.cpp)
  # as programs are compiled
  set_target_properties(${name} PROPERTIES POSITION_INDEPENDENT_CODE OFF)
  target_compile_options(${name} PRIVATE ${LXGUI_TEST_OPTIONS} -fPIE -pthread)
  target_link_libraries(${name} PRIVATE LxCompile LxCompileTests GTest::gmock GTest::gtest)
endfunction()

function(lx_add_test)
  cmake_parse_arguments(T "NETNS;SDK_ONLY;BUSY" "NAME;PLATFORM;TIMEOUT;COST;MAIN;RESOURCE_LOCK" "LABELS;SOURCES;LIBS;ARGS" ${ARGN})
  if(NOT T_TIMEOUT)
    set(T_TIMEOUT 120)
  endif()
  if(NOT T_PLATFORM)
    set(T_PLATFORM offscreen)
  endif()
  if(T_SDK_ONLY)
    set(T_PLATFORM none)
  endif()
  add_executable(${T_NAME} ${T_SOURCES})
  target_link_libraries(${T_NAME} PRIVATE LxCompile LxCompileTests TestSupport ${T_LIBS} GTest::gmock GTest::gtest)
  if(NOT LXGUI_FOR_CLANG_TIDY)
    set_target_properties(${T_NAME} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE ${LXGUI_TEST_BATCH})
  endif()
  # what is in a file's anonymous namespace is in no other file, also where files are compiled together
  target_compile_options(${T_NAME} PRIVATE ${LXGUI_TEST_OPTIONS} -Wno-subobject-linkage)
  if(T_SDK_ONLY)
    target_link_libraries(${T_NAME} PRIVATE LxSDKInternal)
    target_precompile_headers(${T_NAME} REUSE_FROM TestHeaders)
    if(NOT T_MAIN)
      target_link_libraries(${T_NAME} PRIVATE GTest::gtest_main)
    endif()
  else()
    set_target_properties(${T_NAME} PROPERTIES AUTOMOC ON)
    target_precompile_headers(${T_NAME} REUSE_FROM GuiTestHeaders)
    target_link_libraries(${T_NAME} PRIVATE LxGUIInternal GuiTestSupport Qt6::Test)
    if(NOT T_MAIN)
      target_sources(${T_NAME} PRIVATE ${LXGUI_TEST_SUPPORT}/GuiTestMain.cpp)
    endif()
  endif()
  if(T_MAIN)
    target_sources(${T_NAME} PRIVATE ${T_MAIN})
  endif()
  if(T_PLATFORM MATCHES "xcb|wayland")
    # No threads: those that draw use the fence of a frame for a moment longer than the thread that waits for it and
    # frees it.
    set(driver_environment "LP_NUM_THREADS=0")
  endif()
  if(T_PLATFORM MATCHES "xcb|wayland" AND LXGUI_SANITIZE MATCHES "address")
    list(APPEND driver_environment "MESA_SHADER_CACHE_DISABLE=true")  # its thread ends meanwhile
    target_sources(${T_NAME} PRIVATE ${LXGUI_TEST_SUPPORT}/KeepOpenGLDriver.cpp)
    target_link_libraries(${T_NAME} PRIVATE ${CMAKE_DL_LIBS})
  endif()

  set(prefix)
  if(T_NETNS)
    list(APPEND prefix ${LXGUI_TEST_SUPPORT}/in-netns)
  endif()
  if(T_PLATFORM STREQUAL "xcb")
    list(APPEND prefix ${LXGUI_TEST_SUPPORT}/with-xvfb)
  elseif(T_PLATFORM STREQUAL "wayland")
    list(APPEND prefix ${LXGUI_TEST_SUPPORT}/with-weston)
  endif()
  add_test(NAME ${T_NAME} COMMAND ${prefix} $<TARGET_FILE:${T_NAME}> ${T_ARGS})
  set(environment
    "LXGUI_BIN=${CMAKE_BINARY_DIR}/bin"
    # the search for leaks may stumble over what a thread that is ending has in its dynamic storage
    "ASAN_OPTIONS=detect_leaks=1:abort_on_error=0:intercept_tls_get_addr=0"
    "LSAN_OPTIONS=suppressions=${LXGUI_TEST_SUPPORT}/lsan.supp:print_suppressions=0"
    "UBSAN_OPTIONS=print_stacktrace=1"
    "TSAN_OPTIONS=suppressions=${LXGUI_TEST_SUPPORT}/tsan.supp:second_deadlock_stack=1"
    ${driver_environment})
  if(NOT T_PLATFORM STREQUAL "none")
    list(APPEND environment "QT_QPA_PLATFORM=${T_PLATFORM}" "QT_LOGGING_RULES=qt.qpa.*=false")
    if(T_PLATFORM STREQUAL "offscreen")
      list(APPEND environment "DISPLAY=")  # else it may use the OpenGL of a display that is there by chance
    endif()
  endif()
  set_tests_properties(${T_NAME} PROPERTIES
    LABELS "${T_LABELS}" TIMEOUT ${T_TIMEOUT} SKIP_RETURN_CODE 77 ENVIRONMENT "${environment}")
  if("concurrency" IN_LIST T_LABELS)
    add_dependencies(concurrency_tests ${T_NAME})
  endif()
  if(T_BUSY)
    set_tests_properties(${T_NAME} PROPERTIES PROCESSORS 2)
  endif()
  if(T_COST)
    set_tests_properties(${T_NAME} PROPERTIES COST ${T_COST})
  endif()
  if(T_RESOURCE_LOCK)
    set_tests_properties(${T_NAME} PROPERTIES RESOURCE_LOCK ${T_RESOURCE_LOCK})
  endif()
endfunction()
