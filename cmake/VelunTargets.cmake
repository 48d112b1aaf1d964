# How the parts of the program are declared: one library per layer, linked only to the layers
# below it, and one executable per test.

add_library(velun_options INTERFACE)
target_include_directories(velun_options INTERFACE ${CMAKE_SOURCE_DIR}/src)
# PipeWire asks for _REENTRANT; one precompiled header needs the same definitions everywhere.
target_compile_definitions(velun_options INTERFACE QT_NO_KEYWORDS QT_NO_FOREACH _REENTRANT)
if(VELUN_DEVELOPER)
  target_compile_options(velun_options INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wno-sign-conversion -Wshadow -Werror)
endif()
if(VELUN_SANITIZE)
  # GCC takes optional values to be uninitialized in code that it has instrumented.
  target_compile_options(velun_options INTERFACE
    -fsanitize=${VELUN_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all
    -Wno-maybe-uninitialized)
  target_link_options(velun_options INTERFACE -fsanitize=${VELUN_SANITIZE})
endif()
if(VELUN_FUZZ)
  # Clang 14 cannot compile coroutines with the check of calls through function pointers.
  target_compile_options(velun_options INTERFACE -fsanitize=fuzzer-no-link,address,undefined
                                                 -fno-sanitize=function)
  target_link_options(velun_options INTERFACE -fsanitize=address,undefined)
endif()

# One precompiled header for everything: to make one takes as long as to compile several files.
if(VELUN_PCH)
  file(CONFIGURE OUTPUT precompiled.cpp CONTENT "")
  add_library(velun_precompiled OBJECT ${CMAKE_CURRENT_BINARY_DIR}/precompiled.cpp)
  target_link_libraries(velun_precompiled PRIVATE velun_options Qt6::Core)
  target_precompile_headers(velun_precompiled PRIVATE
    <QObject> <QString> <QUuid> <QHash> <QUrl> <QFile> <QTimer>
    <functional> <memory> <optional> <vector> <chrono> <variant>)
endif()
function(_velun_precompile target)
  if(VELUN_PCH)
    target_precompile_headers(${target} REUSE_FROM velun_precompiled)
  endif()
endfunction()

# velun_layer(NAME SOURCES … [COROUTINES …] LINKS …): a static library. LINKS are public, so that a
# layer sees exactly what the layers it names let it see. COROUTINES are the sources that have any:
# Clang 14 cannot compile them together with the address sanitizer, and no fuzz target needs them.
function(velun_layer name)
  cmake_parse_arguments(ARG "" "" "SOURCES;COROUTINES;LINKS" ${ARGN})
  if(NOT VELUN_FUZZ)
    list(APPEND ARG_SOURCES ${ARG_COROUTINES})
  endif()
  add_library(${name} STATIC ${ARG_SOURCES})
  target_link_libraries(${name} PUBLIC velun_options ${ARG_LINKS})
  _velun_precompile(${name})
endfunction()

# velun_wayland_protocols(TARGET DESCRIPTION.xml …): adds the code for protocols of Wayland, made from
# their descriptions. The headers are called <name of the description>-client.h.
function(velun_wayland_protocols target)
  foreach(description ${ARGN})
    cmake_path(GET description STEM name)
    set(out ${CMAKE_CURRENT_BINARY_DIR}/protocols/${name})
    add_custom_command(OUTPUT ${out}-client.h ${out}.c
      COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_CURRENT_BINARY_DIR}/protocols
      COMMAND ${WAYLAND_SCANNER} client-header ${description} ${out}-client.h
      COMMAND ${WAYLAND_SCANNER} private-code ${description} ${out}.c
      DEPENDS ${description} VERBATIM)
    target_sources(${target} PRIVATE ${out}-client.h ${out}.c)
  endforeach()
  target_include_directories(${target} SYSTEM PUBLIC ${CMAKE_CURRENT_BINARY_DIR}/protocols)
  target_link_libraries(${target} PUBLIC PkgConfig::Wayland)
endfunction()

# The tests that the thread sanitizer watches.
add_custom_target(thread_tests)

# velun_test(NAME SOURCES … LINKS … [LABELS …] [TIMEOUT seconds] [SERIAL]): one test program, run by
# ctest under NAME, alone when SERIAL. Qt's warnings fail it; it has no display unless it starts one.
function(velun_test name)
  cmake_parse_arguments(ARG "SERIAL" "TIMEOUT" "SOURCES;LINKS;LABELS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE velun_options velun_test_support Qt6::Test ${ARG_LINKS})
  _velun_precompile(${name})
  target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR}/tests)
  target_compile_definitions(${name} PRIVATE VELUN_TEST_DATA="${CMAKE_CURRENT_SOURCE_DIR}/data")
  if("thread" IN_LIST ARG_LABELS)
    add_dependencies(thread_tests ${name})
  endif()
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 120)
    if(VELUN_SANITIZE)
      set(ARG_TIMEOUT 400)
    endif()
  endif()
  add_test(NAME ${name} COMMAND ${CMAKE_SOURCE_DIR}/tests/support/run_isolated $<TARGET_FILE:${name}>)
  set_tests_properties(${name} PROPERTIES TIMEOUT ${ARG_TIMEOUT} LABELS "${ARG_LABELS}"
    ENVIRONMENT "QT_QPA_PLATFORM=offscreen;TZ=UTC;LC_ALL=C.UTF-8;OMP_NUM_THREADS=1")
  # What runs against a sound server or a window manager is a matter of tens of milliseconds.
  if(ARG_SERIAL OR "desktop" IN_LIST ARG_LABELS OR "pipewire" IN_LIST ARG_LABELS)
    set_tests_properties(${name} PROPERTIES RUN_SERIAL ON)
  endif()
endfunction()

# velun_bench(NAME SOURCES … LINKS … [FIGURES …]): one benchmark driver, run by scripts/bench.
# FIGURES are the names of the rows that it prints.
add_custom_target(benches)
file(WRITE ${CMAKE_BINARY_DIR}/benches.txt "")
function(velun_bench name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINKS;FIGURES" ${ARGN})
  add_executable(bench_${name} ${ARG_SOURCES})
  set_target_properties(bench_${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bench)
  target_link_libraries(bench_${name} PRIVATE velun_options ${ARG_LINKS})
  target_include_directories(bench_${name} PRIVATE ${CMAKE_SOURCE_DIR}/bench ${CMAKE_SOURCE_DIR}/tests)
  add_dependencies(benches bench_${name})
  list(JOIN ARG_FIGURES " " figures)
  file(APPEND ${CMAKE_BINARY_DIR}/benches.txt
    "${name} ${CMAKE_BINARY_DIR}/bench/bench_${name} ${figures}\n")
endfunction()

# What users run; the installed programs.
add_custom_target(programs)
function(velun_program name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
  target_link_libraries(${name} PRIVATE velun_options ${ARG_LINKS})
  add_dependencies(programs ${name})
endfunction()
