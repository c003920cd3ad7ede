# Compiles the help book into the program, so that help works with no file
# installed: the source becomes one raw string literal.
# Run as: cmake -DIN=file -DOUT=file -P this.
file(READ "${IN}" text)
string(FIND "${text}" ")PICTRELHELP\"" clash)
if(NOT clash EQUAL -1)
  message(FATAL_ERROR "${IN} holds the string literal's closing delimiter")
endif()
set(out "// Generated at build time from resources/help/pictrel.help; edit that file instead.\n")
string(APPEND out "extern const char* const builtInHelpBook;\n")
string(APPEND out "const char* const builtInHelpBook = R\"PICTRELHELP(${text})PICTRELHELP\";\n")
file(WRITE "${OUT}.tmp" "${out}")
file(COPY_FILE "${OUT}.tmp" "${OUT}" ONLY_IF_DIFFERENT)
file(REMOVE "${OUT}.tmp")
