# Finds every library that the program uses.

find_package(Qt6 6.4 REQUIRED COMPONENTS Core Gui Widgets DBus Network Svg)
find_package(QCoro6 REQUIRED COMPONENTS Core)
find_package(ICU REQUIRED COMPONENTS uc i18n data)
find_package(simdjson REQUIRED)
find_package(PkgConfig REQUIRED)
pkg_check_modules(PipeWire REQUIRED IMPORTED_TARGET libpipewire-0.3)
pkg_check_modules(Fftw REQUIRED IMPORTED_TARGET fftw3f)
pkg_check_modules(SentencePiece REQUIRED IMPORTED_TARGET sentencepiece)
pkg_check_modules(Xcb REQUIRED IMPORTED_TARGET xcb xcb-ewmh xcb-xfixes)
pkg_check_modules(Archive REQUIRED IMPORTED_TARGET libarchive)
if(VELUN_DEVELOPER)
  find_package(Qt6 6.4 REQUIRED COMPONENTS Test)
endif()

# The pkg-config file of PocketSphinx names an include folder that Debian does not ship, so the
# headers and libraries are looked up one by one.
find_path(PocketSphinx_INCLUDE_DIR pocketsphinx.h PATH_SUFFIXES pocketsphinx REQUIRED)
find_path(SphinxBase_INCLUDE_DIR sphinxbase/err.h REQUIRED)
find_library(PocketSphinx_LIBRARY pocketsphinx REQUIRED)
find_library(SphinxBase_LIBRARY sphinxbase REQUIRED)
add_library(PocketSphinx::PocketSphinx INTERFACE IMPORTED)
target_include_directories(PocketSphinx::PocketSphinx SYSTEM
  INTERFACE ${PocketSphinx_INCLUDE_DIR} ${SphinxBase_INCLUDE_DIR})
target_link_libraries(PocketSphinx::PocketSphinx
  INTERFACE ${PocketSphinx_LIBRARY} ${SphinxBase_LIBRARY})

# oneDNN's own CMake package demands OpenCL headers, which the CPU library does not need.
find_path(DNNL_INCLUDE_DIR dnnl.hpp REQUIRED)
find_library(DNNL_LIBRARY dnnl REQUIRED)
add_library(DNNL::DNNL INTERFACE IMPORTED)
target_include_directories(DNNL::DNNL SYSTEM INTERFACE ${DNNL_INCLUDE_DIR})
target_link_libraries(DNNL::DNNL INTERFACE ${DNNL_LIBRARY})

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE_PROGRAM})
endif()
find_program(LLD_PROGRAM NAMES ld.lld)
if(LLD_PROGRAM)
  add_link_options(-fuse-ld=lld)
endif()
