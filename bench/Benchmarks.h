// The measured hot paths, by what they work on. Each function registers its benchmarks.
#pragma once

namespace consolidator::bench {

/// Scanning of lines without a net, and matching of nets.
void registerLogicLocations();

/// Adds to a kernel, its binary form and its JSON form.
void registerRecords();

/// Reading of kernel descriptions.
void registerXml();

} // namespace consolidator::bench
