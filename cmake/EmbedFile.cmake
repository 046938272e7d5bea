# Writes the C++ source OUTPUT with the bytes of the file INPUT as tools::NAME, and their number as
# tools::NAME_SIZE (tools/images/embedded.h). Run with cmake -P.
file(READ "${INPUT}" hex HEX)
string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${hex}")
file(WRITE "${OUTPUT}"
  "#include \"tools/images/embedded.h\"\n"
  "namespace tools {\n"
  "const unsigned char ${NAME}[] = {${bytes}};\n"
  "const size_t ${NAME}_SIZE = sizeof ${NAME};\n"
  "}\n")
