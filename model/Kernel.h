// The debug metadata of one hardware kernel: the central record of a project.
//
// Readers make kernels and fill them through the add operations; the consolidated file merges them
// by name, stores them in the binary form and renders them as JSON.
#pragma once

#include "model/ArgumentList.h"
#include "model/BreakableCondition.h"
#include "model/HardwareVariable.h"
#include "model/KernelType.h"
#include "model/MergeObserver.h"
#include "model/Variable.h"
#include "shared/UniqueList.h"

#include <cstdint>
#include <cstdio>
#include <functional>
#include <iosfwd>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace consolidator {

/// One kernel with all that is known about it. It owns everything by value; a copy shares
/// nothing that changes.
///
/// The add operations keep each list free of duplicates, and the first description wins: what comes
/// later under a known name is dropped, not merged. Each takes constant time on average. Lists that
/// were read from a file are as they stand there, duplicates included.
///
/// Binary form, in this order (see BinaryForm.h for numbers and texts):
///
///     name                  text
///     instance paths        count, then a text each
///     type                  number
///     arguments             count, then a Variable each
///     variables             count, then a Variable each
///     hardware variables    count, then a HardwareVariable each
///     breakable conditions  count, then a BreakableCondition each
///     BRAM names            count, then a text each
///
/// JSON form, for a kernel that has only a name and a type; the headings "Hardware Variables" and
/// "BRAMs" come only with content:
///
///     { "Name" : "k", "Instance Paths" : [  ], "Type" : "HLS", "Arguments" : [ ],
///       "Variables" : [ ], "Breakable Conditions" : [] }        (on one line)
class Kernel {
public:
    const std::string& name() const { return name_; }
    void setName(std::string_view name) { name_ = name; }

    KernelType type() const { return type_; }
    void setType(KernelType type) { type_ = type; }

    /// Hierarchical paths of the kernel's instances in the linked design, unique.
    const std::vector<std::string>& instancePaths() const { return instancePaths_.items(); }
    /// Top-level arguments, unique by source name. They hold until the kernel gets more of them.
    std::span<const Variable> arguments() const { return arguments_.items(); }
    const ArgumentList& argumentList() const { return arguments_; }
    /// Local variables, unique by source name.
    const std::vector<Variable>& variables() const { return variables_.items(); }
    /// Registers, unique by net name.
    const std::vector<HardwareVariable>& hardwareVariables() const {
        return hardwareVariables_.items();
    }
    /// Places at which the kernel may be stopped, unique as a whole.
    const std::vector<BreakableCondition>& breakableConditions() const {
        return breakableConditions_.items();
    }
    /// Names of the block-RAM cells that belong to the kernel; duplicates are kept.
    const std::vector<std::string>& brams() const { return brams_; }

    /// Adds the path unless it is there. An empty path is a value like any other.
    void addInstancePath(std::string_view path);
    /// Adds an argument unless there is one of this source name, whatever its other texts are.
    void addArgument(std::string_view sourceName, std::string_view hardwareName,
                     std::string_view typeText);
    /// The same for a local variable.
    void addVariable(std::string_view sourceName, std::string_view hardwareName,
                     std::string_view typeText);
    /// Replaces the arguments, by a list that other kernels may share.
    void setArguments(ArgumentList arguments) { arguments_ = std::move(arguments); }
    /// Sets where one bit of the register `rtlName` lies, adding the register if it is new. The
    /// caller bounds `bit`, see HardwareVariable::setLocation. Returns the register's position.
    std::size_t addHardwareLocation(std::string_view rtlName, std::uint32_t bit,
                                    std::uint32_t address, std::uint32_t offset);
    /// The same for the register at a position below the number of registers.
    void setHardwareLocation(std::size_t position, std::uint32_t bit, std::uint32_t address,
                             std::uint32_t offset) {
        hardwareVariables_.at(position).setLocation(bit, address, offset);
    }
    /// How many pairs of zeros addHardwareLocation() would add to the register for the bits below
    /// `bit`, which is what a small file can make large.
    std::uint32_t emptyBitsBefore(std::string_view rtlName, std::uint32_t bit);
    /// Adds the register unless one of its name is there. Returns the position of the one that is.
    std::size_t addHardwareVariable(HardwareVariable variable);
    /// Adds a condition without a source line unless an equal one is there.
    void addBreakableCondition(std::uint32_t kind, std::string_view condition);
    /// Adds the condition unless an equal one is there.
    void addBreakableCondition(BreakableCondition condition);
    /// Adds the name, whether or not it is there.
    void addBram(std::string_view name);

    /// Takes over what `other`, a kernel of the same name, knows and this one does not. A type that
    /// is known stays. Arguments and variables come without their locations, and BRAM names do not
    /// come at all: both reach a project only with a kernel that is new to it. That is on purpose.
    /// `observer`, unless null, is told of registers that are dropped.
    void merge(Kernel other, MergeObserver* observer = nullptr);

    /// Back to the state of a new record: all empty, type Unknown.
    void clear();

    /// What JSON appends to each instance path: "/U0" if the type of an argument contains "float"
    /// or "double", else "/inst".
    std::string_view instanceSuffix() const;

    /// Rewrites the breakable conditions from the infix form of high-level synthesis into prefix
    /// form and drops the always-true ones (see ConditionTranslation.h). A second call translates
    /// the translated texts again.
    void translateConditions();

    /// Writes the JSON form, with the conditions as they stand.
    void writeJson(std::ostream& out) const;

    /// Writes the binary form and returns the number of bytes that went out; 0 for a null stream.
    std::uint32_t write(std::FILE* stream) const;

    /// Replaces the kernel by the record that stands in the stream. Returns false on a short read
    /// or a null stream; the kernel then holds what came before, an incomplete last list element
    /// (not valid) included.
    bool read(std::FILE* stream);

    /// Passes over a record: reads as many bytes as read() and returns the same, but keeps nothing.
    static bool skip(std::FILE* stream);

private:
    struct ByText {
        std::string_view operator()(const std::string& text) const { return text; }
    };
    struct ByNetName {
        std::string_view operator()(const HardwareVariable& variable) const {
            return variable.name;
        }
    };

    bool readType(std::FILE* stream);

    std::string name_;
    UniqueList<std::string, ByText> instancePaths_;
    KernelType type_ = KernelType::Unknown;
    ArgumentList arguments_;
    VariableList variables_;
    UniqueList<HardwareVariable, ByNetName> hardwareVariables_;
    UniqueList<BreakableCondition, std::identity> breakableConditions_;
    std::vector<std::string> brams_;
};

} // namespace consolidator
