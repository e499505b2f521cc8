#pragma once

#include <kx_domain_util/export.h>

namespace NS_UTIL {

/// What conversions need from outside the text. Each question is asked only when its answer matters, and where it
/// stands in the order of the work, so that a service that answers sees a fixed sequence of calls.
///
/// This class knows nothing: the carrier profile is 0, and the questions that only writers ask throw
/// `InterfaceNotExistException`. Derive from it to answer; whatever an answer throws propagates to the caller of the
/// conversion, and the output then holds the text written so far.
///
/// Threads: conversions ask from the threads that call them, so one object that several threads use answers them at
/// the same time.
class KX_DOMAIN_UTIL_API Surroundings {
public:
    /// The management system around this process: its configuration items and its inventory service, asked anew at
    /// each question. Lives as long as the library. Throws nothing.
    static const Surroundings& OfSystem() noexcept;

    constexpr Surroundings() = default;
    Surroundings(const Surroundings&) = delete;
    Surroundings& operator=(const Surroundings&) = delete;
    constexpr virtual ~Surroundings() = default;

    /// The carrier profile switch; 0: none. Asked once for each port that is read, and for each port without a slot
    /// that is written.
    [[nodiscard]] virtual int CarrierProfile() const;
    /// The carrier profile switch as the agent's configuration has it. Only the reader of loop-back ports asks, and
    /// only to have asked: the answer changes nothing. By default 0.
    virtual int AgentCarrierProfile() const;

    /// The type of the NE `neId`; 0: the NE is not known.
    [[nodiscard]] virtual unsigned short NEType(int neId) const;
    /// Whether ports of the NE `neId` spell out an absent sub-slot, ",SS=-1,SC=-1".
    [[nodiscard]] virtual bool SpellsOutSubSlot(int neId) const;
    /// Whether MD levels of the NE `neId` are written without their number.
    [[nodiscard]] virtual bool IsMdNumberOmitted(int neId) const;
    /// Whether MA levels of the NE `neId` are written without their number.
    [[nodiscard]] virtual bool IsMaNumberOmitted(int neId) const;
};

/// Surroundings in which one thing is known: the type of the NE in question. A number above 65535 is no NE type and
/// counts as 0.
class KnownNEType final : public Surroundings {
public:
    constexpr explicit KnownNEType(unsigned long neType) noexcept
        : m_neType(neType <= 0xFFFF ? static_cast<unsigned short>(neType) : 0) {}

    [[nodiscard]] unsigned short NEType(int /*neId*/) const noexcept override { return m_neType; }

private:
    unsigned short m_neType;
};

}  // namespace NS_UTIL
