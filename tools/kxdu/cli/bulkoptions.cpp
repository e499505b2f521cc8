#include "cli/bulkoptions.h"

#include "cli/services.h"
#include "cli/verb.h"

namespace NS_KX::NS_KXDU {

void AddInputFiles(Verb& verb, BulkOptions& options) {
    verb.AddTexts(
        "FILE", "", options.files,
        "Files to read line by line, also compressed by gzip, zstd or xz; standard input when there are none, or "
        "for -. A UTF-8 byte-order mark at the beginning of one is skipped");
}

void AddJobOptions(Verb& verb, BulkOptions& options) {
    constexpr unsigned MOST_JOBS = 256;  // each takes memory
    options.names = {"kxdu", "-o", "--rejects"};
    verb.AddNumber("-j,--jobs", options.jobs, "Threads; one for each core by default", 1, MOST_JOBS);
    verb.AddFlag("--no-progress", options.isProgressHidden, "No progress bar on the terminal");
}

void AddRunOptions(Verb& verb, BulkOptions& options) {
    verb.AddText("-o,--output", "FILE", options.output,
                 "Write to FILE, which appears when it is complete, and may be an input; .gz and .zst are compressed; "
                 "standard output otherwise");
    AddJobOptions(verb, options);
}

void AddReadingOptions(Verb& verb, ServiceOptions& options) {
    AddConfigOption(verb, options.config);
    verb.AddText("--inventory", "FILE", options.inventory,
                 "Accepted as by all verbs, and not opened: only writing depends on an inventory");
}

void AddFormatOption(Verb& verb, OutputFormat& format, const std::string& standard) {
    verb.AddChoice("--format", format,
                   {{"jsonl", OutputFormat::JSONL},
                    {"csv", OutputFormat::CSV},
                    {"tsv", OutputFormat::TSV},
                    {"table", OutputFormat::TABLE}},
                   "Format of the output: jsonl, csv, tsv or table; " + standard + " by default");
}

void AddRejectOptions(Verb& verb, BulkOptions& options) {
    verb.AddText("--rejects", "FILE", options.rejects,
                 "Write which lines are reported, and why, to FILE, which may be no file that the run reads or writes "
                 "besides; standard error otherwise");
    verb.AddFlag("--strict", options.isStrict,
                 "Stop at the first line that is reported; the output file then does not appear");
}

}  // namespace NS_KX::NS_KXDU
