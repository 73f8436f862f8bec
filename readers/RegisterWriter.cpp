#include "readers/RegisterWriter.h"

#include "readers/LLFile.h"
#include "shared/Prefetch.h"

namespace consolidator {

RegisterWriter::RegisterWriter(const Surroundings& surroundings) : with_(surroundings) {
    if (with_.observer != nullptr) {
        placedBits_.emplace();
    }
}

void RegisterWriter::addWaiting() {
    const std::span lines = std::span(waiting_).first(waitingCount_);
    waitingCount_ = 0;
    std::array<KnownNets::Query, mostWaiting> space;
    const std::span queries = std::span(space).first(lines.size());
    for (std::size_t i = 0; i < lines.size(); ++i) {
        queries[i].net = lines[i].bit.net;
    }
    // Three rounds, each of which asks for what the next one needs: the nets, their lists of
    // locations, the entries of the bits. The waits for memory of all lines overlap.
    knownNets_.findAll(queries);
    const auto firstRegister = [this](const KnownNets::Query& query) {
        const auto& [owner, position] = query.registers.front();
        return &with_.kernels[owner].hardwareVariables()[position];
    };
    for (const KnownNets::Query& query : queries) {
        if (!query.registers.empty()) {
            const LocationList& locations = firstRegister(query)->locations;
            prefetch(&locations);
            prefetch(&locations + 1); // it may lie in two lines of the cache
        }
    }
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (!queries[i].registers.empty()) {
            firstRegister(queries[i])->locations.prefetchEntry(lines[i].bit.bitIndex);
        }
    }
    bool areKnown = true; // so far: a net that gets known may move what was found
    for (std::size_t i = 0; i < lines.size(); ++i) {
        areKnown = areKnown && !queries[i].registers.empty();
        if (areKnown) {
            addToRegisters(lines[i], queries[i].registers);
        } else {
            add(lines[i]);
        }
    }
}

void RegisterWriter::add(const NetLine& line) {
    const auto registers = knownNets_.find(line.bit.net);
    if (registers.empty()) {
        addToOwners(line);
    } else {
        addToRegisters(line, registers);
    }
}

void RegisterWriter::addToOwners(const NetLine& line) {
    std::string name = "/";
    name += line.bit.net;
    payFor(line.bytesWithNets);
    const auto owners = with_.matcher.owners(name, with_.budget.mostOwners());
    if (owners.empty()) {
        with_.unmatched.note(line.number);
        return;
    }
    if (!mayHave(line)) {
        return;
    }
    std::vector<Register> registers;
    for (const std::uint32_t owner : owners) {
        Kernel& kernel = withRegisters(owner);
        const bool isFurther = !registers.empty();
        if (isFurther && !mayShare(line)) {
            return;
        }
        if (!mayLeaveEmpty(line, kernel.emptyBitsBefore(name, line.bit.bitIndex))) {
            continue;
        }
        const std::size_t registersBefore = kernel.hardwareVariables().size();
        const std::size_t position = kernel.addHardwareVariable(HardwareVariable(name));
        if (isFurther && kernel.hardwareVariables().size() > registersBefore) {
            with_.budget.shareRegister(name.size());
        }
        const Register where{owner, static_cast<std::uint32_t>(position)};
        if (placedBits_ && !isFurther) {
            setWatched(where, line);
        } else {
            set(where, line.bit);
        }
        registers.push_back(where);
    }
    // A net that some owner did not get is looked for again: its next bit may fit, or be paid for.
    if (registers.size() == owners.size()) {
        knownNets_.add(line.bit.net, registers);
    }
}

Kernel& RegisterWriter::withRegisters(std::uint32_t owner) {
    Kernel& kernel = with_.kernels[owner];
    // Copied for the kernels that get a bit only. The empty bits before it are those that the
    // project's register lacks, so that one has to be here.
    if (owner < with_.lacksRegisters.size() && with_.lacksRegisters[owner]) {
        for (const HardwareVariable& known : (*with_.project)[owner].hardwareVariables()) {
            kernel.addHardwareVariable(known);
        }
        with_.lacksRegisters[owner] = false;
    }
    return kernel;
}

void RegisterWriter::addToRegisters(const NetLine& line, std::span<const Register> registers) {
    payFor(line.bytesWithNets);
    if (!mayHave(line)) {
        return;
    }
    const BitLine& bit = line.bit;
    // The first kernel costs the budget nothing: its location is what the line itself pays for.
    bool isFurther = false;
    for (const Register where : registers) {
        const Kernel& kernel = with_.kernels[where.kernel];
        const HardwareVariable& variable = kernel.hardwareVariables()[where.position];
        if (isFurther && !mayShare(line)) {
            return;
        }
        if (!mayLeaveEmpty(line, variable.emptyBitsBefore(bit.bitIndex))) {
            continue;
        }
        if (placedBits_ && !isFurther) {
            setWatched(where, line);
        } else {
            set(where, bit);
        }
        isFurther = true;
    }
}

void RegisterWriter::set(Register where, const BitLine& bit) {
    with_.kernels[where.kernel].setHardwareLocation(where.position, bit.bitIndex, bit.address,
                                                    bit.offset);
}

/// Sets the bit in the first of its registers, and tells so.
void RegisterWriter::setWatched(Register where, const NetLine& line) {
    const BitLine& bit = line.bit;
    const LocationList& locations =
        with_.kernels[where.kernel].hardwareVariables()[where.position].locations;
    const LogicLocation location{bit.address, bit.offset};
    // Before the bit is set: where it was is known to the register alone.
    const auto before = placedBits_->find(where, bit.bitIndex, locations);
    set(where, bit);
    placedBits_->add(where, bit.bitIndex, location, locations);
    with_.observer->bitPlaced({bit.net, bit.bitIndex, location, line.number, before});
}

void RegisterWriter::payFor(std::uint64_t bytesWithNets) {
    // Lines without a kernel pay too, and only here: the reader just goes on counting their bytes.
    with_.budget.lineRead(bytesWithNets - paidBytes_);
    paidBytes_ = bytesWithNets;
}

bool RegisterWriter::mayHave(const NetLine& line) {
    if (line.bit.bitIndex >= LLFile::bitLimit) {
        remarkOnSkipped(line, Code::BitTooHigh,
                        "registers of up to " + std::to_string(LLFile::bitLimit) +
                            " bits are kept");
        return false;
    }
    return true;
}

bool RegisterWriter::mayShare(const NetLine& line) {
    if (!with_.budget.mayShare()) {
        remarkOnSkipped(
            line, Code::NetOfTooMany,
            "so many nets belong to several kernels that only the first kernels of this "
            "one get it");
        return false;
    }
    with_.budget.shareLocation();
    return true;
}

bool RegisterWriter::mayLeaveEmpty(const NetLine& line, std::uint32_t emptyBits) {
    if (!with_.budget.takeEmptyBits(emptyBits)) {
        remarkOnSkipped(line, Code::TooManyEmptyBits,
                        "the registers of this file have too many bits that it does not name");
        return false;
    }
    return true;
}

void RegisterWriter::remarkOnSkipped(const NetLine& line, Code code, const std::string& reason) {
    std::string net = "/";
    net += line.bit.net;
    with_.diagnostic.remark(line.number, code,
                            "bit " + std::to_string(line.bit.bitIndex) + " of " + inQuotes(net) +
                                " is skipped: " + reason);
}

} // namespace consolidator
