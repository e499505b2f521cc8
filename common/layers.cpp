#include <atomic>
#include <map>
#include <utility>

#include <kx_domain_util/utilcommon.h>

#include "common/loadonce.h"
#include "common/tables/bidirfbtype.h"
#include "common/tables/fbtypelevel.h"
#include "common/tables/levelfbtype.h"

namespace NS_UTIL {

namespace {

// What is mapped from key; key itself when nothing is.
template <class Number>
Number FindOrPass(const std::map<Number, Number>& map, Number key) {
    const auto entry = map.find(key);
    return entry != map.end() ? entry->second : key;
}

std::atomic<bool> isBidirBuilt{false};
pthread_rwlock_t bidirLock = PTHREAD_RWLOCK_INITIALIZER;
LockOverFork bidirOverFork;
// Made when the library is loaded, not by a first call, in the middle of which another thread may fork; lives until the
// process ends.
auto& bidirFbTypes = *new std::map<unsigned short, unsigned short>;

[[maybe_unused]] const int atFork =
    pthread_atfork([] { bidirOverFork.BeforeFork(isBidirBuilt, PosixWriteLock{bidirLock}); },
                   [] { bidirOverFork.AfterForkInParent(PosixWriteLock{bidirLock}); },
                   [] { bidirOverFork.AfterForkInChild(PosixWriteLock{bidirLock}); });

const std::map<unsigned short, unsigned short>& BidirFbTypes() {
    LoadOnce(isBidirBuilt, PosixWriteLock{bidirLock}, [] {
        std::map<unsigned short, unsigned short> filled;  // put there whole, or not at all when memory runs out
        for (const BidirFbTypeRow& row : NS_TABLE::BIDIR_FB_TYPES) {
            filled[row.fbType] = row.bidirFbType;
        }
        bidirFbTypes = std::move(filled);
    });
    return bidirFbTypes;
}

}  // namespace

void UtilCommon::InitFbType2ILMap() {
    for (const FbTypeLevelRow& row : NS_TABLE::FB_TYPE_LEVELS) {
        m_mapFbType2IL[row.fbType] = row.level;
    }
}

void UtilCommon::InitIL2FbTypeMap() {
    for (const LevelFbTypeRow& row : NS_TABLE::LEVEL_FB_TYPES) {
        m_mapIL2FbType[row.level] = row.fbType;
    }
}

void UtilCommon::FBType2InterfaceLevel(int& level, const int& fbType) const {
    level = FindOrPass(m_mapFbType2IL, fbType);
}

void UtilCommon::InterfaceLevel2FBType(int& fbType, const int& level) const {
    fbType = FindOrPass(m_mapIL2FbType, level);
}

unsigned short UtilCommon::GetBidirFBType(const unsigned short& fbType) const {
    return FindOrPass(BidirFbTypes(), fbType);
}

}  // namespace NS_UTIL
