# Compiler and linker options that make memory errors harder to exploit, for every optimised build.
# An option that the compiler, its flags or the environment already set keeps its value.

include(CheckCXXCompilerFlag)
include(CheckCXXSourceCompiles)
include(CheckLinkerFlag)
include(CheckPIESupported)

check_pie_supported(LANGUAGES CXX)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

# Sets the variable to whether the preprocessor condition is true in this build.
function(kavelo_check variable condition)
  set(CMAKE_TRY_COMPILE_CONFIGURATION ${CMAKE_BUILD_TYPE})
  unset(${variable} CACHE) # the build type may have changed
  check_cxx_source_compiles("
    #if !(${condition})
    #error
    #endif
    int main() {}" ${variable})
endfunction()

kavelo_check(KAVELO_IS_OPTIMISED "defined __OPTIMIZE__")
if(NOT KAVELO_IS_OPTIMISED OR KAVELO_SANITIZE)
  return()
endif()

kavelo_check(KAVELO_IS_FORTIFIED "defined _FORTIFY_SOURCE")
if(NOT KAVELO_IS_FORTIFIED)
  target_compile_definitions(kavelo_options INTERFACE _FORTIFY_SOURCE=2)
endif()
# -fcf-protection exists for x86 only, -mbranch-protection for Arm only.
foreach(flag IN ITEMS
    -fstack-protector-strong -fstack-clash-protection -fcf-protection -mbranch-protection=standard)
  string(REGEX REPLACE "^-[fm]|-strong$|=.*$" "" name ${flag})
  string(MAKE_C_IDENTIFIER KAVELO_HAS_${name} has)
  check_cxx_compiler_flag(${flag} ${has})
  if(${has} AND NOT CMAKE_CXX_FLAGS MATCHES ${name})
    target_compile_options(kavelo_options INTERFACE ${flag})
  endif()
endforeach()
# Only linkers of ELF files know these.
check_linker_flag(CXX LINKER:-z,relro,-z,now KAVELO_HAS_relro)
if(KAVELO_HAS_relro)
  target_link_options(kavelo_options INTERFACE LINKER:-z,relro,-z,now)
endif()
