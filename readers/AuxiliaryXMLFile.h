// Reader of the auxiliary XML that high-level synthesis writes beside a kernel: its arguments.
//
// The file is not parsed as XML. It is scanned line by line for two kinds of lines, known by their
// first word; words are what stands between white space:
//
//     <vd:acceleratorMap vd:functionName="scale_rows" …                the kernel's name
//     <vd:arg vd:originalName="input_r" vd:busTypeRef="acc_scalar" …   one argument
//
// A name is its word without the attribute's name and opening quote in front and without the last
// character, whatever that is: 'vd:originalName="n"/>' gives the name 'n"/'. The bus type begins
// one character behind its opening quote, while the text that it is compared with has both quotes.
// So only a doubled opening quote makes a stream argument of type "int*", and all others are "int".
// Debuggers know the types so; it stays.
//
// Port names come with "_r" where the source name is a reserved word; users get the source name
// back, see HdlReservedWords.h.
#pragma once

#include "consolidated/InputFile.h"
#include "model/Kernel.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace consolidator {

class AuxiliaryXMLFile final : public InputFile {
public:
    /// The most characters that a line may have.
    static constexpr std::size_t longestLine = 1023;

    using InputFile::InputFile;

    /// Appends one kernel, with the name of the last accelerator map line and the arguments of the
    /// argument lines, of which the first of a source name counts. Fails in silence when the file
    /// is not open, cannot be read or has a line that is too long. Throws std::out_of_range for an
    /// attribute that ends before its value.
    bool parse() override;

private:
    void scanLine(std::string_view text, Kernel& kernel);
    void scanArgument(std::string_view words, Kernel& kernel);
    void scanAcceleratorMap(std::string_view words, Kernel& kernel);
    std::string_view nameOf(std::string_view word, std::string_view attribute);
    std::string_view valueOf(std::string_view word, std::string_view attribute);

    std::uint64_t lineNumber_ = 0;
    bool hasMap_ = false; ///< An accelerator map line was there.
};

} // namespace consolidator
