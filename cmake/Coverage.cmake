# With QUILLON_COVERAGE, programs write which lines of measured targets they executed (LLVM_PROFILE_FILE says where to).
# Tests, board and tool are not measured, so that they stay fast.

# measured_target(TARGET): the lines of TARGET are counted; what links it gets the runtime library for that.
function(measured_target target)
    if(QUILLON_COVERAGE)
        target_compile_options(${target} PRIVATE -fprofile-instr-generate -fcoverage-mapping)
        target_link_options(${target} PUBLIC -fprofile-instr-generate)
    endif()
endfunction()
