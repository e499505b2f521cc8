/// Bulk work: converts every line of the inputs on all cores and writes the results in the order of the lines. Memory
/// does not grow with the inputs.
#pragma once

#include "lines/linework.h"

namespace NS_KX {

/// Runs the work, and returns how it went. Throws `Failure` as its parts do, and with `Cause::INPUT` if an output would
/// replace a file that is read or written, or if an input is plainly no text. Verbatim work takes any input.
///
/// An exception from a converter ends the run, and so does an input that cannot be read. Standard output has received
/// the results of all earlier lines by then; a named output file does not appear. If an input fails in the middle of a
/// line, the beginning of that line is not converted. A `Failure` of a converter gets "file:line: " before its text.
///
/// On standard error, findings of the same kind are shown a few times; the rest is counted.
///
/// The file of the rejected lines appears however the run ends, unless a signal ends it or the file cannot be written.
LineCounts RunLines(const BulkOptions& options, const LineWork& work);

}  // namespace NS_KX
