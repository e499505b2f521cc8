#pragma once

#include <string>
#include <string_view>

namespace NS_KX {

/// Throws `Failure` with `Cause::INPUT` if an input that begins with `head` is plainly something else than lines of
/// UTF-8: UTF-16, an archive, a database. The message calls it `name` and says what to do.
void RefuseOtherFile(std::string_view head, const std::string& name);

}  // namespace NS_KX
