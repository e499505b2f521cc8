#include "lines/terminal.h"

#include <clocale>
#include <cstdlib>

#include <langinfo.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include "text/number.h"

namespace NS_KX {

std::string_view FromEnvironment(const char* variable) {
    const char* const value = std::getenv(variable);  // NOLINT(concurrency-mt-unsafe): the environment stays as it is
    return value == nullptr ? std::string_view() : value;
}

bool IsCapableTerminal(int descriptor) {
    return isatty(descriptor) == 1 && FromEnvironment("TERM") != "dumb";
}

std::size_t ColumnsOf(int descriptor, std::size_t otherwise) {
    if (const auto columns = ReadNumber(FromEnvironment("COLUMNS")); columns && *columns > 0) {
        return static_cast<std::size_t>(*columns);
    }
    winsize size{};
    const bool isKnown = ioctl(descriptor, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return isKnown ? size.ws_col : otherwise;
}

bool IsUtf8Locale() {
    // A locale of its own: the program's stays "C", so that no number is written in another way.
    const locale_t locale = newlocale(LC_CTYPE_MASK, "", nullptr);
    if (locale == nullptr) {
        return false;  // as every program behaves if the locale is not installed
    }
    const bool isUtf8 = std::string_view(nl_langinfo_l(CODESET, locale)) == "UTF-8";
    freelocale(locale);
    return isUtf8;
}

}  // namespace NS_KX
