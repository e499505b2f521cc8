#pragma once

#include "cli/verbs.h"
#include "lines/lines.h"

namespace NS_KX::NS_KXDU {

class Verb;

/// The exit code of a verb that works on lines.
inline ExitCode ExitCodeOf(const LineCounts& counts) {
    return counts.isFound ? ExitCode::FOUND : ExitCode::OK;
}

/// Adds input files to `verb`, as its positional arguments.
void AddInputFiles(Verb& verb, BulkOptions& options);
/// Adds them as an option, for verbs that have other positional arguments.
void AddInputOption(Verb& verb, BulkOptions& options);
/// Adds `--jobs` and `--no-progress`.
void AddJobOptions(Verb& verb, BulkOptions& options);
/// Adds `--output` besides.
void AddRunOptions(Verb& verb, BulkOptions& options);
/// Adds `--rejects` and `--strict`, for verbs that report beside their output.
void AddRejectOptions(Verb& verb, BulkOptions& options);

}  // namespace NS_KX::NS_KXDU
