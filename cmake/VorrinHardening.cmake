# What makes it hard to turn a mistake with memory into somebody else's program, as Debian builds its
# own packages; scripts/check-hardening reads it off the finished programs. Position-independent code is
# chosen for every build.

set(vorrin_optimised $<CONFIG:Release,RelWithDebInfo,MinSizeRel>)
target_compile_options(vorrin_options INTERFACE
  -fstack-protector-strong -fstack-clash-protection
  # The checked functions of the C library need the optimiser. Some compilers choose a level themselves.
  $<${vorrin_optimised}:-U_FORTIFY_SOURCE> $<${vorrin_optimised}:-D_FORTIFY_SOURCE=2>)
# The tables of functions are filled in at the start and never written again.
target_link_options(vorrin_options INTERFACE -Wl,-z,relro -Wl,-z,now)
