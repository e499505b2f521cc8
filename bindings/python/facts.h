#pragma once

#include <optional>
#include <unordered_set>

#include <pybind11/pybind11.h>

#include <kx_domain_util/surroundings.h>

namespace NS_KX::NS_PYTHON {

namespace py = pybind11;

/// What writers ask, answered by the caller's Python: a dict, or an object with the same attributes. The caller of a
/// conversion holds the interpreter's lock. What is not known throws the exception NoFacts; what the caller's functions
/// throw passes through.
class Facts final : public NS_UTIL::Surroundings {
public:
    /// `facts` may be None. Throws the exceptions BadArgument, WrongType and OutOfRange.
    explicit Facts(const py::object& facts);

    [[nodiscard]] int CarrierProfile() const override { return m_carrierProfile; }
    [[nodiscard]] unsigned short NEType(int neId) const override;
    [[nodiscard]] bool SpellsOutSubSlot(int neId) const override;
    [[nodiscard]] bool IsMdNumberOmitted(int neId) const override { return AreOamNumbersOmitted(neId); }
    [[nodiscard]] bool IsMaNumberOmitted(int neId) const override { return AreOamNumbersOmitted(neId); }

private:
    [[nodiscard]] bool AreOamNumbersOmitted(int neId) const;

    int m_carrierProfile = 0;
    std::optional<std::unordered_set<unsigned short>> m_subSlotNETypes;
    py::object m_neType;             // none: not known
    py::object m_oamNumbersOmitted;  // none: not known
};

}  // namespace NS_KX::NS_PYTHON
