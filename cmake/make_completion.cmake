# Writes the completion of hdiplot for bash, from the options that its help lists.
#
#   cmake -DHDIPLOT=PROGRAM -DCOMPLETION=FILE -P make_completion.cmake
execute_process(COMMAND "${HDIPLOT}" --help OUTPUT_VARIABLE help COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "\n  (-[a-z],)?--?[a-z-]+[^\n ]*" lines "${help}")
set(options)
foreach(line IN LISTS lines)
  string(REGEX MATCHALL "--?[a-z-]+" names "${line}")
  list(APPEND options ${names})
endforeach()
list(JOIN options " " options)
file(WRITE "${COMPLETION}" "# Completion of hdiplot for bash.
_hdiplot() {
  [[ $2 == -* ]] || return 0
  mapfile -t COMPREPLY < <(compgen -W \"${options}\" -- \"$2\")
}
complete -o default -F _hdiplot hdiplot
")
