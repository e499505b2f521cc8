#pragma once

#include <string>
#include <vector>

namespace NS_KXDU {

class Verb;

/// What the user chose for bulk work.
struct BulkOptions {
    std::vector<std::string> files;  ///< none: standard input
    std::string output;              ///< empty: standard output
    std::string rejects;             ///< empty: standard error
    unsigned jobs = 0;               ///< threads; 0: one for each core
    bool isStrict = false;           ///< the first finding ends the run
    bool isProgressHidden = false;   ///< no progress bar, where standard error is a terminal
};

/// Adds input files to `verb`, as its positional arguments.
void AddInputFiles(Verb& verb, BulkOptions& options);
/// Adds them as an option, for verbs that have other positional arguments.
void AddInputOption(Verb& verb, BulkOptions& options);
/// Adds `--output`, `--jobs` and `--no-progress`.
void AddRunOptions(Verb& verb, BulkOptions& options);
/// Adds `--rejects` and `--strict`, for verbs that report beside their output.
void AddRejectOptions(Verb& verb, BulkOptions& options);

}  // namespace NS_KXDU
