# Writes a header holding the text of INPUT as kEnglishLanguageFile.
file(READ ${INPUT} text)
file(WRITE ${OUTPUT}.tmp
"// Generated from ${INPUT}; do not edit.\n#pragma once\ninline constexpr const char *kEnglishLanguageFile = R\"__text__(${text})__text__\";\n")
file(COPY_FILE ${OUTPUT}.tmp ${OUTPUT} ONLY_IF_DIFFERENT)
