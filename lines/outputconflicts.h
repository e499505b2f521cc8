#pragma once

#include "lines/linework.h"

namespace NS_KX {

/// Throws `Failure` with `Cause::INPUT` if an output of the run would replace or change a file that it reads, another
/// output, or a file that the run needs besides.
///
/// The output may replace an input: it takes the input's place after everything is read. The rejected lines may not,
/// and no input may grow while it is read.
void RefuseOutputConflicts(const BulkOptions& options, const LineWork& work);

}  // namespace NS_KX
