#pragma once

#include <string>

#include "cli/verbs.h"
#include "formats/recordformat.h"
#include "lines/linerun.h"

namespace NS_KX::NS_KXDU {

class Verb;
struct ServiceOptions;

/// The exit code of a verb that works on lines.
inline ExitCode ExitCodeOf(const LineCounts& counts) {
    return counts.isFound ? ExitCode::FOUND : ExitCode::OK;
}

/// Adds input files to `verb`, as its positional arguments.
void AddInputFiles(Verb& verb, BulkOptions& options);
/// Adds `--jobs` and `--no-progress`, and names the program and its options for messages.
void AddJobOptions(Verb& verb, BulkOptions& options);
/// Adds `--output` besides.
void AddRunOptions(Verb& verb, BulkOptions& options);
/// Adds `--config`, and `--inventory` for verbs that only read identifiers: they take it as all verbs do, and need
/// none.
void AddReadingOptions(Verb& verb, ServiceOptions& options);
/// Adds `--format`, for verbs that write a line for each identifier. The format is `standard` by default.
void AddFormatOption(Verb& verb, OutputFormat& format, const std::string& standard);
/// Adds `--rejects` and `--strict`, for verbs that report beside their output.
void AddRejectOptions(Verb& verb, BulkOptions& options);

}  // namespace NS_KX::NS_KXDU
