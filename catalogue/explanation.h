/// What an identifier says, piece by piece.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include <kx_standalone/inventoryfile.h>

#include "catalogue/kinds.h"
#include "catalogue/readfields.h"

namespace NS_KX {

/// A piece of an identifier, where in its text it is, and what it means.
struct ExplainedPart {
    std::size_t levelBegin;  ///< of the level that it is in
    std::size_t begin;
    std::size_t size;  ///< may be 0
    std::string meaning;
    std::string caveat;  ///< why it is not what it should be; empty: it is
};

struct Explanation {
    std::string fdn;
    std::string type;                  ///< of the record; empty: none is read from this identifier
    std::vector<ExplainedPart> parts;  ///< in the order of the text
    std::vector<ReadField> fields;     ///< without reserved ones
    std::vector<std::string> notes;    ///< what else is wrong with it
    bool isCanonical = false;          ///< nothing is noted, and the library writes what was read just so
};

/// Explains `fdn` as an identifier of `kind`; null: nothing reads it. The names of NE types are taken from `inventory`,
/// which may be null. The services that readers and writers ask may be missing; a note tells so then.
Explanation Explain(const std::string& fdn, const Kind* kind, const NS_STANDALONE::Inventory* inventory);

/// The explanation as a drawing with a line from each part to its meaning, ended by LF; coloured for a terminal on
/// request. Only the first 200 parts are drawn; a note tells how many more there are.
std::string Draw(const Explanation& explanation, bool isColoured);

}  // namespace NS_KX
