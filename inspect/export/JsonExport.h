// A database as one JSON document, valid whatever the database holds.
//
// In Pretty layout (Compact has the same on one line, without blanks):
//
//     {
//       "format": 1,
//       "version": {
//         "major": 1,
//         "minor": 1
//       },
//       "complete": true,
//       "project": "accelerator",
//       "dwarf": {
//         "size": 38
//       },
//       "kernels": [
//         {
//           "name": "scale_rows",
//           "type": {
//             "number": 4,
//             "name": "HLS"
//           },
//           "instances": [
//             "top/region_0/scale_rows_1"
//           ],
//           "arguments": [
//             {
//               "source": "rows",
//               "hardware": "rows",
//               "type": "unsigned char",
//               "width": 8
//             }
//           ],
//           "variables": [],
//           "registers": [
//             {
//               "net": "/top/region_0/scale_rows_1/U0/rows",
//               "hardware": "rows",
//               "instance": "top/region_0/scale_rows_1",
//               "width": 8,
//               "bits": [
//                 {"bit": 0, "address": 6658, "offset": 0},
//                 …
//               ]
//             }
//           ],
//           "conditions": [
//             {
//               "kind": "start",
//               "condition": "== 1'b1 $i/kc_start"
//             }
//           ],
//           "brams": []
//         }
//       ]
//     }
//
// docs/consolidator-inspect.schema.json describes it in full. Only bits with a location are listed.
// Texts are UTF-8 with U+FFFD in the place of bytes that are not.
#pragma once

#include "query/Database.h"

#include <iosfwd>

namespace consolidator::inspect {

struct JsonOptions {
    enum class Layout { Compact, Pretty };

    Layout layout = Layout::Compact;
    bool withDwarf = false; ///< The DWARF blob's bytes too, as Base64.
};

/// Writes the document and a newline behind it. It goes out as it is made: nothing of it but a
/// block of constant size is ever in memory.
void exportJson(const Database& database, const JsonOptions& options, std::ostream& out);

} // namespace consolidator::inspect
