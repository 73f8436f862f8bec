#include "model/Kernel.h"

#include "model/BinaryForm.h"
#include "model/ConditionTranslation.h"
#include "model/JsonText.h"

#include <algorithm>
#include <ostream>
#include <utility>

namespace consolidator {

void Kernel::addInstancePath(std::string_view path) {
    instancePaths_.findOrAdd(path, [&] { return std::string(path); });
}

void Kernel::addArgument(std::string_view sourceName, std::string_view hardwareName,
                         std::string_view typeText) {
    arguments_.add(sourceName, hardwareName, typeText);
}

void Kernel::addVariable(std::string_view sourceName, std::string_view hardwareName,
                         std::string_view typeText) {
    variables_.findOrAdd(sourceName, [&] { return Variable(sourceName, hardwareName, typeText); });
}

std::size_t Kernel::addHardwareLocation(std::string_view rtlName, std::uint32_t bit,
                                        std::uint32_t address, std::uint32_t offset) {
    const auto make = [&] { return HardwareVariable(rtlName); };
    const auto known = hardwareVariables_.findOrAdd(rtlName, make);
    known.first.setLocation(bit, address, offset);
    return hardwareVariables_.positionOf(known.first);
}

std::uint32_t Kernel::emptyBitsBefore(std::string_view rtlName, std::uint32_t bit) {
    const HardwareVariable* variable = hardwareVariables_.find(rtlName);
    return variable == nullptr ? bit : variable->emptyBitsBefore(bit);
}

std::size_t Kernel::addHardwareVariable(HardwareVariable variable) {
    // The name may go with it: findOrAdd() has no more use for its key once it makes an element.
    const auto make = [&] { return std::move(variable); };
    return hardwareVariables_.positionOf(hardwareVariables_.findOrAdd(variable.name, make).first);
}

void Kernel::addBreakableCondition(std::uint32_t kind, std::string_view condition) {
    addBreakableCondition(BreakableCondition(kind, condition));
}

void Kernel::addBreakableCondition(BreakableCondition condition) {
    breakableConditions_.findOrAdd(condition, [&] { return std::move(condition); });
}

void Kernel::addBram(std::string_view name) {
    brams_.emplace_back(name);
}

void Kernel::merge(Kernel other, MergeObserver* observer) {
    if (type_ == KernelType::Unknown) {
        type_ = other.type_;
    }
    for (const std::string& path : other.instancePaths()) {
        addInstancePath(path);
    }
    // By their texts alone: locations reach a project only with a kernel that is new to it.
    arguments_.merge(other.arguments_);
    for (const Variable& variable : other.variables()) {
        addVariable(variable.sourceName, variable.hardwareName, variable.typeText);
    }
    // These can be large: `other` has no more use for them.
    other.hardwareVariables_.changeAll([&](std::vector<HardwareVariable>& variables) {
        for (HardwareVariable& variable : variables) {
            const auto [known, isNew] = hardwareVariables_.findOrAdd(
                variable.name, [&variable] { return std::move(variable); });
            if (observer != nullptr && !isNew && known.locations != variable.locations) {
                observer->ignoredLocations(*this, known, variable);
            }
        }
    });
    other.breakableConditions_.changeAll([this](std::vector<BreakableCondition>& conditions) {
        for (BreakableCondition& condition : conditions) {
            addBreakableCondition(std::move(condition));
        }
    });
}

void Kernel::clear() {
    *this = Kernel();
}

std::string_view Kernel::instanceSuffix() const {
    const bool floating = std::ranges::any_of(arguments(), [](const Variable& argument) {
        return argument.typeText.find("float") != std::string::npos ||
               argument.typeText.find("double") != std::string::npos;
    });
    return floating ? "/U0" : "/inst";
}

void Kernel::translateConditions() {
    breakableConditions_.changeAll([](std::vector<BreakableCondition>& conditions) {
        // Always-true ones are known by the text that synthesis wrote, so they go first. Conditions
        // that the translation makes equal all stay.
        std::erase_if(conditions, [](const BreakableCondition& condition) {
            return isAlwaysTrue(condition.condition);
        });
        for (BreakableCondition& condition : conditions) {
            condition.condition = translatedCondition(condition.condition);
        }
    });
}

void Kernel::writeJson(std::ostream& out) const {
    out << "{ \"Name\" : ";
    writeQuoted(out, name_);
    out << ", \"Instance Paths\" : [ ";
    const std::string_view suffix = instanceSuffix();
    writeSeparated(out, instancePaths(),
                   [&](const std::string& path) { out << '"' << path << suffix << '"'; });
    out << " ], \"Type\" : ";
    writeQuoted(out, label(type_));
    const auto writeElement = [&out](const auto& element) { element.writeJson(out); };
    out << ", \"Arguments\" : [ ";
    writeSeparated(out, arguments(), writeElement);
    out << "], \"Variables\" : [ ";
    writeSeparated(out, variables(), writeElement);
    if (!hardwareVariables().empty()) {
        out << "], \"Hardware Variables\" : [ ";
        writeSeparated(out, hardwareVariables(), writeElement);
    }
    out << "], \"Breakable Conditions\" : [";
    writeSeparated(out, breakableConditions(), writeElement);
    if (!brams_.empty()) {
        out << "], \"BRAMs\" : [ ";
        writeSeparated(out, brams_, [&](const std::string& bram) { writeQuoted(out, bram); });
    }
    out << "] }";
}

std::uint32_t Kernel::write(std::FILE* stream) const {
    if (stream == nullptr) {
        return 0;
    }
    const auto text = [stream](const std::string& element) { return writeText(stream, element); };
    const auto record = [stream](const auto& element) { return element.write(stream); };
    std::uint32_t written = writeText(stream, name_);
    written += writeList(stream, instancePaths(), text);
    written += writeNumber(stream, static_cast<std::uint32_t>(type_));
    written += writeList(stream, arguments(), record);
    written += writeList(stream, variables(), record);
    written += writeList(stream, hardwareVariables(), record);
    written += writeList(stream, breakableConditions(), record);
    written += writeList(stream, brams_, text);
    return written;
}

bool Kernel::read(std::FILE* stream) {
    clear();
    if (stream == nullptr) {
        return false;
    }
    // A text joins its list only when it came whole; a record joins it in any case and is asked
    // afterwards whether it did.
    const auto readTextOnto = [stream](auto append) {
        std::string text;
        if (!readText(stream, text)) {
            return false;
        }
        append(std::move(text));
        return true;
    };
    const auto readPath = [&] {
        return readTextOnto([&](std::string path) { instancePaths_.append(std::move(path)); });
    };
    const auto readBram = [&] {
        return readTextOnto([&](std::string bram) { brams_.push_back(std::move(bram)); });
    };
    const auto readVariable = [stream](auto& list) {
        return list.append(Variable::read(stream)).valid;
    };
    const auto readRegister = [&] {
        return hardwareVariables_.append(HardwareVariable::read(stream)).valid;
    };
    const auto readCondition = [&] {
        return breakableConditions_.append(BreakableCondition(stream)).valid;
    };
    return readText(stream, name_) && readList(stream, readPath) && readType(stream) &&
           readList(stream, [&] { return readVariable(arguments_); }) &&
           readList(stream, [&] { return readVariable(variables_); }) &&
           readList(stream, readRegister) && readList(stream, readCondition) &&
           readList(stream, readBram);
}

bool Kernel::skip(std::FILE* stream) {
    if (stream == nullptr) {
        return false;
    }
    std::uint32_t type = 0;
    const auto text = [stream] { return skipText(stream); };
    const auto variable = [stream] { return Variable::skip(stream); };
    return skipText(stream) && readList(stream, text) && readNumber(stream, type) &&
           readList(stream, variable) && readList(stream, variable) &&
           readList(stream, [stream] { return HardwareVariable::skip(stream); }) &&
           readList(stream, [stream] { return BreakableCondition::skip(stream); }) &&
           readList(stream, text);
}

bool Kernel::readType(std::FILE* stream) {
    std::uint32_t type = 0;
    if (!readNumber(stream, type)) {
        return false;
    }
    type_ = static_cast<KernelType>(type);
    return true;
}

} // namespace consolidator
