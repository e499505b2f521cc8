#include <algorithm>

#include <kx_domain_util/utilcommon.h>

#include "common/tables/opticalboard.h"

namespace NS_UTIL {

void UtilCommon::InitOpticalBoardList() {
    m_vecOpticalBoard.insert(m_vecOpticalBoard.end(), NS_TABLE::OPTICAL_BOARDS.begin(), NS_TABLE::OPTICAL_BOARDS.end());
}

bool UtilCommon::IsTiRoadmOpticalBoard(unsigned long boardType) const {
    return std::find(m_vecOpticalBoard.begin(), m_vecOpticalBoard.end(), boardType) != m_vecOpticalBoard.end();
}

}  // namespace NS_UTIL
