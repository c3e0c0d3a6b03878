# Flags that every target of the project is built with: keld2_options.

add_library(keld2_options INTERFACE)
target_compile_options(keld2_options INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion
  # products and sums are rounded one by one, on every machine alike
  -ffp-contract=off)

if(KELD2_SANITIZE)
  target_compile_options(keld2_options INTERFACE
    -fsanitize=${KELD2_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  target_link_options(keld2_options INTERFACE -fsanitize=${KELD2_SANITIZE})
endif()

find_program(KELD2_CCACHE ccache)
if(KELD2_CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${KELD2_CCACHE})
endif()
