# Generates the man page MAN_PAGE from the reference REFERENCE, with the program LOWDOWN.
execute_process(
  COMMAND "${LOWDOWN}" -s -tman -m title=HDIPLOT -m section=1 -m source=hdiplot "-mvolume=User commands"
          "${REFERENCE}"
  OUTPUT_VARIABLE page
  COMMAND_ERROR_IS_FATAL ANY)

# Code in bold, as usual in man pages, as terminals have no second fixed-width font.
string(REGEX REPLACE "\\\\f(C|\\(C[BRW]|\\[C[BR]?\\])" "\\\\fB" page "${page}")
# A bare hyphen may be typeset as U+2010, which breaks searching and pasting options.
string(REGEX REPLACE "\\\\?-" "\\\\-" page "${page}")
string(REPLACE "\n.sp \\-" "\n.sp -" page "${page}")

file(WRITE "${MAN_PAGE}" "${page}")
