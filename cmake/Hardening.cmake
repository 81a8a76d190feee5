# SPDX-FileCopyrightText: 2026 the Tidewick authors
# SPDX-License-Identifier: MIT

# Options that make a mistake in a program harder to exploit. They are set for the whole directory, so
# that they also reach the objects that Qt's own functions add. tests/security/tst_hardening.cpp reads
# the result.

include(CheckCXXCompilerFlag)
include(CheckCXXSourceCompiles)
include(CheckLinkerFlag)
include(CheckPIESupported)

check_pie_supported(LANGUAGES CXX)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

set(compile_flags -fstack-protector-strong)
if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64)$")
    list(APPEND compile_flags -fcf-protection=full)
elseif(CMAKE_SYSTEM_PROCESSOR MATCHES "^(aarch64|arm64)$")
    list(APPEND compile_flags -mbranch-protection=standard)
endif()
foreach(flag IN LISTS compile_flags)
    string(MAKE_C_IDENTIFIER "TIDEWICK_HAS${flag}" known)
    check_cxx_compiler_flag(${flag} ${known})
    if(${known})
        add_compile_options(${flag})
    endif()
endforeach()

foreach(flag relro now noexecstack separate-code)
    string(MAKE_C_IDENTIFIER "TIDEWICK_HAS_z_${flag}" known)
    check_linker_flag(CXX "LINKER:-z,${flag}" ${known})
    if(${known})
        add_link_options("LINKER:-z,${flag}")
    endif()
endforeach()

# Checked calls of the C library. They need optimisation, and they interfere with sanitizers, which check
# the calls themselves. A compiler may predefine a level of its own, which is undefined first.
if(NOT TIDEWICK_SANITIZE AND NOT TIDEWICK_COVERAGE)
    block()
        set(CMAKE_REQUIRED_FLAGS "-O2 -Werror -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3")
        check_cxx_source_compiles("
            #include <cstdlib>
            #if __USE_FORTIFY_LEVEL < 3
            #error no such level
            #endif
            int main() {}" TIDEWICK_HAS_FORTIFY_3)
        set(level $<IF:$<BOOL:${TIDEWICK_HAS_FORTIFY_3}>,3,2>)
        add_compile_options("$<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=${level}>")
    endblock()
endif()

# Marks an executable as supporting branch tracking. All its own objects support that by now, so the
# linker would set the mark by itself, were it not for start files of the C library that do not.
function(tidewick_track_branches target)
    check_linker_flag(CXX "LINKER:-z,ibt,-z,shstk" TIDEWICK_HAS_z_ibt_shstk)
    if(TIDEWICK_HAS_fcf_protection_full AND TIDEWICK_HAS_z_ibt_shstk)
        target_sources(${target} PRIVATE ${PROJECT_SOURCE_DIR}/Quaymere/platform/linux/LandingPads.cpp)
        target_link_options(${target} PRIVATE
            LINKER:-z,ibt,-z,shstk
            LINKER:-e,tidewick_start,-init,tidewick_init,-fini,tidewick_fini)
    endif()
endfunction()
