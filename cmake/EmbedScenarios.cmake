# Writes a C++ file that maps each scenario's file name (without .json) to
# its text. Called with OUTPUT and INPUTS (files separated by "|").
string(REPLACE "|" ";" INPUTS "${INPUTS}")
set(body "")
foreach(file IN LISTS INPUTS)
  get_filename_component(name ${file} NAME_WE)
  file(READ ${file} text)
  string(APPEND body "        {\"${name}\", R\"__scenario__(${text})__scenario__\"},\n")
endforeach()
file(WRITE ${OUTPUT}.tmp
"// Generated from scenarios/*.json; do not edit.\n#include \"builtin_scenarios.h\"\n\nnamespace emulator {\nconst std::map<std::string, std::string> &builtinScenarioTexts() {\n    static const std::map<std::string, std::string> texts = {\n${body}    };\n    return texts;\n}\n} // namespace emulator\n")
file(COPY_FILE ${OUTPUT}.tmp ${OUTPUT} ONLY_IF_DIFFERENT)
