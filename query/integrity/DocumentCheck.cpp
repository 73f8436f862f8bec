#include "query/integrity/DocumentCheck.h"

#include "consolidated/FileHandle.h"
#include "model/BinaryForm.h"
#include "model/Kernel.h"

#include <algorithm>
#include <cstdio>
#include <locale>
#include <ostream>
#include <streambuf>
#include <string_view>

namespace consolidator {

namespace {

/// How many bytes are the same from the front; both texts have the same length.
std::size_t sameBytes(std::string_view left, std::string_view right) {
    if (left == right) {
        return left.size(); // nearly always, and found more quickly
    }
    return static_cast<std::size_t>(std::ranges::mismatch(left, right).in1 - left.begin());
}

/// Compares what is written to it with a range of bytes. It fails at the first difference, where
/// the range then stands.
class ComparingBuffer final : public std::streambuf {
public:
    explicit ComparingBuffer(ByteRange& expected) : expected_(&expected) {}

protected:
    int_type overflow(int_type character) override {
        const char byte = traits_type::to_char_type(character);
        return isNext({&byte, 1}) ? character : traits_type::eof();
    }

    std::streamsize xsputn(const char* text, std::streamsize length) override {
        return isNext({text, static_cast<std::size_t>(length)}) ? length : 0;
    }

private:
    bool isNext(std::string_view text) {
        while (!text.empty()) {
            const std::string_view next = expected_->peek().substr(0, text.size());
            const std::size_t same = sameBytes(next, text.substr(0, next.size()));
            expected_->skip(same);
            text.remove_prefix(same);
            if (same < next.size() || next.empty()) {
                return text.empty();
            }
        }
        return true;
    }

    ByteRange* expected_;
};

} // namespace

std::optional<DocumentCheck::Difference> DocumentCheck::compare() {
    return compareWith([](std::ostream&) {});
}

std::optional<DocumentCheck::Difference> DocumentCheck::compare(std::uint64_t offset,
                                                                bool isTranslated) {
    const FileHandle kernels = openFile(path_, "r");
    std::uint32_t count = 0;
    if (!kernels || std::fseek(kernels.get(), static_cast<long>(offset), SEEK_SET) != 0 ||
        !readNumber(kernels.get(), count)) {
        return Difference{offset, 0}; // the file has changed meanwhile
    }
    return compareWith([&](std::ostream& json) {
        Kernel kernel;
        for (kernel_ = 1; kernel_ <= count && kernel.read(kernels.get()); ++kernel_) {
            if (!isTranslated) {
                kernel.translateConditions();
            }
            json << (kernel_ > 1 ? ", " : "");
            kernel.writeJson(json);
            if (!json) {
                return;
            }
        }
        kernel_ = 0;
    });
}

/// Compares with the document of what writeKernels(json) writes between its brackets.
template <typename WriteKernels>
std::optional<DocumentCheck::Difference> DocumentCheck::compareWith(WriteKernels writeKernels) {
    ComparingBuffer buffer(document_);
    std::ostream json(&buffer);
    json.imbue(std::locale::classic());
    json << "{  \"Kernels\" : [ ";
    if (json) {
        writeKernels(json);
    }
    if (json) {
        json << " ] }";
    }
    if (json && document_.left() == 0) {
        return std::nullopt;
    }
    return Difference{document_.position(), kernel_};
}

} // namespace consolidator
