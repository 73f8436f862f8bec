#include "shared/schemas/KernelDescription.h"

#include "shared/schemas/XmlReader.h"
#include "shared/schemas/XmlWriter.h"

#include <array>
#include <fstream>
#include <sstream>
#include <utility>

using lmx60::attribute;
using lmx60::child;
using lmx60::ElementKind;

namespace Mekto { // NOLINT(readability-identifier-naming)

// The tables. Adding an attribute or a child element is adding a field and its row here.

const ElementKind& Version::kind() {
    static constexpr std::array attributes{attribute<&Version::major>("major"),
                                           attribute<&Version::minor>("minor")};
    static constexpr ElementKind table{attributes, {}};
    return table;
}

const ElementKind& Interface::kind() {
    static constexpr std::array attributes{attribute<&Interface::id>("id"),
                                           attribute<&Interface::name>("name"),
                                           attribute<&Interface::type>("type")};
    static constexpr ElementKind table{attributes, {}};
    return table;
}

const ElementKind& Interfaces::kind() {
    static constexpr std::array children{child<&Interfaces::interface>("interface")};
    static constexpr ElementKind table{{}, children};
    return table;
}

const ElementKind& Memory::kind() {
    static constexpr std::array attributes{attribute<&Memory::name>("name"),
                                           attribute<&Memory::type>("type"),
                                           attribute<&Memory::size>("size")};
    static constexpr ElementKind table{attributes, {}};
    return table;
}

const ElementKind& Memories::kind() {
    static constexpr std::array children{child<&Memories::memory>("memory")};
    static constexpr ElementKind table{{}, children};
    return table;
}

const ElementKind& Image::kind() {
    static constexpr std::array attributes{attribute<&Image::name>("name"),
                                           attribute<&Image::type>("type")};
    static constexpr std::array children{child<&Image::directory>("directory")};
    static constexpr ElementKind table{attributes, children};
    return table;
}

const ElementKind& Images::kind() {
    static constexpr std::array children{child<&Images::image>("image")};
    static constexpr ElementKind table{{}, children};
    return table;
}

const ElementKind& Id::kind() {
    static constexpr std::array attributes{attribute<&Id::vendor>("vendor"),
                                           attribute<&Id::device>("device"),
                                           attribute<&Id::subsystem>("subsystem")};
    static constexpr ElementKind table{attributes, {}};
    return table;
}

const ElementKind& Board::kind() {
    static constexpr std::array attributes{attribute<&Board::name>("name"),
                                           attribute<&Board::vendor>("vendor"),
                                           attribute<&Board::fpga>("fpga")};
    static constexpr std::array children{child<&Board::interfaces>("interfaces"),
                                         child<&Board::memories>("memories"),
                                         child<&Board::images>("images"), child<&Board::id>("id"),
                                         child<&Board::buildFlow>("build_flow")};
    static constexpr ElementKind table{attributes, children};
    return table;
}

const ElementKind& Host::kind() {
    static constexpr std::array attributes{attribute<&Host::architecture>("architecture")};
    static constexpr ElementKind table{attributes, {}};
    return table;
}

const ElementKind& Clock::kind() {
    static constexpr std::array attributes{attribute<&Clock::port>("port"),
                                           attribute<&Clock::frequency>("frequency"),
                                           attribute<&Clock::name>("name")};
    static constexpr ElementKind table{attributes, {}};
    return table;
}

const ElementKind& SystemClocks::kind() {
    static constexpr std::array children{child<&SystemClocks::clock>("clock")};
    static constexpr ElementKind table{{}, children};
    return table;
}

const ElementKind& KernelClocksClock::kind() {
    static constexpr std::array attributes{attribute<&KernelClocksClock::port>("port"),
                                           attribute<&KernelClocksClock::frequency>("frequency"),
                                           attribute<&KernelClocksClock::name>("name")};
    static constexpr ElementKind table{attributes, {}};
    return table;
}

const ElementKind& KernelClocks::kind() {
    static constexpr std::array children{child<&KernelClocks::clock>("clock")};
    static constexpr ElementKind table{{}, children};
    return table;
}

const ElementKind& Connection::kind() {
    static constexpr std::array attributes{
        attribute<&Connection::srcType>("srcType"), attribute<&Connection::srcInst>("srcInst"),
        attribute<&Connection::srcPort>("srcPort"), attribute<&Connection::dstType>("dstType"),
        attribute<&Connection::dstInst>("dstInst"), attribute<&Connection::dstPort>("dstPort")};
    static constexpr ElementKind table{attributes, {}};
    return table;
}

const ElementKind& CoreMemoryAddrRemap::kind() {
    static constexpr std::array attributes{attribute<&CoreMemoryAddrRemap::base>("base"),
                                           attribute<&CoreMemoryAddrRemap::range>("range")};
    static constexpr ElementKind table{attributes, {}};
    return table;
}

const ElementKind& CoreMemoryInstance::kind() {
    static constexpr std::array attributes{attribute<&CoreMemoryInstance::name>("name"),
                                           attribute<&CoreMemoryInstance::size>("size"),
                                           attribute<&CoreMemoryInstance::linkage>("linkage")};
    static constexpr std::array children{child<&CoreMemoryInstance::addrRemap>("addrRemap")};
    static constexpr ElementKind table{attributes, children};
    return table;
}

const ElementKind& CoreMemories::kind() {
    static constexpr std::array children{child<&CoreMemories::instance>("instance")};
    static constexpr ElementKind table{{}, children};
    return table;
}

const ElementKind& PipeInstance::kind() {
    static constexpr std::array attributes{
        attribute<&PipeInstance::name>("name"), attribute<&PipeInstance::width>("width"),
        attribute<&PipeInstance::depth>("depth"), attribute<&PipeInstance::linkage>("linkage")};
    static constexpr ElementKind table{attributes, {}};
    return table;
}

const ElementKind& Pipes::kind() {
    static constexpr std::array children{child<&Pipes::instance>("instance")};
    static constexpr ElementKind table{{}, children};
    return table;
}

const ElementKind& Slot::kind() {
    static constexpr std::array attributes{attribute<&Slot::name>("name"),
                                           attribute<&Slot::index>("index"),
                                           attribute<&Slot::type>("type")};
    static constexpr ElementKind table{attributes, {}};
    return table;
}

const ElementKind& ProfilerInstance::kind() {
    static constexpr std::array attributes{
        attribute<&ProfilerInstance::name>("name"),
        attribute<&ProfilerInstance::addrOffset>("addrOffset"),
        attribute<&ProfilerInstance::numSlots>("numSlots"),
        attribute<&ProfilerInstance::useCounters>("useCounters"),
        attribute<&ProfilerInstance::useTrace>("useTrace"),
        attribute<&ProfilerInstance::offloadType>("offloadType")};
    static constexpr std::array children{child<&ProfilerInstance::slot>("slot")};
    static constexpr ElementKind table{attributes, children};
    return table;
}

const ElementKind& Profilers::kind() {
    static constexpr std::array children{child<&Profilers::instance>("instance")};
    static constexpr ElementKind table{{}, children};
    return table;
}

const ElementKind& RtlPort::kind() {
    static constexpr std::array attributes{attribute<&RtlPort::name>("name"),
                                           attribute<&RtlPort::object>("object"),
                                           attribute<&RtlPort::protocol>("protocol")};
    static constexpr ElementKind table{attributes, {}};
    return table;
}

const ElementKind& ModuleType::kind() {
    static constexpr std::array attributes{attribute<&ModuleType::name>("name"),
                                           attribute<&ModuleType::instName>("instName"),
                                           attribute<&ModuleType::type>("type")};
    static constexpr std::array children{child<&ModuleType::rtlPort>("rtlPort"),
                                         child<&ModuleType::module>("module")};
    static constexpr ElementKind table{attributes, children};
    return table;
}

const ElementKind& Port::kind() {
    static constexpr std::array attributes{
        attribute<&Port::name>("name"),         attribute<&Port::mode>("mode"),
        attribute<&Port::range>("range"),       attribute<&Port::dataWidth>("dataWidth"),
        attribute<&Port::portType>("portType"), attribute<&Port::base>("base")};
    static constexpr ElementKind table{attributes, {}};
    return table;
}

const ElementKind& Arg::kind() {
    static constexpr std::array attributes{attribute<&Arg::name>("name"),
                                           attribute<&Arg::addressQualifier>("addressQualifier"),
                                           attribute<&Arg::id>("id"),
                                           attribute<&Arg::port>("port"),
                                           attribute<&Arg::size>("size"),
                                           attribute<&Arg::offset>("offset"),
                                           attribute<&Arg::hostOffset>("hostOffset"),
                                           attribute<&Arg::hostSize>("hostSize"),
                                           attribute<&Arg::type>("type"),
                                           attribute<&Arg::memSize>("memSize"),
                                           attribute<&Arg::origName>("origName"),
                                           attribute<&Arg::origUse>("origUse")};
    static constexpr ElementKind table{attributes, {}};
    return table;
}

const ElementKind& CompileWorkGroupSize::kind() {
    static constexpr std::array attributes{attribute<&CompileWorkGroupSize::x>("x"),
                                           attribute<&CompileWorkGroupSize::y>("y"),
                                           attribute<&CompileWorkGroupSize::z>("z")};
    static constexpr ElementKind table{attributes, {}};
    return table;
}

const ElementKind& MaxWorkGroupSize::kind() {
    static constexpr std::array attributes{attribute<&MaxWorkGroupSize::x>("x"),
                                           attribute<&MaxWorkGroupSize::y>("y"),
                                           attribute<&MaxWorkGroupSize::z>("z")};
    static constexpr ElementKind table{attributes, {}};
    return table;
}

const ElementKind& FormatString::kind() {
    static constexpr std::array attributes{attribute<&FormatString::id>("id"),
                                           attribute<&FormatString::value>("value")};
    static constexpr ElementKind table{attributes, {}};
    return table;
}

const ElementKind& StringTable::kind() {
    static constexpr std::array children{child<&StringTable::formatString>("format_string")};
    static constexpr ElementKind table{{}, children};
    return table;
}

const ElementKind& AddrRemap::kind() {
    static constexpr std::array attributes{attribute<&AddrRemap::base>("base"),
                                           attribute<&AddrRemap::port>("port")};
    static constexpr ElementKind table{attributes, {}};
    return table;
}

const ElementKind& Instance::kind() {
    static constexpr std::array attributes{attribute<&Instance::name>("name")};
    static constexpr std::array children{child<&Instance::addrRemap>("addrRemap")};
    static constexpr ElementKind table{attributes, children};
    return table;
}

const ElementKind& InterfaceList::kind() {
    static constexpr std::array children{child<&InterfaceList::interface>("Interface")};
    static constexpr ElementKind table{{}, children};
    return table;
}

const ElementKind& FIFOInst::kind() {
    static constexpr std::array children{child<&FIFOInst::name>("Name"),
                                         child<&FIFOInst::parentInst>("ParentInst"),
                                         child<&FIFOInst::staticDepth>("StaticDepth"),
                                         child<&FIFOInst::runtimeDepth>("RuntimeDepth"),
                                         child<&FIFOInst::interfaceList>("InterfaceList")};
    static constexpr ElementKind table{{}, children};
    return table;
}

const ElementKind& FIFOInformation::kind() {
    static constexpr std::array children{child<&FIFOInformation::fifoInst>("FIFOInst")};
    static constexpr ElementKind table{{}, children};
    return table;
}

const ElementKind& Kernel::kind() {
    static constexpr std::array attributes{
        attribute<&Kernel::name>("name"),
        attribute<&Kernel::language>("language"),
        attribute<&Kernel::vlnv>("vlnv"),
        attribute<&Kernel::attributes>("attributes"),
        attribute<&Kernel::hash>("hash"),
        attribute<&Kernel::preferredWorkGroupSizeMultiple>("preferredWorkGroupSizeMultiple"),
        attribute<&Kernel::workGroupSize>("workGroupSize"),
        attribute<&Kernel::debug>("debug"),
        attribute<&Kernel::interrupt>("interrupt"),
        attribute<&Kernel::hwControlProtocol>("hwControlProtocol"),
        attribute<&Kernel::countedAutoRestart>("countedAutoRestart"),
        attribute<&Kernel::deadlockDetection>("deadlockDetection"),
        attribute<&Kernel::mailbox>("mailbox"),
        attribute<&Kernel::swReset>("swReset")};
    static constexpr std::array children{
        child<&Kernel::module>("module"),
        child<&Kernel::port>("port"),
        child<&Kernel::arg>("arg"),
        child<&Kernel::compileWorkGroupSize>("compileWorkGroupSize"),
        child<&Kernel::maxWorkGroupSize>("maxWorkGroupSize"),
        child<&Kernel::stringTable>("string_table"),
        child<&Kernel::instance>("instance"),
        child<&Kernel::fifoInformation>("FIFOInformation")};
    static constexpr ElementKind table{attributes, children};
    return table;
}

const ElementKind& Core::kind() {
    static constexpr std::array attributes{
        attribute<&Core::name>("name"), attribute<&Core::target>("target"),
        attribute<&Core::type>("type"), attribute<&Core::clockFreq>("clockFreq"),
        attribute<&Core::numComputeUnits>("numComputeUnits")};
    static constexpr std::array children{child<&Core::kernelClocks>("kernelClocks"),
                                         child<&Core::kernel>("kernel"),
                                         child<&Core::connection>("connection"),
                                         child<&Core::memories>("memories"),
                                         child<&Core::pipes>("pipes"),
                                         child<&Core::profilers>("profilers")};
    static constexpr ElementKind table{attributes, children};
    return table;
}

const ElementKind& Device::kind() {
    static constexpr std::array attributes{attribute<&Device::name>("name"),
                                           attribute<&Device::fpgaDevice>("fpgaDevice"),
                                           attribute<&Device::addrWidth>("addrWidth")};
    static constexpr std::array children{child<&Device::systemClocks>("systemClocks"),
                                         child<&Device::core>("core")};
    static constexpr ElementKind table{attributes, children};
    return table;
}

const ElementKind& Platform::kind() {
    static constexpr std::array attributes{attribute<&Platform::vendor>("vendor"),
                                           attribute<&Platform::boardid>("boardid"),
                                           attribute<&Platform::name>("name"),
                                           attribute<&Platform::ipiboard>("ipiboard"),
                                           attribute<&Platform::cfplatform>("cfplatform"),
                                           attribute<&Platform::featureRomTime>("featureRomTime")};
    static constexpr std::array children{
        child<&Platform::version>("version"), child<&Platform::description>("description"),
        child<&Platform::board>("board"),     child<&Platform::buildFlow>("build_flow"),
        child<&Platform::host>("host"),       child<&Platform::device>("device")};
    static constexpr ElementKind table{attributes, children};
    return table;
}

const ElementKind& Project::kind() {
    static constexpr std::array attributes{attribute<&Project::name>("name")};
    static constexpr std::array children{child<&Project::platform>("platform")};
    static constexpr ElementKind table{attributes, children};
    return table;
}

// Modules nest as deep as a document likes, so none of the following calls itself.

void ModuleType::copyButForModules(const ModuleType& other) {
    name = other.name;
    instName = other.instName;
    type = other.type;
    rtlPort = other.rtlPort;
}

bool ModuleType::equalsButForModules(const ModuleType& other) const {
    return name == other.name && instName == other.instName && type == other.type &&
           rtlPort == other.rtlPort && module.size() == other.module.size();
}

ModuleType::ModuleType(const ModuleType& other) {
    std::vector<std::pair<const ModuleType*, ModuleType*>> pending{{&other, this}};
    while (!pending.empty()) {
        const auto [source, target] = pending.back();
        pending.pop_back();
        target->copyButForModules(*source);
        target->module.resize(source->module.size());
        for (std::size_t i = 0; i < source->module.size(); ++i) {
            pending.emplace_back(&source->module[i], &target->module[i]);
        }
    }
}

ModuleType& ModuleType::operator=(const ModuleType& other) {
    *this = ModuleType(other);
    return *this;
}

ModuleType& ModuleType::operator=(ModuleType&& other) noexcept {
    ModuleType taken(std::move(other)); // `other` may be one of the modules that go
    std::swap(name, taken.name);
    std::swap(instName, taken.instName);
    std::swap(type, taken.type);
    std::swap(rtlPort, taken.rtlPort);
    std::swap(module, taken.module);
    return *this;
}

ModuleType::~ModuleType() {
    // A destructor must not need memory. So the way back is kept in the modules themselves: while
    // the modules inside a module are being removed, its own list holds the list above.
    std::vector<ModuleType> list = std::move(module);
    std::vector<ModuleType> above;
    while (!list.empty() || !above.empty()) {
        if (list.empty()) {
            list = std::move(above);
            above = std::move(list.back().module);
            list.pop_back();
        } else if (list.back().module.empty()) {
            list.pop_back();
        } else {
            std::vector<ModuleType> inner = std::move(list.back().module);
            list.back().module = std::move(above);
            above = std::move(list);
            list = std::move(inner);
        }
    }
}

bool ModuleType::operator==(const ModuleType& other) const {
    std::vector<std::pair<const ModuleType*, const ModuleType*>> pending{{this, &other}};
    while (!pending.empty()) {
        const auto [left, right] = pending.back();
        pending.pop_back();
        if (!left->equalsButForModules(*right)) {
            return false;
        }
        for (std::size_t i = 0; i < left->module.size(); ++i) {
            pending.emplace_back(&left->module[i], &right->module[i]);
        }
    }
    return true;
}

void Project::readFile(const std::string& path, lmx60::ErrorCode* error) {
    std::ifstream stream(path);
    if (!stream.is_open()) {
        if (error != nullptr) {
            *error = lmx60::ErrorCode::CannotOpen;
        }
        throw lmx60::c_lmx_exception(lmx60::ErrorCode::CannotOpen, path + ": cannot be opened");
    }
    read(stream, path, error);
}

void Project::read(std::istream& stream, const std::string& documentName, lmx60::ErrorCode* error) {
    if (error != nullptr) {
        *error = lmx60::ErrorCode::None;
    }
    try {
        lmx60::readDocument(stream, documentName, "project", kind(), this);
    } catch (const lmx60::c_lmx_exception& exception) {
        if (error != nullptr) {
            *error = exception.code();
        }
        throw;
    }
}

void Project::readMemory(std::string_view document, lmx60::ErrorCode* error) {
    std::istringstream stream{std::string(document)};
    read(stream, "document", error);
}

void Project::write(std::ostream& out) const {
    lmx60::writeDocument(out, "project", kind(), this);
}

} // namespace Mekto
