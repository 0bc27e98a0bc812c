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
endif()
if(DRAV_COVERAGE)
  target_compile_options(drav_compile INTERFACE --coverage)
  target_link_options(drav_compile INTERFACE --coverage)
endif()
