# What every target of the project is compiled with: link it PRIVATE.

add_library(orvex_build INTERFACE)
target_compile_options(orvex_build INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion
  $<$<BOOL:${ORVEX_WERROR}>:-Werror>
  # Inline and template statics marked unique would keep a module from ever unloading.
  $<$<CXX_COMPILER_ID:GNU>:-fno-gnu-unique>)

if(ORVEX_SANITIZE)
  target_compile_options(orvex_build INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
  target_link_options(orvex_build INTERFACE -fsanitize=address,undefined)
endif()

if(ORVEX_FUZZ)
  target_compile_options(orvex_build INTERFACE -fsanitize=fuzzer-no-link)
endif()

if(ORVEX_TIDY)
  find_program(CLANG_TIDY_PROGRAM clang-tidy REQUIRED)
  set(CMAKE_CXX_CLANG_TIDY ${CLANG_TIDY_PROGRAM})
endif()

# A module of the host: its own file name extension, nothing visible but its exports.
function(orvex_module target extension)
  set_target_properties(${target} PROPERTIES
    PREFIX "" SUFFIX ".${extension}"
    CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
  if(extension STREQUAL "krx")
    target_link_libraries(${target} PRIVATE orvex_module_life)
  endif()
endfunction()
