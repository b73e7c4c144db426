# The one place for compiler flags and definitions: every target of ours links mvr_flags.

set(MVR_SANITIZE "" CACHE STRING "Sanitizers to build with, as -fsanitize= takes them")

add_library(mvr_flags INTERFACE)
target_compile_features(mvr_flags INTERFACE cxx_std_20)
target_include_directories(mvr_flags INTERFACE ${CMAKE_SOURCE_DIR})
target_include_directories(mvr_flags SYSTEM INTERFACE ${Boost_INCLUDE_DIRS} ${UUID_INCLUDE})
target_compile_options(mvr_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wold-style-cast -Woverloaded-virtual -Wnon-virtual-dtor
  -Wcast-qual -Wsuggest-override
  $<$<BOOL:${MVR_WERROR}>:-Werror>)
target_compile_definitions(mvr_flags INTERFACE
  QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY QT_NO_FOREACH QT_NO_KEYWORDS
  QT_USE_QSTRINGBUILDER QT_STRICT_ITERATORS QT_DISABLE_DEPRECATED_BEFORE=0x060400
  _FILE_OFFSET_BITS=64)

if(MVR_FUZZ)
  if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    message(FATAL_ERROR "MVR_FUZZ needs clang")
  endif()
  set(MVR_SANITIZE fuzzer-no-link,address,undefined)
endif()
if(MVR_SANITIZE)
  target_compile_options(mvr_flags INTERFACE -fsanitize=${MVR_SANITIZE} -fno-sanitize-recover=all)
  target_link_options(mvr_flags INTERFACE -fsanitize=${MVR_SANITIZE})
endif()
