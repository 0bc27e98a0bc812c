# What every target of this project is compiled with.
add_library(drav_compile INTERFACE)

# A fused multiply-add rounds once where the pixel formulas round twice.
target_compile_options(drav_compile INTERFACE -ffp-contract=off)
target_compile_options(drav_compile INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion
  -Wno-sign-conversion $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor -Wold-style-cast>)
if(DRAV_WERROR)
  target_compile_options(drav_compile INTERFACE -Werror)
endif()
if(DRAV_SANITIZE)
  target_compile_options(drav_compile INTERFACE -fsanitize=${DRAV_SANITIZE}
    -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(drav_compile INTERFACE -fsanitize=${DRAV_SANITIZE})
  if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
    # These look for overruns after instrumentation, and find them where there are none; the sanitizers
    # themselves find the real ones.
    target_compile_options(drav_compile INTERFACE -Wno-stringop-overflow -Wno-stringop-overread
      -Wno-array-bounds -Wno-restrict)
  endif()
endif()
if(DRAV_COVERAGE)
  target_compile_options(drav_compile INTERFACE --coverage)
  target_link_options(drav_compile INTERFACE --coverage)
endif()
