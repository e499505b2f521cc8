#pragma once

#include <kx_domain_util/surroundings.h>

namespace NS_UTIL::NS_FRAME {

/// Answers from the configuration items and services of the management system, anew at each question. The questions to
/// a service throw `InterfaceNotExistException` when it is missing.
class SystemSurroundings final : public Surroundings {
public:
    constexpr SystemSurroundings() = default;
    constexpr ~SystemSurroundings() override {}  // NOLINT(modernize-use-equals-default): too late for g++ 12

    [[nodiscard]] int CarrierProfile() const override;
    int AgentCarrierProfile() const override;
    [[nodiscard]] unsigned short NEType(int neId) const override;
    [[nodiscard]] bool SpellsOutSubSlot(int neId) const override;
    [[nodiscard]] bool IsMdNumberOmitted(int neId) const override;
    [[nodiscard]] bool IsMaNumberOmitted(int neId) const override;
};

/// What `Surroundings::OfSystem` returns. It is never destroyed, since threads may convert while the process ends.
inline constexpr SystemSurroundings SYSTEM;

}  // namespace NS_UTIL::NS_FRAME
