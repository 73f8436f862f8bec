#include "tests/support/DriverRun.h"

#include "driver/Driver.h"
#include "tests/support/ArgumentVector.h"

#include <sstream>
#include <utility>

namespace consolidator::test {

int runDriver(std::vector<std::string> words, std::ostream& out, std::ostream& err) {
    words.insert(words.begin(), "consolidator");
    const ArgumentVector vector(std::move(words));
    return run(vector.count(), vector.pointers(), out, err);
}

CommandResult runDriver(std::vector<std::string> words) {
    std::ostringstream out;
    std::ostringstream err;
    const int status = runDriver(std::move(words), out, err);
    return {status, out.str(), err.str()};
}

} // namespace consolidator::test
