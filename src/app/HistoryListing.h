#pragma once

#include <iosfwd>
#include <vector>

#include "app/CommandLine.h"
#include "core/history/HistoryArchive.h"
#include "core/history/HistoryRecord.h"

namespace voltaro {

// Writes the records as --history prints them: text lines, JSON lines or CSV with a header.
void writeHistory(const std::vector<HistoryRecord>& records, const CommandLine& commandLine,
                  std::ostream& out);

// --history: reads the stored records read-only, so it works beside the running application.
// The exit code.
int printHistory(const CommandLine& commandLine, std::ostream& out, std::ostream& err);

// Opens the user's history for the one writer, with why not when it cannot.
HistoryArchive::StoreOpener userHistoryOpener();

}  // namespace voltaro
