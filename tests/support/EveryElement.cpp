#include "tests/support/EveryElement.h"

#include <regex>

namespace consolidator::test {

namespace {

const std::string declaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>";

const std::string boardElement = R"(
      <board name="board name" vendor="board vendor" fpga="board fpga">
        <interfaces>
          <interface id="interface 1 id" name="interface 1 name" type="interface 1 type">
          </interface>
          <interface id="interface 2 id" name="interface 2 name" type="interface 2 type">
          </interface>
        </interfaces>
        <memories>
          <memory name="memory 1 name" type="memory 1 type" size="memory 1 size">
          </memory>
          <memory name="memory 2 name" type="memory 2 type" size="memory 2 size">
          </memory>
        </memories>
        <images>
          <image name="image 1 name" type="image 1 type">
            <directory>image 1 directory</directory>
          </image>
          <image name="image 2 name" type="image 2 type">
            <directory>image 2 directory</directory>
          </image>
        </images>
        <id vendor="id vendor" device="id device" subsystem="id subsystem">
        </id>
        <build_flow>board build_flow</build_flow>
      </board>)";

const std::string moduleAndPortElements = R"(
            <module name="module 1 name" instName="module 1 instName" type="module 1 type">
              <rtlPort name="rtlPort 1 name" object="rtlPort 1 object"
                       protocol="rtlPort 1 protocol">
              </rtlPort>
              <rtlPort name="rtlPort 2 name" object="rtlPort 2 object"
                       protocol="rtlPort 2 protocol">
              </rtlPort>
              <module name="module 1.1 name" instName="module 1.1 instName"
                      type="module 1.1 type">
                <rtlPort name="rtlPort 3 name" object="rtlPort 3 object"
                         protocol="rtlPort 3 protocol">
                </rtlPort>
                <module name="module 1.1.1 name" instName="module 1.1.1 instName"
                        type="module 1.1.1 type">
                </module>
              </module>
              <module name="module 1.2 name" instName="module 1.2 instName"
                      type="module 1.2 type">
              </module>
            </module>
            <module name="module 2 name" instName="module 2 instName" type="module 2 type">
            </module>
            <port name="port 1 name" mode="port 1 mode" range="port 1 range"
                  dataWidth="port 1 dataWidth" portType="port 1 portType" base="port 1 base">
            </port>
            <port name="port 2 name" mode="port 2 mode" range="port 2 range"
                  dataWidth="port 2 dataWidth" portType="port 2 portType" base="port 2 base">
            </port>)";

const std::string argumentElements = R"(
            <arg name="arg 1 name" addressQualifier="4294967295" id="arg 1 id" port="arg 1 port"
                 size="arg 1 size" offset="arg 1 offset" hostOffset="arg 1 hostOffset"
                 hostSize="arg 1 hostSize" type="arg 1 type" memSize="arg 1 memSize"
                 origName="arg 1 origName" origUse="arg 1 origUse">
            </arg>
            <arg name="arg 2 name" addressQualifier="1" id="arg 2 id" port="arg 2 port"
                 size="arg 2 size" offset="arg 2 offset" hostOffset="arg 2 hostOffset"
                 hostSize="arg 2 hostSize" type="arg 2 type" memSize="arg 2 memSize"
                 origName="arg 2 origName" origUse="arg 2 origUse">
            </arg>
            <compileWorkGroupSize x="compile x" y="compile y" z="compile z">
            </compileWorkGroupSize>
            <maxWorkGroupSize x="max x" y="max y" z="max z">
            </maxWorkGroupSize>
            <string_table>
              <format_string id="format_string 1 id" value="format_string 1 value">
              </format_string>
              <format_string id="format_string 2 id" value="format_string 2 value">
              </format_string>
            </string_table>
            <instance name="kernel instance 1 name">
              <addrRemap base="kernel addrRemap 1 base" port="kernel addrRemap 1 port">
              </addrRemap>
              <addrRemap base="kernel addrRemap 2 base" port="kernel addrRemap 2 port">
              </addrRemap>
            </instance>
            <instance name="kernel instance 2 name">
            </instance>)";

const std::string fifoElements = R"(
            <FIFOInformation>
              <FIFOInst>
                <Name>FIFO 1 Name</Name>
                <ParentInst>FIFO 1 ParentInst</ParentInst>
                <StaticDepth>FIFO 1 StaticDepth</StaticDepth>
                <RuntimeDepth>FIFO 1 RuntimeDepth</RuntimeDepth>
                <InterfaceList>
                  <Interface>Interface 1</Interface>
                  <Interface>Interface 2</Interface>
                </InterfaceList>
              </FIFOInst>
              <FIFOInst>
                <Name>FIFO 2 Name</Name>
                <ParentInst>FIFO 2 ParentInst</ParentInst>
                <StaticDepth>FIFO 2 StaticDepth</StaticDepth>
                <RuntimeDepth>FIFO 2 RuntimeDepth</RuntimeDepth>
                <InterfaceList>
                </InterfaceList>
              </FIFOInst>
            </FIFOInformation>)";

const std::string kernelElements = R"(
          <kernel name="kernel name" language="kernel language" vlnv="kernel vlnv"
                  attributes="kernel attributes" hash="kernel hash"
                  preferredWorkGroupSizeMultiple="kernel preferredWorkGroupSizeMultiple"
                  workGroupSize="kernel workGroupSize" debug="kernel debug"
                  interrupt="kernel interrupt" hwControlProtocol="kernel hwControlProtocol"
                  countedAutoRestart="kernel countedAutoRestart"
                  deadlockDetection="kernel deadlockDetection" mailbox="kernel mailbox"
                  swReset="kernel swReset">)" +
                                   moduleAndPortElements + argumentElements + fifoElements + R"(
          </kernel>
          <kernel name="kernel 2 name">
          </kernel>)";

const std::string connectionAndMemoryElements = R"(
          <connection srcType="connection srcType" srcInst="connection srcInst"
                      srcPort="connection srcPort" dstType="connection dstType"
                      dstInst="connection dstInst" dstPort="connection dstPort">
          </connection>
          <memories>
            <instance name="core memory 1 name" size="core memory 1 size"
                      linkage="core memory 1 linkage">
              <addrRemap base="core addrRemap 1 base" range="core addrRemap 1 range">
              </addrRemap>
              <addrRemap base="core addrRemap 2 base" range="core addrRemap 2 range">
              </addrRemap>
            </instance>
            <instance name="core memory 2 name" size="core memory 2 size"
                      linkage="core memory 2 linkage">
            </instance>
          </memories>)";

const std::string pipeAndProfilerElements = R"(
          <pipes>
            <instance name="pipe 1 name" width="pipe 1 width" depth="pipe 1 depth"
                      linkage="pipe 1 linkage">
            </instance>
            <instance name="pipe 2 name" width="pipe 2 width" depth="pipe 2 depth"
                      linkage="pipe 2 linkage">
            </instance>
          </pipes>
          <profilers>
            <instance name="profiler 1 name" addrOffset="profiler 1 addrOffset"
                      numSlots="profiler 1 numSlots" useCounters="profiler 1 useCounters"
                      useTrace="profiler 1 useTrace" offloadType="profiler 1 offloadType">
              <slot name="slot 1 name" index="slot 1 index" type="slot 1 type">
              </slot>
              <slot name="slot 2 name" index="slot 2 index" type="slot 2 type">
              </slot>
            </instance>
            <instance name="profiler 2 name" addrOffset="profiler 2 addrOffset"
                      numSlots="profiler 2 numSlots" useCounters="profiler 2 useCounters"
                      useTrace="profiler 2 useTrace" offloadType="profiler 2 offloadType">
            </instance>
          </profilers>)";

const std::string coreElements = R"(
        <core name="core name" target="core target" type="core type" clockFreq="core clockFreq"
              numComputeUnits="core numComputeUnits">
          <kernelClocks>
            <clock port="kernel clock 1 port" frequency="kernel clock 1 frequency"
                   name="kernel clock 1 name">
            </clock>
            <clock port="kernel clock 2 port" frequency="kernel clock 2 frequency"
                   name="kernel clock 2 name">
            </clock>
          </kernelClocks>)" + kernelElements +
                                 connectionAndMemoryElements + pipeAndProfilerElements + R"(
        </core>
        <core name="core 2 name">
        </core>)";

const std::string deviceElements = R"(
      <device name="device name" fpgaDevice="device fpgaDevice" addrWidth="device addrWidth">
        <systemClocks>
          <clock port="system clock 1 port" frequency="system clock 1 frequency"
                 name="system clock 1 name">
          </clock>
          <clock port="system clock 2 port" frequency="system clock 2 frequency"
                 name="system clock 2 name">
          </clock>
        </systemClocks>)" + coreElements +
                                   R"(
      </device>
      <device name="device 2 name">
      </device>)";

const std::string projectElement = R"(
  <project name="project name">
    <platform vendor="platform vendor" boardid="platform boardid" name="platform name"
              ipiboard="platform ipiboard" cfplatform="platform cfplatform"
              featureRomTime="platform featureRomTime">
      <version major="version major" minor="version minor">
      </version>
      <description>platform description</description>)" +
                                   boardElement + R"(
      <build_flow>platform build_flow</build_flow>
      <host architecture="host architecture">
      </host>)" + deviceElements + R"(
    </platform>
    <platform name="platform 2 name">
    </platform>
  </project>)";

/// The text without the blanks at the start of its lines. A line that begins with an attribute
/// joins the line before.
std::string laidOut(const std::string& text) {
    const std::string joined = std::regex_replace(text, std::regex("\n +([^< ])"), " $1");
    return std::regex_replace(joined, std::regex("\n +"), "\n");
}

/// The text without attributes.
std::string bare(const std::string& text) {
    return std::regex_replace(text, std::regex(" [^\" ]*=\"[^\"]*\""), "");
}

} // namespace

std::string everyElementDocument() {
    return declaration + laidOut(projectElement) + '\n';
}

std::string everyBareElementDocument() {
    return declaration + bare(laidOut(projectElement)) + '\n';
}

} // namespace consolidator::test
