# Makes the man page MAN_PAGE of the command's reference REFERENCE with LOWDOWN.
execute_process(
  COMMAND "${LOWDOWN}" -s -tman -m title=HDIPLOT -m section=1 -m source=hdiplot "-mvolume=User commands"
          "${REFERENCE}"
  OUTPUT_VARIABLE page
  COMMAND_ERROR_IS_FATAL ANY)

# Code in bold, as man pages have it, in place of a fixed font that terminals do not know.
string(REGEX REPLACE "\\\\f(C|\\(C[BRW]|\\[C[BR]?\\])" "\\\\fB" page "${page}")
# A bare hyphen may come out as Unicode's, which neither a search nor a shell takes for that of an option.
string(REGEX REPLACE "\\\\?-" "\\\\-" page "${page}")
string(REPLACE "\n.sp \\-" "\n.sp -" page "${page}")

file(WRITE "${MAN_PAGE}" "${page}")
