# What every target of this project has in common. Headers are included by their path from the
# top of the tree ("Wendril/frame.hpp"), in the tree as after installation.
function(corvane_target name)
    target_compile_features(${name} PUBLIC cxx_std_20)
    set_target_properties(${name} PROPERTIES CXX_EXTENSIONS OFF)
    target_compile_options(${name} PRIVATE -Wall -Wextra -Wpedantic)
    # g++ 12 sees overlapping copies in plain string concatenation (its bug 105651).
    target_compile_options(${name} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
    # As Debian hardens its own programs; its compilers make them position independent by default.
    # Fortified functions need optimisation, and the sanitizers of other configurations check more.
    target_compile_options(${name} PRIVATE -fstack-protector-strong
        $<$<CONFIG:Release>:-U_FORTIFY_SOURCE> $<$<CONFIG:Release>:-D_FORTIFY_SOURCE=3>)
    target_link_options(${name} PRIVATE LINKER:-z,relro,-z,now)
    if(CORVANE_PRECOMPILE)
        target_precompile_headers(${name} PRIVATE "${PROJECT_SOURCE_DIR}/cmake/platform.hpp")
    endif()
endfunction()
