// Looks on while a logic-location file is read, for programs that explain what becomes of it.
#pragma once

#include "model/LogicLocation.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace consolidator {

/// Is told of the lines of a file as their reader, LLFile, understands them: comments, headers and
/// what else is no line about a net never come here. Does nothing by itself.
class LogicLocationObserver {
public:
    /// What a line has set in the registers of the kernels that its net belongs to.
    struct Placement {
        std::string_view net; ///< Without a leading "/" and bit index. Holds during the call.
        std::uint32_t bitIndex;
        LogicLocation location;
        std::uint64_t line;                  ///< Counted from 1.
        std::optional<LogicLocation> before; ///< Where a line before this one has placed the bit.
    };

    LogicLocationObserver() = default;
    virtual ~LogicLocationObserver() = default;
    LogicLocationObserver(const LogicLocationObserver&) = delete;
    LogicLocationObserver& operator=(const LogicLocationObserver&) = delete;

    /// A line names this net, without its leading "/" and bit index; it may belong to no kernel,
    /// and the line may have numbers that cannot be read. Holds during the call. Lines come in
    /// order, each once.
    virtual void netNamed(std::string_view net, std::uint64_t line);

    /// A line has placed a bit. Lines come in order, each once, but up to some dozens of lines
    /// after netNamed() was called for them.
    virtual void bitPlaced(const Placement& placement);
};

inline void LogicLocationObserver::netNamed(std::string_view /*net*/, std::uint64_t /*line*/) {}

inline void LogicLocationObserver::bitPlaced(const Placement& /*placement*/) {}

} // namespace consolidator
