#include "cli/bulkoptions.h"

#include "cli/verb.h"

namespace NS_KX::NS_KXDU {

void AddInputFiles(Verb& verb, BulkOptions& options) {
    verb.AddTexts(
        "FILE", "", options.files,
        "Files to read line by line, also compressed by gzip, zstd or xz; standard input when there are none, or "
        "for -. A UTF-8 byte-order mark at the beginning of one is skipped");
}

void AddInputOption(Verb& verb, BulkOptions& options) {
    verb.AddTexts("-i,--input", "FILE", options.files,
                  "File to read line by line, also compressed by gzip, zstd or xz, once more for each further one; "
                  "standard input when there is none, or for -. A UTF-8 byte-order mark at the beginning is skipped")
        .OneValueEachTime();
}

void AddJobOptions(Verb& verb, BulkOptions& options) {
    constexpr unsigned MOST_JOBS = 256;  // each takes memory
    verb.AddNumber("-j,--jobs", options.jobs, "Threads; one for each core by default", 1, MOST_JOBS);
    verb.AddFlag("--no-progress", options.isProgressHidden, "No progress bar on the terminal");
}

void AddRunOptions(Verb& verb, BulkOptions& options) {
    verb.AddText("-o,--output", "FILE", options.output,
                 "Write to FILE, which appears when it is complete, and may be an input; .gz and .zst are compressed; "
                 "standard output otherwise");
    AddJobOptions(verb, options);
}

void AddRejectOptions(Verb& verb, BulkOptions& options) {
    verb.AddText("--rejects", "FILE", options.rejects,
                 "Write which lines are reported, and why, to FILE, which may be no file that the run reads or writes "
                 "besides; standard error otherwise");
    verb.AddFlag("--strict", options.isStrict,
                 "Stop at the first line that is reported; the output file then does not appear");
}

}  // namespace NS_KX::NS_KXDU
