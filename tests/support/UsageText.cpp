#include "tests/support/UsageText.h"

namespace consolidator::test {

std::string usageText(std::string_view programName) {
    // The longest option with its argument takes 32 columns, so every description begins at column
    // 33 and has 46 columns up to the line's end at 79. A line that is broken within a word is
    // broken behind the blank before that word, and keeps the blank.
    return "Usage: " + std::string(programName) +
           " [options] --consolidated_file filename\n"
           "\n"
           "Consolidator options:\n"
           "  -a [ --add ]                   Add information to the file as opposed to \n"
           "                                 overwriting (default)\n"
           "  -c [ --create ]                If the file exists, overwrite it\n"
           "  -u [ --dump-dwarf ] arg        Output file to dump current DWARF information \n"
           "                                 to\n"
           "  -j [ --dump-json ] arg         Output file to dump current JSON information \n"
           "                                 to\n"
           "  -d [ --DWARF ] arg             Input DWARF metadata file\n"
           "  --help                         Output this information\n"
           "  -h [ --hierarchy ] arg         Input hierarchy metadata file generated from \n"
           "                                 System Linker\n"
           "  -k [ --kernel ] arg            Input kernel.xml meta data\n"
           "  -s [ --hls ] arg               Input kernel meta data generated from HLS\n"
           "  -x [ --aux ] arg               Input *_auxiliary.xml meta data generated from\n"
           "                                 HLS\n"
           "  -l [ --ll ] arg                Input *.ll meta data generated during \n"
           "                                 bitstream generation\n"
           "  -r [ --ram ] arg               Input ram utilization report file generated \n"
           "                                 from synthesis\n"
           "  -f [ --consolidated_file ] arg Specify the consolidated file to add to or \n"
           "                                 create\n"
           "  -p [ --project ] arg           Specify the name of the project\n"
           "  -v [ --version ]               Output version information\n"
           "\n";
}

} // namespace consolidator::test
