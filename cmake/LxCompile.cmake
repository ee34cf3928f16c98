# Compiler settings that every target of this project shares.

add_library(LxCompile INTERFACE)
target_compile_options(LxCompile INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align
  -Wformat=2 -Werror -fno-omit-frame-pointer)

# g++ 12 sees overlaps in std::string's own code that are not there (GCC bug 105651).
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  target_compile_options(LxCompile INTERFACE -Wno-restrict)
endif()

# otherwise symbols of templates and of the instrumentation (STB_GNU_UNIQUE) keep a library loaded for good
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND NOT LXGUI_FOR_CLANG_TIDY)
  target_compile_options(LxCompile INTERFACE -fno-gnu-unique)
endif()

if(LXGUI_SANITIZE)
  # instrumented code hides from g++ that a variable is set
  target_compile_options(LxCompile INTERFACE -fsanitize=${LXGUI_SANITIZE}
    $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
  target_link_options(LxCompile INTERFACE -fsanitize=${LXGUI_SANITIZE})
  if(LXGUI_SANITIZE MATCHES "undefined")
    target_compile_options(LxCompile INTERFACE -fno-sanitize-recover=undefined)
  endif()
endif()

# For test programs, linked behind LxCompile: what is asked of the libraries is not asked of the tests' own code, whose
# thousands of expectations would take twice as long to compile.
add_library(LxCompileTests INTERFACE)
if(LXGUI_SANITIZE MATCHES "undefined")
  target_compile_options(LxCompileTests INTERFACE -fno-sanitize=undefined)
endif()

find_program(LXGUI_CCACHE ccache)
if(LXGUI_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  # what ccache needs to look through precompiled headers
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ${LXGUI_CCACHE})
endif()

find_program(LXGUI_LLD ld.lld)
if(LXGUI_LLD)
  add_link_options(-fuse-ld=lld)
endif()

# What is linked but not used need not be loaded at every start: of Highway the headers are enough.
add_link_options(LINKER:--as-needed)

# Precompiled headers: what most files include and what costs them most of their time. Every file still includes what it
# uses. clang-tidy cannot read those of gcc.
if(LXGUI_FOR_CLANG_TIDY)
  set(CMAKE_DISABLE_PRECOMPILE_HEADERS ON)
elseif(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  add_compile_options($<$<COMPILE_LANGUAGE:CXX>:-fpch-preprocess>)
endif()
set(LXGUI_STD_HEADERS
  <algorithm> <array> <atomic> <chrono> <condition_variable> <cstdint> <cstdio> <cstdlib> <cstring> <functional> <map>
  <memory> <mutex> <optional> <string> <string_view> <thread> <utility> <vector>)
set(LXGUI_QT_HEADERS
  <QtCore/QCoreApplication> <QtCore/QElapsedTimer> <QtCore/QEvent> <QtCore/QList> <QtCore/QLocale>
  <QtCore/QMutexLocker> <QtCore/QPointer> <QtCore/QString> <QtCore/QStringList> <QtCore/QThread> <QtCore/QTimer>
  <QtGui/QImage> <QtGui/QPainter>
  <QtWidgets/QApplication> <QtWidgets/QComboBox> <QtWidgets/QDialog> <QtWidgets/QHBoxLayout> <QtWidgets/QLabel>
  <QtWidgets/QLineEdit> <QtWidgets/QMessageBox> <QtWidgets/QPushButton> <QtWidgets/QTableWidget>
  <QtWidgets/QTreeWidget> <QtWidgets/QVBoxLayout>)

# With a sanitizer, a target's compilation takes longer than all that tests do with it: the files of a folder are compiled
# together. Nobody works in such a build, where a changed file would wait for its folder. What the address sanitizer adds
# is not optimised, which would double the time. Call it once the target has all its sources.
function(lx_compile_cheaply target)
  if(NOT LXGUI_SANITIZE OR LXGUI_FOR_CLANG_TIDY)
    return()
  endif()
  get_target_property(sources ${target} SOURCES)
  foreach(source ${sources})
    get_filename_component(folder ${source} DIRECTORY)
    string(REPLACE ${CMAKE_SOURCE_DIR}/ "" folder "${folder}")
    string(MAKE_C_IDENTIFIER "of_${folder}" group)
    set_property(SOURCE ${source} TARGET_DIRECTORY ${target} PROPERTY UNITY_GROUP ${group})
  endforeach()
  set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE GROUP)
  # what is in a file's anonymous namespace is in no other file, also where g++ compiles files together
  target_compile_options(${target} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-Wno-subobject-linkage>)
  if(LXGUI_SANITIZE MATCHES "address")
    target_compile_options(${target} PRIVATE -O0)
  endif()
endfunction()

# Shows of a library only what is public.
function(lx_limit_exports library)
  string(TOUPPER ${library}_${LXGUI_SOVERSION} LXGUI_EXPORTS_VERSION)
  set(map ${CMAKE_CURRENT_BINARY_DIR}/${library}.map)
  configure_file(${CMAKE_SOURCE_DIR}/cmake/Exports.map.in ${map} @ONLY)
  target_link_options(${library} PRIVATE LINKER:--version-script=${map})
  set_property(TARGET ${library} APPEND PROPERTY LINK_DEPENDS ${map})
endfunction()

# Describes in the debug information of the development build what the public headers say, for script/abi: the types that
# each of the files defines which have a header of their name, and those alone. Everything else stays as short as it is.
set(LXGUI_ABI_FLAGS -g2 -femit-struct-debug-baseonly -fno-var-tracking)
function(lx_describe_abi objects)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_BUILD_TYPE STREQUAL "Debug" AND NOT LXGUI_SANITIZE
      AND NOT LXGUI_FOR_CLANG_TIDY)
    set_property(SOURCE ${ARGN} TARGET_DIRECTORY ${objects} APPEND PROPERTY
      # libabigail sorts by the place of compilation, which a compiler cache may bring from elsewhere
      COMPILE_OPTIONS ${LXGUI_ABI_FLAGS} -fdebug-prefix-map=${CMAKE_SOURCE_DIR}=.)
  endif()
endfunction()
