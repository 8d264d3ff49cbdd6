# Writes a C++ source that holds the bytes of a file: std::string_view Vantor::Embedded::NAME().
# Runs of blanks, which align columns for people, become one blank: a third less to read at every start of a process.
# A literal would be simpler, but compilers take literals of 64 KiB at most.
#
#   cmake -D INPUT=<file> -D OUTPUT=<source> -D NAME=<identifier> -P EmbedText.cmake
file(READ "${INPUT}" text)
string(REGEX REPLACE "  +" " " text "${text}")
file(WRITE "${OUTPUT}.txt" "${text}")
file(READ "${OUTPUT}.txt" bytes HEX)
string(REGEX REPLACE "(..)" "0x\\1," bytes "${bytes}")
string(REGEX REPLACE "(0x0a,)" "\\1\n" bytes "${bytes}")  # a line for a line
get_filename_component(name "${INPUT}" NAME)
file(WRITE "${OUTPUT}" "// Made from ${name}; not edited by hand.\n"
  "#include \"Core/Dictionary/EmbeddedText.h\"\n"
  "namespace Vantor::Embedded {\n"
  "namespace {\n"
  "constexpr unsigned char kBytes[] = {\n${bytes}};\n"
  "}\n"
  "std::string_view ${NAME}() { return {reinterpret_cast<const char*>(kBytes), sizeof kBytes}; }\n"
  "}\n")
