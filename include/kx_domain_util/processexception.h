#pragma once

#include <cstdint>
#include <exception>
#include <sstream>

#include <kx_domain_util/export.h>

namespace NS_UTIL {

/// The base of the library's exceptions: a code and four texts, which whoever throws it may fill. The library throws
/// only the derived `InterfaceNotExistException`, with empty texts.
class KX_DOMAIN_UTIL_API ProcessException : public std::exception {
public:
    /// Code 0, empty texts.
    ProcessException();
    /// Copies the code and streams the texts over. This moves the source's read positions to the end, so each text can
    /// be copied only once, and the source is not const.
    ProcessException(ProcessException& other);
    ProcessException& operator=(const ProcessException&) = delete;
    ~ProcessException() override;

    std::uint32_t m_code = 0;
    std::stringstream m_text1;
    std::stringstream m_text2;
    std::stringstream m_text3;
    std::stringstream m_text4;
};

/// Thrown if a service of the management system that an operation needs is not registered, with the code
/// `INTERFACE_NOT_EXIST`.
class KX_DOMAIN_UTIL_API InterfaceNotExistException : public ProcessException {
public:
    /// The code of a missing service.
    static constexpr std::uint32_t INTERFACE_NOT_EXIST = 0x41180004;

    /// Code 0, empty texts.
    InterfaceNotExistException();
    /// Takes over code and texts of `cause`, as a copy does.
    explicit InterfaceNotExistException(ProcessException& cause);
    /// Copies as `ProcessException` does.
    InterfaceNotExistException(InterfaceNotExistException& other);
    InterfaceNotExistException& operator=(const InterfaceNotExistException&) = delete;
    ~InterfaceNotExistException() override;
};

}  // namespace NS_UTIL
