# Flags that every target of the project is built with: keld2_options.

add_library(keld2_options INTERFACE)
target_compile_options(keld2_options INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion
  # products and sums are rounded one by one, on every machine alike
  -ffp-contract=off)

# g++ 12 warns of overlapping copies inside its own std::string when it optimises.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  target_compile_options(keld2_options INTERFACE -Wno-restrict)
endif()

if(KELD2_SANITIZE)
  target_compile_options(keld2_options INTERFACE
    -fsanitize=${KELD2_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  target_link_options(keld2_options INTERFACE -fsanitize=${KELD2_SANITIZE})
endif()

find_program(KELD2_CCACHE ccache)
if(KELD2_CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${KELD2_CCACHE})
endif()
