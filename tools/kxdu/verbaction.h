#pragma once

#include <memory>
#include <string>
#include <utility>

#include <CLI/CLI.hpp>

#include "verbs.h"

namespace NS_KXDU {

/// Ends what a verb is made of: help stands behind its options, and run with these is what it does.
template <class Options>
void SetAction(CLI::App& verb, Action& action, const std::string& help, std::shared_ptr<Options> options,
               ExitCode (*run)(const Options&)) {
    verb.footer(help);
    verb.callback([&action, run, options = std::move(options)] { action = [run, options] { return run(*options); }; });
}

}  // namespace NS_KXDU
