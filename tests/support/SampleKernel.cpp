#include "tests/support/SampleKernel.h"

#include "tests/support/Bytes.h"
#include "tests/support/Conditions.h"

namespace consolidator::test {

Kernel sampleKernel() {
    Kernel kernel;
    kernel.setName("scale_rows");
    kernel.addInstancePath("top/k_1");
    kernel.addInstancePath("top/k_2");
    kernel.setType(KernelType::C);
    kernel.addArgument("in", "in_r", "int*");
    kernel.addArgument("n", "n_r", "int");
    kernel.addVariable("i", "i_reg", "char");
    kernel.addVariable("sum", "sum_reg", "double");
    kernel.addHardwareLocation("/top/k_1/inst/n_r", 1, 4096, 31);
    kernel.addHardwareVariable(HardwareVariable("/top/k_1/inst/in_r"));
    kernel.addBreakableCondition(0, "== $i/kc_start 1'b1");
    kernel.addBreakableCondition(fileLine("s == 1'b1", 12, "scale.cpp"));
    kernel.addBram("buffer_U");
    kernel.addBram("table_U");
    return kernel;
}

std::string sampleRecord() {
    return record({
        .name = "scale_rows",
        .instancePaths = {"top/k_1", "top/k_2"},
        .type = 1,
        .arguments = {variable("in", "in_r", "int*"), variable("n", "n_r", "int")},
        .variables = {variable("i", "i_reg", "char"), variable("sum", "sum_reg", "double")},
        .hardwareVariables = {hardwareVariable("/top/k_1/inst/n_r",
                                               {location(0, 0), location(4096, 31)}),
                              hardwareVariable("/top/k_1/inst/in_r", {})},
        .conditions = {condition(0, "== $i/kc_start 1'b1"),
                       condition("s == 1'b1", 12, "scale.cpp")},
        .brams = {"buffer_U", "table_U"},
    });
}

} // namespace consolidator::test
