#include "support/protectedvariables.h"

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <vector>

#include <link.h>
#include <sys/mman.h>
#include <unistd.h>

namespace NS_TEST {

namespace {

struct Pages {
    std::uintptr_t begin;
    std::uintptr_t end;
};

// The pages of a loaded file that `header` describes, outward to whole ones.
Pages PagesOf(const dl_phdr_info& file, const ElfW(Phdr) & header) {
    const auto size = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    const std::uintptr_t begin = file.dlpi_addr + header.p_vaddr;
    return {begin / size * size, (begin + header.p_memsz + size - 1) / size * size};
}

// Adds the pages with the variables of a library of this project. Those that the loader wrote and closed stay closed.
int AddPages(dl_phdr_info* file, std::size_t /*size*/, void* pages) {
    if (std::string_view(file->dlpi_name).find("/libkx_") == std::string_view::npos) {
        return 0;
    }
    Pages variables{};
    std::uintptr_t closed = 0;
    for (ElfW(Half) index = 0; index < file->dlpi_phnum; ++index) {
        const ElfW(Phdr)& header = file->dlpi_phdr[index];
        if (header.p_type == PT_LOAD && (header.p_flags & PF_W) != 0) {
            variables = PagesOf(*file, header);
        } else if (header.p_type == PT_GNU_RELRO) {
            const auto size = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
            closed = (file->dlpi_addr + header.p_vaddr + header.p_memsz) / size * size;
        }
    }
    variables.begin = std::max(variables.begin, closed);
    if (variables.begin < variables.end) {
        static_cast<std::vector<Pages>*>(pages)->push_back(variables);
    }
    return 0;
}

const std::vector<Pages>& AllPages() {
    static const std::vector<Pages> pages = [] {
        std::vector<Pages> found;
        dl_iterate_phdr(AddPages, &found);
        return found;
    }();
    return pages;
}

void Allow(int access) {
    for (const Pages& pages : AllPages()) {
        if (mprotect(reinterpret_cast<void*>(pages.begin), pages.end - pages.begin, access) != 0) {
            std::abort();
        }
    }
}

void TellOfWrite(int /*signal*/) {
    constexpr std::string_view TEXT = "the call writes to a variable that all threads share\n";
    static_cast<void>(write(STDERR_FILENO, TEXT.data(), TEXT.size()));
    _exit(1);
}

}  // namespace

ProtectedVariables::ProtectedVariables() {
    if (AllPages().empty()) {
        std::abort();  // nothing would be noticed
    }
    static_cast<void>(std::signal(SIGSEGV, TellOfWrite));
    Allow(PROT_READ);
}

ProtectedVariables::~ProtectedVariables() {
    Allow(PROT_READ | PROT_WRITE);
    static_cast<void>(std::signal(SIGSEGV, SIG_DFL));
}

}  // namespace NS_TEST
