// Reads an XML document with nothing but Expat, whose events go to handlers that do nothing: what
// reading XML costs at least.
//
//     bench_bare_expat FILE

#include "consolidated/FileHandle.h"

#include <expat.h>

#include <cstdlib>
#include <iostream>
#include <memory>
#include <type_traits>

namespace {

constexpr int blockSize = 256 * 1024;

struct ParserFree {
    void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
};

void onStart(void* /*self*/, const char* /*name*/, const char** /*attributes*/) {}
void onEnd(void* /*self*/, const char* /*name*/) {}

bool read(std::FILE* file) {
    const std::unique_ptr<std::remove_pointer_t<XML_Parser>, ParserFree> parser(
        XML_ParserCreate(nullptr));
    XML_SetElementHandler(parser.get(), onStart, onEnd);
    bool more = true;
    while (more) {
        void* const block = XML_GetBuffer(parser.get(), blockSize);
        if (block == nullptr) {
            return false;
        }
        const std::size_t came = std::fread(block, 1, blockSize, file);
        more = came > 0;
        if (XML_ParseBuffer(parser.get(), static_cast<int>(came), more ? 0 : 1) != XML_STATUS_OK) {
            return false;
        }
    }
    return true;
}

} // namespace

int main(int argc, char** argv) {
    const consolidator::FileHandle file =
        argc == 2 ? consolidator::openFile(argv[1], "r") : consolidator::FileHandle();
    if (!file || !read(file.get())) {
        std::cerr << "bench_bare_expat: no XML document\n";
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
