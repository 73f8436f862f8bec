#include "bench/LargeProject.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>

namespace consolidator::bench {

namespace {

/// Numbers that look random and are the same everywhere: the generator of Lehmer with the modulus
/// 2^31 - 1 and the factor 48271.
class Numbers {
public:
    std::uint32_t below(std::uint32_t limit) {
        state_ = state_ * 48271 % 2147483647;
        return static_cast<std::uint32_t>(state_ % limit);
    }

private:
    std::uint64_t state_ = 20261121;
};

/// Text that is built piece by piece.
class Text {
public:
    Text& operator<<(std::string_view text) {
        text_ += text;
        return *this;
    }

    Text& operator<<(std::uint32_t number) {
        std::array<char, 10> digits{};
        const char* const end = std::to_chars(digits.begin(), digits.end(), number).ptr;
        return *this << std::string_view(digits.begin(), end);
    }

    /// Eight digits.
    Text& hexadecimal(std::uint32_t number) {
        constexpr std::string_view digits = "0123456789abcdef";
        for (int shift = 28; shift >= 0; shift -= 4) {
            text_ += digits[number >> shift & 15];
        }
        return *this;
    }

    std::string take() { return std::exchange(text_, {}); }

protected:
    std::string text_;
};

/// Text that goes out to a stream in large blocks.
class Output : public Text {
public:
    explicit Output(std::ostream& out) : out_(out) {}
    ~Output() { flush(); }
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    /// To be called between lines. Tells whether fewer than `bytes` have been written.
    bool isBelow(std::uint64_t bytes) {
        if (text_.size() > blockSize) {
            flush();
        }
        return flushed_ + text_.size() < bytes;
    }

private:
    static constexpr std::size_t blockSize = std::size_t{256} * 1024;

    void flush() {
        out_.write(text_.data(), static_cast<std::streamsize>(text_.size()));
        flushed_ += text_.size();
        text_.clear();
    }

    std::ostream& out_;
    std::uint64_t flushed_ = 0;
};

/// A register by the order in which kernels, instances and variables come.
struct Register {
    std::uint32_t kernel;
    std::uint32_t instance;
    std::uint32_t variable;
};

std::uint64_t registerCount(const Shape& shape) {
    return std::uint64_t{shape.kernels} * shape.instances * shape.variables;
}

Register registerAt(const Shape& shape, std::uint64_t position) {
    const std::uint64_t instance = position / shape.variables;
    return {.kernel = static_cast<std::uint32_t>(instance / shape.instances),
            .instance = static_cast<std::uint32_t>(instance % shape.instances),
            .variable = static_cast<std::uint32_t>(position % shape.variables)};
}

/// Bits of the registers that the file names, which lie evenly among all.
class BitsToName {
public:
    BitsToName(const Shape& shape, const Lines& lines)
        : shape_(shape),
          all_(registerCount(shape)),
          named_(std::min<std::uint64_t>(all_, lines.registers)),
          isOnce_(lines.once != 0) {}

    /// Whether there is one that may be named.
    bool any() const { return !isOnce_ || drawn_ < named_ * shape_.bits; }

    Register drawRegister(Numbers& numbers) {
        constexpr std::uint64_t prime = 2654435761; // so that each one comes, all over the file
        last_ = drawn_++ * prime % (named_ * shape_.bits);
        const std::uint64_t number =
            isOnce_ ? last_ / shape_.bits : numbers.below(static_cast<std::uint32_t>(named_));
        return registerAt(shape_, number * all_ / named_);
    }

    /// Of the register that was drawn last.
    std::uint32_t drawBit(Numbers& numbers) const {
        return isOnce_ ? static_cast<std::uint32_t>(last_ % shape_.bits)
                       : numbers.below(shape_.bits);
    }

private:
    const Shape& shape_;
    std::uint64_t all_;
    std::uint64_t named_;
    bool isOnce_;
    std::uint64_t drawn_ = 0;
    std::uint64_t last_ = 0;
};

void writePath(Text& text, std::uint32_t kernel, std::uint32_t instance) {
    text << "top/region/kernel_" << kernel << "_" << instance;
}

void writeNetName(Text& text, const Register& of) {
    writePath(text, of.kernel, of.instance);
    text << "/inst/variable_" << of.variable << "_reg";
}

void writePlace(Text& text, Numbers& numbers, std::string_view block) {
    text << "Bit " << 10'000'000 + numbers.below(80'000'000) << " 0x";
    text.hexadecimal(numbers.below(0x00800000));
    text << " " << numbers.below(3000) << " DIE" << numbers.below(4) << " 0 Block=" << block << "_X"
         << numbers.below(200) << "Y" << numbers.below(900);
}

void writeNet(Text& text, Numbers& numbers, const Shape& shape, const Lines& lines,
              BitsToName& bits) {
    writePlace(text, numbers, "TILE");
    text << " Latch=" << (numbers.below(2) == 0 ? "AQ" : "BQ") << " Net=";
    std::uint32_t bit = 0;
    if (numbers.below(100) < lines.ofKernels && bits.any()) {
        writeNetName(text, bits.drawRegister(numbers));
        bit = bits.drawBit(numbers);
    } else {
        text << "top/region/shell_" << numbers.below(50) << "/fifo_" << numbers.below(4000)
             << "/state_reg";
        bit = numbers.below(shape.bits);
    }
    text << "[" << bit << "]\n";
}

void writeMemoryBit(Text& text, Numbers& numbers) {
    writePlace(text, numbers, "MEMORY");
    text << " Ram=B:BIT" << numbers.below(32768) << "\n";
}

void writeArgument(Text& text, std::uint32_t i) {
    text << "     <port name=\"port_" << i << "\" mode=\"master\" range=\"0xFFFFFFFF\" "
         << "dataWidth=\"512\" portType=\"addressable\" base=\"0x0\"/>\n"
         << "     <arg name=\"argument_" << i << "\" addressQualifier=\"1\" id=\"" << i
         << "\" port=\"port_" << i << "\" size=\"0x8\" offset=\"0x10\" hostOffset=\"0x0\" "
         << "hostSize=\"0x8\" type=\"int*\"/>\n";
}

void writeSignal(Text& text, std::uint32_t i) {
    text << "     <module name=\"module_" << i << "\" instName=\"module_" << i
         << "_U0\" type=\"leaf\">\n      <rtlPort name=\"signal_" << i << "\" object=\"value_" << i
         << "\" protocol=\"handshake\"/>\n     </module>\n";
}

Kernel namedKernel(const Shape& shape, std::uint32_t number) {
    Text text;
    Kernel kernel;
    text << "kernel_" << number;
    kernel.setName(text.take());
    kernel.setType(KernelType::HLS);
    for (std::uint32_t instance = 0; instance < shape.instances; ++instance) {
        writePath(text, number, instance);
        kernel.addInstancePath(text.take());
    }
    for (std::uint32_t variable = 0; variable < shape.variables; ++variable) {
        text << "variable_" << variable;
        const std::string name = text.take();
        kernel.addVariable(name, name + "_reg", "int");
    }
    return kernel;
}

} // namespace

void writeHierarchy(std::ostream& out, const Shape& shape) {
    Output text(out);
    text << "version: 1.0\n";
    for (std::uint32_t kernel = 0; kernel < shape.kernels; ++kernel) {
        text << "kernel_" << kernel << "\ntype: hls\n";
        for (std::uint32_t instance = 0; instance < shape.instances; ++instance) {
            text << "instance path: ";
            writePath(text, kernel, instance);
            text << "\n";
        }
    }
}

void writeHls(std::ostream& out, const Shape& shape) {
    Output text(out);
    text << "Begin Function compute\n";
    for (std::uint32_t variable = 0; variable < shape.variables; ++variable) {
        const bool beginsLine = variable % shape.perLine == 0;
        if (beginsLine) {
            text << "RTL 1 state" << variable << " (state_" << variable << " == 1'b1)\n";
        }
        text << "local variable_" << variable << "\n";
        if (beginsLine) {
            text << "at: compute.cpp:" << variable + 1 << "\n";
        }
        text << "reg: variable_" << variable << "_reg[" << shape.bits - 1 << ":0]\n"
             << "end variable_" << variable << "_reg[" << shape.bits - 1 << ":0] " << shape.bits
             << "\n";
    }
    text << "End Function compute\n";
}

void writeKernelXml(std::ostream& out, std::uint32_t argumentShare, std::uint64_t bytes) {
    Output text(out);
    std::uint32_t arguments = 0;
    text << "<project name=\"large\">\n <platform vendor=\"none\" name=\"board\">\n"
            "  <device name=\"device\">\n   <core name=\"core\" target=\"hw\" type=\"clc\">\n"
            "    <kernel name=\"kernel_0\" language=\"c\" hash=\"0\">\n";
    for (std::uint32_t i = 0; text.isBelow(bytes); ++i) {
        // Two elements either way.
        if (std::uint64_t{50} * arguments < std::uint64_t{argumentShare} * i) {
            writeArgument(text, arguments++);
        } else {
            writeSignal(text, i);
        }
    }
    text << "    </kernel>\n   </core>\n  </device>\n </platform>\n</project>\n";
}

void writeLogicLocations(std::ostream& out, const Shape& shape, const Lines& lines,
                         std::uint64_t bytes) {
    Output text(out);
    Numbers numbers;
    BitsToName bits(shape, lines);
    text << "Revision 3\n; made by a generator\n";
    while (text.isBelow(bytes)) {
        if (numbers.below(100) < lines.withNet) {
            writeNet(text, numbers, shape, lines, bits);
        } else {
            writeMemoryBit(text, numbers);
        }
    }
}

std::vector<Kernel> fullKernels(const Shape& shape) {
    std::vector<Kernel> kernels;
    for (std::uint32_t kernel = 0; kernel < shape.kernels; ++kernel) {
        kernels.push_back(namedKernel(shape, kernel));
    }
    Numbers numbers;
    Text net;
    for (std::uint64_t position = 0; position < registerCount(shape); ++position) {
        const Register place = registerAt(shape, position);
        net << "/";
        writeNetName(net, place);
        const std::string name = net.take();
        const std::uint32_t address = numbers.below(0x00800000);
        for (std::uint32_t bit = 0; bit < shape.bits; ++bit) {
            kernels[place.kernel].addHardwareLocation(name, bit, address, numbers.below(3000));
        }
    }
    return kernels;
}

} // namespace consolidator::bench
