#include <kx_domain_util/processexception.h>

namespace NS_UTIL {

namespace {

void StreamOver(std::stringstream& from, std::stringstream& to) {
    if (from.rdbuf()->in_avail() <= 0) {
        return;  // streaming an empty text would set failbit
    }
    to.exceptions(std::ios::failbit);  // otherwise a text for which there is no memory would be lost silently
    to << from.rdbuf();
    to.exceptions(std::ios::goodbit);
}

}  // namespace

ProcessException::ProcessException() = default;

ProcessException::ProcessException(ProcessException& other) : std::exception(other), m_code(other.m_code) {
    StreamOver(other.m_text1, m_text1);
    StreamOver(other.m_text2, m_text2);
    StreamOver(other.m_text3, m_text3);
    StreamOver(other.m_text4, m_text4);
}

ProcessException::~ProcessException() = default;

InterfaceNotExistException::InterfaceNotExistException() = default;
InterfaceNotExistException::InterfaceNotExistException(ProcessException& cause) : ProcessException(cause) {}
InterfaceNotExistException::InterfaceNotExistException(InterfaceNotExistException& other) = default;
InterfaceNotExistException::~InterfaceNotExistException() = default;

}  // namespace NS_UTIL
