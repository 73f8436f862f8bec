// The tree of a kernel description: every element and attribute in its field, trees as values, and
// documents from files, streams and memory.

#include "shared/schemas/KernelDescription.h"

#include "tests/support/Elements.h"
#include "tests/support/EveryElement.h"
#include "tests/support/Fifo.h"
#include "tests/support/Repeated.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <fstream>
#include <functional>
#include <sstream>
#include <stdexcept>
#include <streambuf>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace consolidator::test {

namespace {

using lmx60::ErrorCode;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

// Every element and every attribute

/// The tree of a document that has everything, and the elements that hold others.
struct EveryElement : testing::Test {
    const Mekto::Project project = projectOf(everyElementDocument());
    const Mekto::Platform& platform = project.platform.at(0);
    const Mekto::Board& board = platform.board.at(0);
    const Mekto::Device& device = platform.device.at(0);
    const Mekto::Core& core = device.core.at(0);
    const Mekto::Kernel& kernel = core.kernel.at(0);
};

Mekto::ModuleType module(const std::string& number, const std::vector<Mekto::RtlPort>& ports = {},
                         const std::vector<Mekto::ModuleType>& modules = {}) {
    Mekto::ModuleType result;
    result.name = given("module " + number + " name");
    result.instName = given("module " + number + " instName");
    result.type = given("module " + number + " type");
    result.rtlPort = ports;
    result.module = modules;
    return result;
}

Mekto::RtlPort rtlPort(const std::string& number) {
    return {.name = given("rtlPort " + number + " name"),
            .object = given("rtlPort " + number + " object"),
            .protocol = given("rtlPort " + number + " protocol")};
}

TEST_F(EveryElement, ProjectIsRead) {
    EXPECT_EQ(project.name, given("project name"));
    ASSERT_THAT(project.platform, SizeIs(2));
    EXPECT_EQ(project.platform[1].name, given("platform 2 name"));
}

TEST_F(EveryElement, PlatformIsRead) {
    EXPECT_EQ(platform.vendor, given("platform vendor"));
    EXPECT_EQ(platform.boardid, given("platform boardid"));
    EXPECT_EQ(platform.name, given("platform name"));
    EXPECT_EQ(platform.ipiboard, given("platform ipiboard"));
    EXPECT_EQ(platform.cfplatform, given("platform cfplatform"));
    EXPECT_EQ(platform.featureRomTime, given("platform featureRomTime"));
    EXPECT_THAT(platform.version, ElementsAre(Mekto::Version{.major = given("version major"),
                                                             .minor = given("version minor")}));
    EXPECT_THAT(platform.description, ElementsAre("platform description"));
    EXPECT_THAT(platform.board, SizeIs(1));
    EXPECT_THAT(platform.buildFlow, ElementsAre("platform build_flow"));
    EXPECT_THAT(platform.host,
                ElementsAre(Mekto::Host{.architecture = given("host architecture")}));
    ASSERT_THAT(platform.device, SizeIs(2));
    EXPECT_EQ(platform.device[1].name, given("device 2 name"));
}

TEST_F(EveryElement, BoardIsRead) {
    EXPECT_EQ(board.name, given("board name"));
    EXPECT_EQ(board.vendor, given("board vendor"));
    EXPECT_EQ(board.fpga, given("board fpga"));
    EXPECT_THAT(board.id, ElementsAre(Mekto::Id{.vendor = given("id vendor"),
                                                .device = given("id device"),
                                                .subsystem = given("id subsystem")}));
    EXPECT_THAT(board.buildFlow, ElementsAre("board build_flow"));
}

TEST_F(EveryElement, InterfacesOfABoardAreRead) {
    ASSERT_THAT(board.interfaces, SizeIs(1));
    EXPECT_THAT(board.interfaces[0].interface,
                ElementsAre(Mekto::Interface{.id = given("interface 1 id"),
                                             .name = given("interface 1 name"),
                                             .type = given("interface 1 type")},
                            Mekto::Interface{.id = given("interface 2 id"),
                                             .name = given("interface 2 name"),
                                             .type = given("interface 2 type")}));
}

TEST_F(EveryElement, MemoriesOfABoardAreRead) {
    ASSERT_THAT(board.memories, SizeIs(1));
    EXPECT_THAT(board.memories[0].memory,
                ElementsAre(Mekto::Memory{.name = given("memory 1 name"),
                                          .type = given("memory 1 type"),
                                          .size = given("memory 1 size")},
                            Mekto::Memory{.name = given("memory 2 name"),
                                          .type = given("memory 2 type"),
                                          .size = given("memory 2 size")}));
}

TEST_F(EveryElement, ImagesOfABoardAreRead) {
    ASSERT_THAT(board.images, SizeIs(1));
    EXPECT_THAT(board.images[0].image,
                ElementsAre(Mekto::Image{.name = given("image 1 name"),
                                         .type = given("image 1 type"),
                                         .directory = {"image 1 directory"}},
                            Mekto::Image{.name = given("image 2 name"),
                                         .type = given("image 2 type"),
                                         .directory = {"image 2 directory"}}));
}

TEST_F(EveryElement, DeviceIsRead) {
    EXPECT_EQ(device.name, given("device name"));
    EXPECT_EQ(device.fpgaDevice, given("device fpgaDevice"));
    EXPECT_EQ(device.addrWidth, given("device addrWidth"));
    ASSERT_THAT(device.core, SizeIs(2));
    EXPECT_EQ(device.core[1].name, given("core 2 name"));
    ASSERT_THAT(device.systemClocks, SizeIs(1));
    EXPECT_THAT(device.systemClocks[0].clock,
                ElementsAre(Mekto::Clock{.port = given("system clock 1 port"),
                                         .frequency = given("system clock 1 frequency"),
                                         .name = given("system clock 1 name")},
                            Mekto::Clock{.port = given("system clock 2 port"),
                                         .frequency = given("system clock 2 frequency"),
                                         .name = given("system clock 2 name")}));
}

TEST_F(EveryElement, CoreIsRead) {
    EXPECT_EQ(core.name, given("core name"));
    EXPECT_EQ(core.target, given("core target"));
    EXPECT_EQ(core.type, given("core type"));
    EXPECT_EQ(core.clockFreq, given("core clockFreq"));
    EXPECT_EQ(core.numComputeUnits, given("core numComputeUnits"));
    ASSERT_THAT(core.kernel, SizeIs(2));
    EXPECT_EQ(core.kernel[1].name, given("kernel 2 name"));
    EXPECT_THAT(core.connection,
                ElementsAre(Mekto::Connection{.srcType = given("connection srcType"),
                                              .srcInst = given("connection srcInst"),
                                              .srcPort = given("connection srcPort"),
                                              .dstType = given("connection dstType"),
                                              .dstInst = given("connection dstInst"),
                                              .dstPort = given("connection dstPort")}));
}

TEST_F(EveryElement, KernelClocksOfACoreAreRead) {
    ASSERT_THAT(core.kernelClocks, SizeIs(1));
    EXPECT_THAT(core.kernelClocks[0].clock,
                ElementsAre(Mekto::KernelClocksClock{.port = given("kernel clock 1 port"),
                                                     .frequency = given("kernel clock 1 frequency"),
                                                     .name = given("kernel clock 1 name")},
                            Mekto::KernelClocksClock{.port = given("kernel clock 2 port"),
                                                     .frequency = given("kernel clock 2 frequency"),
                                                     .name = given("kernel clock 2 name")}));
}

TEST_F(EveryElement, MemoriesOfACoreAreRead) {
    using Remap = Mekto::CoreMemoryAddrRemap;
    ASSERT_THAT(core.memories, SizeIs(1));
    EXPECT_THAT(
        core.memories[0].instance,
        ElementsAre(
            Mekto::CoreMemoryInstance{.name = given("core memory 1 name"),
                                      .size = given("core memory 1 size"),
                                      .linkage = given("core memory 1 linkage"),
                                      .addrRemap = {Remap{given("core addrRemap 1 base"),
                                                          given("core addrRemap 1 range")},
                                                    Remap{given("core addrRemap 2 base"),
                                                          given("core addrRemap 2 range")}}},
            Mekto::CoreMemoryInstance{.name = given("core memory 2 name"),
                                      .size = given("core memory 2 size"),
                                      .linkage = given("core memory 2 linkage"),
                                      .addrRemap = {}}));
}

TEST_F(EveryElement, PipesAreRead) {
    ASSERT_THAT(core.pipes, SizeIs(1));
    EXPECT_THAT(core.pipes[0].instance,
                ElementsAre(Mekto::PipeInstance{.name = given("pipe 1 name"),
                                                .width = given("pipe 1 width"),
                                                .depth = given("pipe 1 depth"),
                                                .linkage = given("pipe 1 linkage")},
                            Mekto::PipeInstance{.name = given("pipe 2 name"),
                                                .width = given("pipe 2 width"),
                                                .depth = given("pipe 2 depth"),
                                                .linkage = given("pipe 2 linkage")}));
}

TEST_F(EveryElement, ProfilersAreRead) {
    const Mekto::Slot slot1{given("slot 1 name"), given("slot 1 index"), given("slot 1 type")};
    const Mekto::Slot slot2{given("slot 2 name"), given("slot 2 index"), given("slot 2 type")};
    ASSERT_THAT(core.profilers, SizeIs(1));
    EXPECT_THAT(core.profilers[0].instance,
                ElementsAre(Mekto::ProfilerInstance{.name = given("profiler 1 name"),
                                                    .addrOffset = given("profiler 1 addrOffset"),
                                                    .numSlots = given("profiler 1 numSlots"),
                                                    .useCounters = given("profiler 1 useCounters"),
                                                    .useTrace = given("profiler 1 useTrace"),
                                                    .offloadType = given("profiler 1 offloadType"),
                                                    .slot = {slot1, slot2}},
                            Mekto::ProfilerInstance{.name = given("profiler 2 name"),
                                                    .addrOffset = given("profiler 2 addrOffset"),
                                                    .numSlots = given("profiler 2 numSlots"),
                                                    .useCounters = given("profiler 2 useCounters"),
                                                    .useTrace = given("profiler 2 useTrace"),
                                                    .offloadType = given("profiler 2 offloadType"),
                                                    .slot = {}}));
}

TEST_F(EveryElement, AttributesOfAKernelAreRead) {
    EXPECT_EQ(kernel.name, given("kernel name"));
    EXPECT_EQ(kernel.language, given("kernel language"));
    EXPECT_EQ(kernel.vlnv, given("kernel vlnv"));
    EXPECT_EQ(kernel.attributes, given("kernel attributes"));
    EXPECT_EQ(kernel.hash, given("kernel hash"));
    EXPECT_EQ(kernel.preferredWorkGroupSizeMultiple,
              given("kernel preferredWorkGroupSizeMultiple"));
    EXPECT_EQ(kernel.workGroupSize, given("kernel workGroupSize"));
    EXPECT_EQ(kernel.debug, given("kernel debug"));
    EXPECT_EQ(kernel.interrupt, given("kernel interrupt"));
    EXPECT_EQ(kernel.hwControlProtocol, given("kernel hwControlProtocol"));
    EXPECT_EQ(kernel.countedAutoRestart, given("kernel countedAutoRestart"));
    EXPECT_EQ(kernel.deadlockDetection, given("kernel deadlockDetection"));
    EXPECT_EQ(kernel.mailbox, given("kernel mailbox"));
    EXPECT_EQ(kernel.swReset, given("kernel swReset"));
}

TEST_F(EveryElement, ModulesAreReadWithTheModulesInside) {
    const Mekto::ModuleType inner = module("1.1", {rtlPort("3")}, {module("1.1.1")});
    EXPECT_THAT(kernel.module,
                ElementsAre(module("1", {rtlPort("1"), rtlPort("2")}, {inner, module("1.2")}),
                            module("2")));
}

TEST_F(EveryElement, PortsAreRead) {
    EXPECT_THAT(kernel.port, ElementsAre(Mekto::Port{.name = given("port 1 name"),
                                                     .mode = given("port 1 mode"),
                                                     .range = given("port 1 range"),
                                                     .dataWidth = given("port 1 dataWidth"),
                                                     .portType = given("port 1 portType"),
                                                     .base = given("port 1 base")},
                                         Mekto::Port{.name = given("port 2 name"),
                                                     .mode = given("port 2 mode"),
                                                     .range = given("port 2 range"),
                                                     .dataWidth = given("port 2 dataWidth"),
                                                     .portType = given("port 2 portType"),
                                                     .base = given("port 2 base")}));
}

TEST_F(EveryElement, ArgumentsAreRead) {
    EXPECT_THAT(kernel.arg, ElementsAre(Mekto::Arg{.name = given("arg 1 name"),
                                                   .addressQualifier = given(4294967295U),
                                                   .id = given("arg 1 id"),
                                                   .port = given("arg 1 port"),
                                                   .size = given("arg 1 size"),
                                                   .offset = given("arg 1 offset"),
                                                   .hostOffset = given("arg 1 hostOffset"),
                                                   .hostSize = given("arg 1 hostSize"),
                                                   .type = given("arg 1 type"),
                                                   .memSize = given("arg 1 memSize"),
                                                   .origName = given("arg 1 origName"),
                                                   .origUse = given("arg 1 origUse")},
                                        Mekto::Arg{.name = given("arg 2 name"),
                                                   .addressQualifier = given(1U),
                                                   .id = given("arg 2 id"),
                                                   .port = given("arg 2 port"),
                                                   .size = given("arg 2 size"),
                                                   .offset = given("arg 2 offset"),
                                                   .hostOffset = given("arg 2 hostOffset"),
                                                   .hostSize = given("arg 2 hostSize"),
                                                   .type = given("arg 2 type"),
                                                   .memSize = given("arg 2 memSize"),
                                                   .origName = given("arg 2 origName"),
                                                   .origUse = given("arg 2 origUse")}));
}

TEST_F(EveryElement, WorkGroupSizesAreRead) {
    EXPECT_THAT(kernel.compileWorkGroupSize,
                ElementsAre(Mekto::CompileWorkGroupSize{
                    .x = given("compile x"), .y = given("compile y"), .z = given("compile z")}));
    EXPECT_THAT(kernel.maxWorkGroupSize,
                ElementsAre(Mekto::MaxWorkGroupSize{
                    .x = given("max x"), .y = given("max y"), .z = given("max z")}));
}

TEST_F(EveryElement, StringTableIsRead) {
    ASSERT_THAT(kernel.stringTable, SizeIs(1));
    EXPECT_THAT(kernel.stringTable[0].formatString,
                ElementsAre(Mekto::FormatString{.id = given("format_string 1 id"),
                                                .value = given("format_string 1 value")},
                            Mekto::FormatString{.id = given("format_string 2 id"),
                                                .value = given("format_string 2 value")}));
}

TEST_F(EveryElement, InstancesOfAKernelAreRead) {
    using Remap = Mekto::AddrRemap;
    EXPECT_THAT(
        kernel.instance,
        ElementsAre(Mekto::Instance{.name = given("kernel instance 1 name"),
                                    .addrRemap = {Remap{.base = given("kernel addrRemap 1 base"),
                                                        .port = given("kernel addrRemap 1 port")},
                                                  Remap{.base = given("kernel addrRemap 2 base"),
                                                        .port = given("kernel addrRemap 2 port")}}},
                    Mekto::Instance{.name = given("kernel instance 2 name"), .addrRemap = {}}));
}

TEST_F(EveryElement, FifosAreRead) {
    ASSERT_THAT(kernel.fifoInformation, SizeIs(1));
    const Mekto::InterfaceList twoInterfaces{.interface = {"Interface 1", "Interface 2"}};
    EXPECT_THAT(kernel.fifoInformation[0].fifoInst,
                ElementsAre(Mekto::FIFOInst{.name = {"FIFO 1 Name"},
                                            .parentInst = {"FIFO 1 ParentInst"},
                                            .staticDepth = {"FIFO 1 StaticDepth"},
                                            .runtimeDepth = {"FIFO 1 RuntimeDepth"},
                                            .interfaceList = {twoInterfaces}},
                            Mekto::FIFOInst{.name = {"FIFO 2 Name"},
                                            .parentInst = {"FIFO 2 ParentInst"},
                                            .staticDepth = {"FIFO 2 StaticDepth"},
                                            .runtimeDepth = {"FIFO 2 RuntimeDepth"},
                                            .interfaceList = {Mekto::InterfaceList{}}}));
}

// Attributes and children

TEST(KernelDescription, HasEmptyAttributesWhereTheDocumentHasNone) {
    const Mekto::Kernel kernel = kernelElementOf("<arg/>");
    EXPECT_FALSE(kernel.name.present);
    EXPECT_EQ(kernel.name.value, "");
    ASSERT_THAT(kernel.arg, SizeIs(1));
    EXPECT_FALSE(kernel.arg[0].type.present);
    EXPECT_EQ(kernel.arg[0].type.value, "");
    EXPECT_FALSE(kernel.arg[0].addressQualifier.present);
    EXPECT_EQ(kernel.arg[0].addressQualifier.value, 0U);
    EXPECT_EQ(kernel.arg[0], Mekto::Arg{});
}

TEST(KernelDescription, TellsAnEmptyAttributeFromNone) {
    const Mekto::Arg empty = kernelElementOf(R"(<arg name="" addressQualifier="0"/>)").arg.at(0);
    EXPECT_EQ(empty.name, given(""));
    EXPECT_EQ(empty.addressQualifier, given(0U));
    EXPECT_NE(empty, Mekto::Arg{});
}

TEST(KernelDescription, HasOnlyTheAttributesThatAreThere) {
    const Mekto::Arg argument = kernelElementOf(R"(<arg type="int" id="3"/>)").arg.at(0);
    Mekto::Arg expected;
    expected.id = given("3");
    expected.type = given("int");
    EXPECT_EQ(argument, expected);
}

TEST(KernelDescription, IsEmptyForAnEmptyRoot) {
    EXPECT_EQ(projectOf("<project/>"), Mekto::Project{});
}

TEST(KernelDescription, KeepsTheOrderOfChildrenOfOneKind) {
    const Mekto::Kernel kernel =
        kernelElementOf(R"(<arg name="c"/><port name="y"/><arg name="a"/><port name="x"/>)"
                        R"(<module name="m"/><arg name="b"/>)");
    EXPECT_THAT(kernel.arg, ElementsAre(testing::Field(&Mekto::Arg::name, given("c")),
                                        testing::Field(&Mekto::Arg::name, given("a")),
                                        testing::Field(&Mekto::Arg::name, given("b"))));
    EXPECT_THAT(kernel.port, ElementsAre(testing::Field(&Mekto::Port::name, given("y")),
                                         testing::Field(&Mekto::Port::name, given("x"))));
    EXPECT_THAT(kernel.module, SizeIs(1));
}

TEST(KernelDescription, ListsElementsTooThatAreExpectedOnce) {
    const Mekto::Platform platform =
        projectOf("<project><platform><description>one</description><host architecture=\"a\"/>"
                  "<description/><host architecture=\"b\"/></platform></project>")
            .platform.at(0);
    EXPECT_THAT(platform.description, ElementsAre("one", ""));
    EXPECT_THAT(platform.host, ElementsAre(Mekto::Host{given("a")}, Mekto::Host{given("b")}));
}

TEST(KernelDescription, TellsNamesApartByTheirCase) {
    EXPECT_THAT(coreOf("<Kernel/><KERNEL/><kernel/>").kernel, SizeIs(1));
    EXPECT_THAT(kernelElementOf("<fifoInformation/><FifoInformation/>").fifoInformation, IsEmpty());
    EXPECT_EQ(kernelElementOf(R"(<arg Name="n" NAME="n" Type="t" origname="o"/>)").arg.at(0),
              Mekto::Arg{});
}

TEST(KernelDescription, TellsTheTwoInterfacesApart) {
    const Mekto::Project project =
        projectOf(R"(<project><platform><board><interfaces><Interface id="upper"/>)"
                  R"(<interface id="lower"/></interfaces></board></platform></project>)");
    EXPECT_THAT(project.platform.at(0).board.at(0).interfaces.at(0).interface,
                ElementsAre(testing::Field(&Mekto::Interface::id, given("lower"))));
    const Mekto::Kernel kernel = kernelElementOf(
        "<FIFOInformation><FIFOInst><InterfaceList><interface>lower</interface>"
        "<Interface>upper</Interface></InterfaceList></FIFOInst></FIFOInformation>");
    EXPECT_THAT(kernel.fifoInformation.at(0).fifoInst.at(0).interfaceList.at(0).interface,
                ElementsAre("upper"));
}

TEST(KernelDescription, TakesTheNameOfAFifoFromItsChildOnly) {
    const Mekto::Kernel kernel =
        kernelElementOf("<FIFOInformation><FIFOInst name=\"a\" Name=\"b\"><name>c</name>"
                        "<Name>d</Name></FIFOInst></FIFOInformation>");
    EXPECT_THAT(kernel.fifoInformation.at(0).fifoInst,
                ElementsAre(Mekto::FIFOInst{.name = {"d"},
                                            .parentInst = {},
                                            .staticDepth = {},
                                            .runtimeDepth = {},
                                            .interfaceList = {}}));
}

TEST(KernelDescription, KeepsManyChildrenThatHaveChildren) {
    std::string content;
    for (int i = 0; i < 1000; ++i) {
        const std::string number = std::to_string(i);
        content.append(R"(<kernel name="k)").append(number).append(R"("><arg name="a)");
        content.append(number).append(R"("/><module><module name="m)").append(number);
        content.append(R"("/></module></kernel>)");
    }
    const Mekto::Core core = coreOf(content);
    ASSERT_THAT(core.kernel, SizeIs(1000));
    for (std::size_t i = 0; i < core.kernel.size(); ++i) {
        const std::string number = std::to_string(i);
        EXPECT_EQ(core.kernel[i].name, given("k" + number));
        EXPECT_EQ(core.kernel[i].arg.at(0).name, given("a" + number));
        EXPECT_EQ(core.kernel[i].module.at(0).module.at(0).name, given("m" + number));
    }
}

// Trees as values

TEST(KernelDescription, IsEqualToItsCopy) {
    const Mekto::Project project = projectOf(everyElementDocument());
    EXPECT_EQ(Mekto::Project(project), project);
}

TEST(KernelDescription, CopyOutlivesTheOriginal) {
    Mekto::Project copy;
    {
        const Mekto::Project project = projectOf(everyElementDocument());
        copy = project;
    }
    EXPECT_EQ(copy, projectOf(everyElementDocument()));
}

/// Changes at every depth of a tree.
const std::vector<std::function<void(Mekto::Project&)>> changes = {
    [](auto& project) { project.name.value = "changed"; },
    [](auto& project) { project.name.present = false; },
    [](auto& project) { project.platform.pop_back(); },
    [](auto& project) { project.platform[0].description[0] += "changed"; },
    [](auto& project) { project.platform[0].board[0].images[0].image[1].directory.clear(); },
    [](auto& project) { project.platform[0].device[0].systemClocks.emplace_back(); },
    [](auto& project) { std::swap(project.platform[0].device[0], project.platform[0].device[1]); },
    [](auto& project) { project.platform[0].device[0].core[0].kernel[0].arg[1].id.value = ""; },
    [](auto& project) {
        project.platform[0].device[0].core[0].kernel[0].arg[0].addressQualifier.value = 2;
    },
    [](auto& project) {
        project.platform[0].device[0].core[0].kernel[0].module[0].module[0].module[0].type.value =
            "changed";
    },
    [](auto& project) {
        project.platform[0].device[0].core[0].kernel[0].module[0].rtlPort[1].object.value += "0";
    }};

TEST(KernelDescription, CopySharesNothingWithTheOriginal) {
    const Mekto::Project project = projectOf(everyElementDocument());
    const Mekto::Project untouched = projectOf(everyElementDocument());
    for (const auto& change : changes) {
        Mekto::Project copy = project;
        change(copy);
        EXPECT_EQ(project, untouched);
    }
}

TEST(KernelDescription, DiffersByAnyPartOfIt) {
    const Mekto::Project project = projectOf(everyElementDocument());
    for (const auto& change : changes) {
        Mekto::Project changed = project;
        change(changed);
        EXPECT_NE(changed, project);
    }
}

/// A module with two inside, one of which has another one inside.
Mekto::ModuleType sampleModule() {
    return module("outer", {rtlPort("1")},
                  {module("a", {rtlPort("2")}, {module("a.a")}), module("b")});
}

TEST(Module, IsEqualToOneOfTheSameParts) {
    EXPECT_EQ(sampleModule(), sampleModule());
    EXPECT_EQ(Mekto::ModuleType(), Mekto::ModuleType());
}

TEST(Module, DiffersByAnyPartOfIt) {
    const std::vector<std::function<void(Mekto::ModuleType&)>> partChanges = {
        [](auto& module) { module.name.value = "x"; },
        [](auto& module) { module.instName.present = false; },
        [](auto& module) { module.type.value = "x"; },
        [](auto& module) { module.rtlPort[0].name.value = "x"; },
        [](auto& module) { module.rtlPort.emplace_back(); },
        [](auto& module) { module.module.pop_back(); },
        [](auto& module) { std::swap(module.module[0], module.module[1]); },
        [](auto& module) { module.module[1].name.value = "x"; },
        [](auto& module) { module.module[0].module[0].instName.value = "x"; },
        [](auto& module) { module.module[0].module.emplace_back(); }};
    for (const auto& change : partChanges) {
        Mekto::ModuleType changed = sampleModule();
        change(changed);
        EXPECT_FALSE(changed == sampleModule());
        EXPECT_FALSE(sampleModule() == changed);
    }
}

TEST(Module, CopySharesNothingWithTheOriginal) {
    const Mekto::ModuleType original = sampleModule();
    Mekto::ModuleType copy(original);
    copy.module[0].module[0].name.value = "changed";
    copy.module[1].module = {module("new")};
    EXPECT_EQ(original, sampleModule());
}

TEST(Module, TakesOnAllOfAnother) {
    Mekto::ModuleType target =
        module("target", {rtlPort("9")}, {module("c"), module("d"), module("e")});
    const Mekto::ModuleType source = sampleModule();
    target = source;
    EXPECT_EQ(target, sampleModule());
    EXPECT_EQ(source, sampleModule());
}

TEST(Module, StaysItselfWhenAssignedToItself) {
    Mekto::ModuleType module = sampleModule();
    const Mekto::ModuleType& same = module;
    module = same;
    EXPECT_EQ(module, sampleModule());
}

TEST(Module, MovesWithAllThatIsInside) {
    Mekto::ModuleType source = sampleModule();
    Mekto::ModuleType made(std::move(source));
    EXPECT_EQ(made, sampleModule());
    Mekto::ModuleType target = module("target");
    target = std::move(made);
    EXPECT_EQ(target, sampleModule());
}

TEST(Module, IsReplacedByACopyOfOneInside) {
    Mekto::ModuleType outer = sampleModule();
    outer = outer.module[0];
    EXPECT_EQ(outer, sampleModule().module[0]);
}

TEST(Module, IsReplacedByOneInside) {
    Mekto::ModuleType outer = sampleModule();
    outer = std::move(outer.module[0]);
    EXPECT_EQ(outer, sampleModule().module[0]);
}

TEST(Module, TakesACopyOfItselfInside) {
    Mekto::ModuleType outer = sampleModule();
    outer.module.push_back(outer);
    ASSERT_THAT(outer.module, SizeIs(3));
    EXPECT_EQ(outer.module[2], sampleModule());
}

std::size_t depthOf(const Mekto::Kernel& kernel) {
    std::size_t depth = 0;
    for (const auto* modules = &kernel.module; !modules->empty();
         modules = &modules->at(0).module) {
        ++depth;
    }
    return depth;
}

TEST(KernelDescription, NestsModulesAMillionDeep) {
    constexpr std::size_t depth = 1'000'000;
    const std::string document = "<project><platform><device><core><kernel>" +
                                 repeated("<module>", depth) + repeated("</module>", depth) +
                                 "</kernel></core></device></platform></project>";
    const Mekto::Project project = projectOf(document);
    Mekto::Project copy = project;
    // Not EXPECT_EQ, which would print both.
    EXPECT_TRUE(copy == project);
    EXPECT_EQ(depthOf(copy.platform.at(0).device.at(0).core.at(0).kernel.at(0)), depth);
    const std::string written = documentOf(copy);
    copy = projectOf(written);
    EXPECT_TRUE(copy == project);
    copy.platform[0].device[0].core[0].kernel[0].module[0].module[0].module.clear();
    EXPECT_FALSE(copy == project);
    copy = project;
    EXPECT_TRUE(copy == project);
}

TEST(KernelDescription, NestsModulesDeepWithOthersBesideThem) {
    constexpr std::size_t depth = 100'000;
    const std::string module = R"(<module name="a"/>)";
    const Mekto::Project project = projectOf("<project><platform><device><core><kernel>" +
                                             repeated(module + R"(<module name="b">)", depth) +
                                             repeated("</module>" + module, depth) +
                                             "</kernel></core></device></platform></project>");
    const auto& modules = project.platform.at(0).device.at(0).core.at(0).kernel.at(0).module;
    EXPECT_EQ(modules.size(), 3U);
    EXPECT_EQ(modules.at(1).module.size(), 3U);
    EXPECT_EQ(modules.at(1).name.value, "b");
    const Mekto::Project copy = project;
    EXPECT_TRUE(copy == project);
}

// Files, streams and texts in memory

const std::string smallDocument = R"(<project name="demo"><platform name="board"/></project>)";

/// A stream buffer that gives its text and then fails, as a disk does.
class BreakingBuffer : public std::streambuf {
public:
    explicit BreakingBuffer(std::string text) : text_(std::move(text)) {
        setg(text_.data(), text_.data(), text_.data() + text_.size());
    }

protected:
    int_type underflow() override { throw std::runtime_error("broken"); }

private:
    std::string text_;
};

struct Files : testing::Test {
    const TemporaryDirectory directory;

    /// Reads a file that cannot be read, and returns what was thrown as text.
    static std::string failureOf(const std::string& path, ErrorCode expected) {
        Mekto::Project project;
        ErrorCode error = ErrorCode::None;
        try {
            project.readFile(path, &error);
        } catch (const lmx60::c_lmx_exception& exception) {
            EXPECT_EQ(exception.code(), expected);
            EXPECT_EQ(error, expected);
            return exception.what();
        }
        ADD_FAILURE() << path << " was read";
        return {};
    }
};

TEST_F(Files, AreReadByTheirPath) {
    Mekto::Project project;
    project.readFile(directory.write("kernel.xml", everyElementDocument()));
    EXPECT_EQ(project, projectOf(everyElementDocument()));
}

TEST_F(Files, MayBePipes) {
    const FifoWithContent pipe(directory.path("pipe"), everyElementDocument());
    Mekto::Project project;
    project.readFile(directory.path("pipe"));
    EXPECT_EQ(project, projectOf(everyElementDocument()));
}

TEST_F(Files, ThatAreMissingCannotBeOpened) {
    const std::string path = directory.path("missing.xml");
    EXPECT_THAT(failureOf(path, ErrorCode::CannotOpen), StartsWith(path + ": "));
}

TEST_F(Files, ThatAreDirectoriesCannotBeRead) {
    const std::string path = directory.path(".");
    EXPECT_THAT(failureOf(path, ErrorCode::CannotRead), StartsWith(path + ": "));
}

TEST_F(Files, ThatAreEmptyAreNotWellFormed) {
    const std::string path = directory.write("kernel.xml", "");
    EXPECT_THAT(failureOf(path, ErrorCode::NotWellFormed), StartsWith(path + ":1:1: "));
}

TEST_F(Files, AreNamedInMessagesWithThePlace) {
    const std::string path =
        directory.write("kernel.xml", "<project>\n  <platform>\n   <device>\n</project>\n");
    EXPECT_THAT(failureOf(path, ErrorCode::NotWellFormed), StartsWith(path + ":4:"));
}

TEST_F(Files, FailWithoutACodeToFillIn) {
    Mekto::Project project;
    EXPECT_THROW(project.readFile(directory.path("missing.xml")), lmx60::c_lmx_exception);
    EXPECT_THROW(project.readFile(directory.path(".")), lmx60::c_lmx_exception);
    EXPECT_THROW(project.readMemory("<project>"), lmx60::c_lmx_exception);
}

TEST_F(Files, ThatAreReadSetTheCodeToNone) {
    Mekto::Project project;
    ErrorCode error = ErrorCode::CannotOpen;
    project.readFile(directory.write("kernel.xml", smallDocument), &error);
    EXPECT_EQ(error, ErrorCode::None);
}

TEST(Streams, AreReadToTheirEnd) {
    std::istringstream stream(smallDocument + "\n<!-- the end -->\n");
    Mekto::Project project;
    ErrorCode error = ErrorCode::CannotOpen;
    project.read(stream, "kernel.xml", &error);
    EXPECT_EQ(project, projectOf(smallDocument));
    EXPECT_EQ(error, ErrorCode::None);
    EXPECT_TRUE(stream.eof());
}

TEST(Streams, AreNamedInMessagesAsTheCallerWants) {
    std::istringstream stream("\n<design/>");
    Mekto::Project project;
    ErrorCode error = ErrorCode::None;
    try {
        project.read(stream, "the input", &error);
        ADD_FAILURE() << "was read";
    } catch (const lmx60::c_lmx_exception& exception) {
        EXPECT_THAT(exception.what(), StartsWith("the input:2:1: "));
    }
    EXPECT_EQ(error, ErrorCode::UnexpectedRoot);
}

TEST(Streams, ThatBreakCannotBeReadThoughTheDocumentWasWhole) {
    BreakingBuffer buffer(smallDocument);
    std::istream stream(&buffer);
    Mekto::Project project;
    ErrorCode error = ErrorCode::None;
    EXPECT_THROW(project.read(stream, "kernel.xml", &error), lmx60::c_lmx_exception);
    EXPECT_EQ(error, ErrorCode::CannotRead);
}

TEST(TextsInMemory, GiveTheirCode) {
    Mekto::Project project;
    ErrorCode error = ErrorCode::CannotOpen;
    project.readMemory(smallDocument, &error);
    EXPECT_EQ(error, ErrorCode::None);
    EXPECT_EQ(project.name, given("demo"));
    EXPECT_THROW(project.readMemory("<project></project", &error), lmx60::c_lmx_reader_exception);
    EXPECT_EQ(error, ErrorCode::NotWellFormed);
}

TEST(TextsInMemory, EndWhereTheyEndAndNotAtAZeroByte) {
    Mekto::Project project;
    EXPECT_THROW(project.readMemory(smallDocument + '\0'), lmx60::c_lmx_reader_exception);
}

TEST(TextsInMemory, LeaveWhatCameBeforeTheFault) {
    Mekto::Project project;
    EXPECT_THROW(project.readMemory(R"(<project name="demo"><platform name="board"></device>)"),
                 lmx60::c_lmx_reader_exception);
    EXPECT_EQ(project.name, given("demo"));
    EXPECT_THAT(project.platform, SizeIs(1));
}

} // namespace

} // namespace consolidator::test
