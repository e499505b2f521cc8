#include "catalogue/record.h"

#include <gtest/gtest.h>

#include <kx_domain_util/domainindex.h>

#include "catalogue/kinds.h"

namespace NS_KX {
namespace {

// The address at which the catalogue expects the field of a record.
template <class Value, class Record>
const Value* Seen(std::string_view type, std::string_view field, const Record& record) {
    return &FindField(*FindKindByType(type), field)->In<Value>(&record);
}

TEST(Record, FieldsAreSeenWhereTheMembersAre) {
    const NS_DOMAIN::PortIndex port;
    EXPECT_EQ(Seen<std::int32_t>("PortIndex", "neId", port), &port.neId);
    EXPECT_EQ(Seen<std::string>("PortIndex", "portLabel", port), &port.portLabel);
    EXPECT_EQ(Seen<bool>("PortIndex", "isLogical", port), &port.isLogical);
}

TEST(Record, FieldsAreSeenInBasesAndNestedRecordsToo) {
    const NS_DOMAIN::MEPIndex mep;
    EXPECT_EQ(Seen<std::int32_t>("MEPIndex", "neId", mep), &mep.neId);
    EXPECT_EQ(Seen<std::int32_t>("MEPIndex", "mepId", mep), &mep.mepId);
    const NS_DOMAIN::CtpKey_T key;
    EXPECT_EQ(Seen<std::int32_t>("CtpKey_T", "port.portId", key), &key.port.portId);
    EXPECT_EQ(Seen<std::string>("CtpKey_T", "fdnText", key), &key.fdnText);
    const NS_DOMAIN::TDIndex descriptor;
    EXPECT_EQ(Seen<std::int64_t>("TDIndex", "tdId", descriptor), &descriptor.tdId);
}

TEST(Record, AFreshRecordKnowsNothing) {
    for (const Kind* const kind : AllKinds()) {
        AnyRecord records;
        void* const record = records.Fresh(kind->layout);
        for (const Field& field : kind->layout.fields) {
            VisitField(field, record, [&]<class Value>(Value& value) {
                EXPECT_EQ(value, field.In<Value>(kind->layout.fresh())) << kind->type << ' ' << field.name;
                value = Value{};
            });
        }
        EXPECT_EQ(records.Fresh(kind->layout), record) << "the same record, used again";
        for (const Field& field : kind->layout.fields) {
            VisitField(field, record, [&]<class Value>(const Value& value) {
                EXPECT_EQ(value, field.In<Value>(kind->layout.fresh())) << kind->type << ' ' << field.name;
            });
        }
    }
}

}  // namespace
}  // namespace NS_KX
