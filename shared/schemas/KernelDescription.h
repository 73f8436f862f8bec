// The kernel description document (kernel.xml): a class for each of its elements.
//
//     <project name="demo">
//       <platform name="board">
//         <device name="fpga0">
//           <core name="accelerator">
//             <kernel name="scale_rows" language="c">
//               <arg name="size_r" addressQualifier="0" id="0" type="int"/>
//
// A class has the name of its element and holds its attributes, then its children, in the order of
// the schema; fields have the names of attributes and child elements in lower camel case. Where one
// name means different things in different places, the class's name says which.
//
// A child element is a list in any case, also where at most one is expected. A child element that
// holds only text is a list of strings. Elements own their children by value: a copy is a deep one.
//
// The tables that bind the classes to their elements are in KernelDescription.cpp; see Binding.h.
#pragma once

#include "shared/schemas/Binding.h"
#include "shared/schemas/Exceptions.h"

#include <cstdint>
#include <istream>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace Mekto { // NOLINT(readability-identifier-naming)

/// An attribute: its `value`, and whether it is `present`. To set one, both are set: name = {"a",
/// true}.
using Text = lmx60::Attribute<std::string>;
using Number = lmx60::Attribute<std::uint32_t>;

/// The platform's version.
struct Version {
    Text major;
    Text minor;

    static const lmx60::ElementKind& kind();
    bool operator==(const Version&) const = default;
};

/// One interface of a board.
struct Interface {
    Text id;
    Text name;
    Text type;

    static const lmx60::ElementKind& kind();
    bool operator==(const Interface&) const = default;
};

struct Interfaces {
    std::vector<Interface> interface;

    static const lmx60::ElementKind& kind();
    bool operator==(const Interfaces&) const = default;
};

/// One memory of a board.
struct Memory {
    Text name;
    Text type;
    Text size;

    static const lmx60::ElementKind& kind();
    bool operator==(const Memory&) const = default;
};

struct Memories {
    std::vector<Memory> memory;

    static const lmx60::ElementKind& kind();
    bool operator==(const Memories&) const = default;
};

/// One picture of a board.
struct Image {
    Text name;
    Text type;
    std::vector<std::string> directory;

    static const lmx60::ElementKind& kind();
    bool operator==(const Image&) const = default;
};

struct Images {
    std::vector<Image> image;

    static const lmx60::ElementKind& kind();
    bool operator==(const Images&) const = default;
};

/// A board's identification on its bus.
struct Id {
    Text vendor;
    Text device;
    Text subsystem;

    static const lmx60::ElementKind& kind();
    bool operator==(const Id&) const = default;
};

struct Board {
    Text name;
    Text vendor;
    Text fpga;
    std::vector<Interfaces> interfaces;
    std::vector<Memories> memories;
    std::vector<Images> images;
    std::vector<Id> id;
    std::vector<std::string> buildFlow;

    static const lmx60::ElementKind& kind();
    bool operator==(const Board&) const = default;
};

struct Host {
    Text architecture;

    static const lmx60::ElementKind& kind();
    bool operator==(const Host&) const = default;
};

/// One system clock of a device.
struct Clock {
    Text port;
    Text frequency;
    Text name;

    static const lmx60::ElementKind& kind();
    bool operator==(const Clock&) const = default;
};

struct SystemClocks {
    std::vector<Clock> clock;

    static const lmx60::ElementKind& kind();
    bool operator==(const SystemClocks&) const = default;
};

/// One clock of a core's kernels.
struct KernelClocksClock {
    Text port;
    Text frequency;
    Text name;

    static const lmx60::ElementKind& kind();
    bool operator==(const KernelClocksClock&) const = default;
};

struct KernelClocks {
    std::vector<KernelClocksClock> clock;

    static const lmx60::ElementKind& kind();
    bool operator==(const KernelClocks&) const = default;
};

/// A connection between two ports of a core.
struct Connection {
    Text srcType;
    Text srcInst;
    Text srcPort;
    Text dstType;
    Text dstInst;
    Text dstPort;

    static const lmx60::ElementKind& kind();
    bool operator==(const Connection&) const = default;
};

/// A range to which a core memory's addresses are mapped.
struct CoreMemoryAddrRemap {
    Text base;
    Text range;

    static const lmx60::ElementKind& kind();
    bool operator==(const CoreMemoryAddrRemap&) const = default;
};

/// One "instance" within a core's "memories".
struct CoreMemoryInstance {
    Text name;
    Text size;
    Text linkage;
    std::vector<CoreMemoryAddrRemap> addrRemap;

    static const lmx60::ElementKind& kind();
    bool operator==(const CoreMemoryInstance&) const = default;
};

/// The "memories" of a core; those of a board are Memories.
struct CoreMemories {
    std::vector<CoreMemoryInstance> instance;

    static const lmx60::ElementKind& kind();
    bool operator==(const CoreMemories&) const = default;
};

/// One "instance" within "pipes".
struct PipeInstance {
    Text name;
    Text width;
    Text depth;
    Text linkage;

    static const lmx60::ElementKind& kind();
    bool operator==(const PipeInstance&) const = default;
};

struct Pipes {
    std::vector<PipeInstance> instance;

    static const lmx60::ElementKind& kind();
    bool operator==(const Pipes&) const = default;
};

/// One slot of a profiler.
struct Slot {
    Text name;
    Text index;
    Text type;

    static const lmx60::ElementKind& kind();
    bool operator==(const Slot&) const = default;
};

/// One "instance" within "profilers".
struct ProfilerInstance {
    Text name;
    Text addrOffset;
    Text numSlots;
    Text useCounters;
    Text useTrace;
    Text offloadType;
    std::vector<Slot> slot;

    static const lmx60::ElementKind& kind();
    bool operator==(const ProfilerInstance&) const = default;
};

struct Profilers {
    std::vector<ProfilerInstance> instance;

    static const lmx60::ElementKind& kind();
    bool operator==(const Profilers&) const = default;
};

/// A port of a hardware module.
struct RtlPort {
    Text name;
    Text object;
    Text protocol;

    static const lmx60::ElementKind& kind();
    bool operator==(const RtlPort&) const = default;
};

/// A hardware module, with the modules inside it. They nest to any depth, so copying, comparing and
/// destroying one walks through them with a list instead of calling itself.
struct ModuleType {
    Text name;
    Text instName;
    Text type;
    std::vector<RtlPort> rtlPort;
    std::vector<ModuleType> module;

    ModuleType() = default;
    ModuleType(const ModuleType& other);
    ModuleType& operator=(const ModuleType& other);
    ModuleType(ModuleType&& other) noexcept = default;
    ModuleType& operator=(ModuleType&& other) noexcept;
    ~ModuleType();

    static const lmx60::ElementKind& kind();
    bool operator==(const ModuleType& other) const;

private:
    bool equalsButForModules(const ModuleType& other) const;
    void copyButForModules(const ModuleType& other);
};

/// A port of a kernel.
struct Port {
    Text name;
    Text mode;
    Text range;
    Text dataWidth;
    Text portType;
    Text base;

    static const lmx60::ElementKind& kind();
    bool operator==(const Port&) const = default;
};

/// An argument of a kernel.
struct Arg {
    Text name;
    Number addressQualifier;
    Text id;
    Text port;
    Text size;
    Text offset;
    Text hostOffset;
    Text hostSize;
    Text type;
    Text memSize;
    Text origName;
    Text origUse;

    static const lmx60::ElementKind& kind();
    bool operator==(const Arg&) const = default;
};

struct CompileWorkGroupSize {
    Text x;
    Text y;
    Text z;

    static const lmx60::ElementKind& kind();
    bool operator==(const CompileWorkGroupSize&) const = default;
};

struct MaxWorkGroupSize {
    Text x;
    Text y;
    Text z;

    static const lmx60::ElementKind& kind();
    bool operator==(const MaxWorkGroupSize&) const = default;
};

/// A format string that a kernel prints with.
struct FormatString {
    Text id;
    Text value;

    static const lmx60::ElementKind& kind();
    bool operator==(const FormatString&) const = default;
};

struct StringTable {
    std::vector<FormatString> formatString;

    static const lmx60::ElementKind& kind();
    bool operator==(const StringTable&) const = default;
};

/// An "addrRemap" within a kernel's instance.
struct AddrRemap {
    Text base;
    Text port;

    static const lmx60::ElementKind& kind();
    bool operator==(const AddrRemap&) const = default;
};

/// One "instance" within "kernel".
struct Instance {
    Text name;
    std::vector<AddrRemap> addrRemap;

    static const lmx60::ElementKind& kind();
    bool operator==(const Instance&) const = default;
};

/// The interfaces of a FIFO, by name. Note the capital: "Interface" here, "interface" on a board.
struct InterfaceList {
    std::vector<std::string> interface;

    static const lmx60::ElementKind& kind();
    bool operator==(const InterfaceList&) const = default;
};

struct FIFOInst {
    std::vector<std::string> name;
    std::vector<std::string> parentInst;
    std::vector<std::string> staticDepth;
    std::vector<std::string> runtimeDepth;
    std::vector<InterfaceList> interfaceList;

    static const lmx60::ElementKind& kind();
    bool operator==(const FIFOInst&) const = default;
};

struct FIFOInformation {
    std::vector<FIFOInst> fifoInst;

    static const lmx60::ElementKind& kind();
    bool operator==(const FIFOInformation&) const = default;
};

struct Kernel {
    Text name;
    Text language;
    Text vlnv;
    Text attributes;
    Text hash;
    Text preferredWorkGroupSizeMultiple;
    Text workGroupSize;
    Text debug;
    Text interrupt;
    Text hwControlProtocol;
    Text countedAutoRestart;
    Text deadlockDetection;
    Text mailbox;
    Text swReset;
    std::vector<ModuleType> module;
    std::vector<Port> port;
    std::vector<Arg> arg;
    std::vector<CompileWorkGroupSize> compileWorkGroupSize;
    std::vector<MaxWorkGroupSize> maxWorkGroupSize;
    std::vector<StringTable> stringTable;
    std::vector<Instance> instance;
    std::vector<FIFOInformation> fifoInformation;

    static const lmx60::ElementKind& kind();
    bool operator==(const Kernel&) const = default;
};

struct Core {
    Text name;
    Text target;
    Text type;
    Text clockFreq;
    Text numComputeUnits;
    std::vector<KernelClocks> kernelClocks;
    std::vector<Kernel> kernel;
    std::vector<Connection> connection;
    std::vector<CoreMemories> memories;
    std::vector<Pipes> pipes;
    std::vector<Profilers> profilers;

    static const lmx60::ElementKind& kind();
    bool operator==(const Core&) const = default;
};

struct Device {
    Text name;
    Text fpgaDevice;
    Text addrWidth;
    std::vector<SystemClocks> systemClocks;
    std::vector<Core> core;

    static const lmx60::ElementKind& kind();
    bool operator==(const Device&) const = default;
};

struct Platform {
    Text vendor;
    Text boardid;
    Text name;
    Text ipiboard;
    Text cfplatform;
    Text featureRomTime;
    std::vector<Version> version;
    std::vector<std::string> description;
    std::vector<Board> board;
    std::vector<std::string> buildFlow;
    std::vector<Host> host;
    std::vector<Device> device;

    static const lmx60::ElementKind& kind();
    bool operator==(const Platform&) const = default;
};

/// The root of a kernel description document.
struct Project {
    Text name;
    std::vector<Platform> platform;

    /// Reads a whole document from a file. Throws lmx60::c_lmx_exception when that fails and then
    /// puts its code into `error`, if given; the object then holds what came before the fault.
    void readFile(const std::string& path, lmx60::ErrorCode* error = nullptr);

    /// The same from a stream, which is read to its end; `documentName` stands for it in messages.
    void read(std::istream& stream, const std::string& documentName,
              lmx60::ErrorCode* error = nullptr);

    /// The same from a text in memory.
    void readMemory(std::string_view document, lmx60::ErrorCode* error = nullptr);

    /// Writes the whole document, as XmlWriter.h says. All values must be UTF-8 without control
    /// characters other than white space; whether it came out whole is the stream's to tell.
    void write(std::ostream& out) const;

    static const lmx60::ElementKind& kind();
    bool operator==(const Project&) const = default;
};

} // namespace Mekto
