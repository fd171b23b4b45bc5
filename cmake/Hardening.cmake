# A program that reads whatever the network brings is built hardened; what a user's own flags or compiler set already
# is left to them. The sanitizers' builds are of the kind Debug, and bring checks of their own.

include(CheckCXXCompilerFlag)
include(CheckCXXSourceCompiles)
include(CheckPIESupported)
check_pie_supported()
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

set(optimised $<CONFIG:Release,RelWithDebInfo,MinSizeRel>)
add_compile_options(-fstack-protector-strong -fstack-clash-protection)
add_compile_definitions($<${optimised}:_GLIBCXX_ASSERTIONS>)
# Only what is packed: valgrind is to see what a development build reads before it is written.
check_cxx_compiler_flag(-ftrivial-auto-var-init=zero takes_auto_var_init)
if(takes_auto_var_init)
    add_compile_options($<$<CONFIG:Release>:-ftrivial-auto-var-init=zero>)
endif()

# The compiler may set it itself, but only where it optimises; the C library says how far the two of them reach.
set(CMAKE_REQUIRED_FLAGS -O2)
check_cxx_source_compiles("
#ifdef _FORTIFY_SOURCE
#error
#endif
int main() {}" fortify_is_free)
if(fortify_is_free)
    set(CMAKE_REQUIRED_DEFINITIONS -D_FORTIFY_SOURCE=3)
    check_cxx_source_compiles("
#include <cstdlib>
#if __USE_FORTIFY_LEVEL < 3
#error
#endif
int main() {}" fortify_reaches_3)
    unset(CMAKE_REQUIRED_DEFINITIONS)
    add_compile_definitions($<${optimised}:_FORTIFY_SOURCE=$<IF:$<BOOL:${fortify_reaches_3}>,3,2>>)
endif()
unset(CMAKE_REQUIRED_FLAGS)

add_link_options(LINKER:-z,relro,-z,now)
