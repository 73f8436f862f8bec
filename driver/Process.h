// What the process itself must be set to before a run, so that the run ends with its own messages
// and exit status in whatever state its parent has left the standard streams, limits and signals.
#pragma once

namespace consolidator {

/// Exit status of a run that the machine has no memory for.
inline constexpr int outOfMemoryStatus = 2;

/// To be called first in main(), before any file is opened:
///
/// - A standard stream that is closed is opened on /dev/null. Otherwise the database would become
///   standard output, and messages would be written into it.
/// - A limit on the size of files and a pipe without a reader are failed writes, not signals.
/// - Without memory the process ends at once, with a message and outOfMemoryStatus. An exception
///   would not do: streams catch it and then look as if their input were at its end, and a database
///   without the rest of that input would be written as if nothing had happened. Ending at once
///   leaves a database without its header, which is written last and makes it one.
void prepareProcess();

/// Says that there is no memory and ends the process; needs no memory itself.
[[noreturn]] void endForLackOfMemory();

} // namespace consolidator
