/* Each function of <kx/kx.h> as a program in C meets it: each status, NULL, no bytes, a NUL inside, records used again.
   Prints what is not as expected; the exit code is the number of such places. */
#include <kx/kx.h>
#include <stdio.h>
#include <string.h>

/* ---- What old programs were compiled with --------------------------------------------------------------------------
 */

_Static_assert(sizeof(kx_status) == 4, "a status is 32 bits");
_Static_assert(KX_OK == 0 && KX_UNKNOWN_TYPE == 1 && KX_UNKNOWN_FIELD == 2 && KX_NOT_THERE == 3 && KX_WRONG_TYPE == 4 &&
                   KX_OUT_OF_RANGE == 5 && KX_BAD_RECORD == 6 && KX_NO_FACTS == 7 && KX_NO_MEMORY == 8 &&
                   KX_BAD_ARGUMENT == 9 && KX_FAILED == 10,
               "a status keeps its number");
_Static_assert(KX_NUMBER == 0 && KX_FLAG == 1 && KX_TEXT == 2, "a kind of field keeps its number");

#define IS_AT(type, member, offset) _Static_assert(offsetof(type, member) == (offset), #type "." #member)

_Static_assert(sizeof(kx_text) == 16, "kx_text");
IS_AT(kx_text, data, 0);
IS_AT(kx_text, size, 8);

_Static_assert(sizeof(kx_facts) == 48, "kx_facts");
IS_AT(kx_facts, carrier_profile, 0);
IS_AT(kx_facts, sub_slot_ne_types, 8);
IS_AT(kx_facts, sub_slot_ne_type_count, 16);
IS_AT(kx_facts, context, 24);
IS_AT(kx_facts, ne_type, 32);
IS_AT(kx_facts, oam_numbers_omitted, 40);

_Static_assert(sizeof(kx_port) == 48, "kx_port");
IS_AT(kx_port, ne, 0);
IS_AT(kx_port, shelf, 4);
IS_AT(kx_port, slot, 8);
IS_AT(kx_port, sub_slot, 12);
IS_AT(kx_port, pp_type, 16);
IS_AT(kx_port, fb_type, 20);
IS_AT(kx_port, port, 24);
IS_AT(kx_port, is_logical, 28);
IS_AT(kx_port, name, 32);

/* ---- Tools ---------------------------------------------------------------------------------------------------------
 */

static int failures = 0;

static void check(bool is_true, const char* what, int line) {
    if (!is_true) {
        printf("c11_test.c:%d: not so: %s\n", line, what);
        ++failures;
    }
}

#define CHECK(condition) check(condition, #condition, __LINE__)
#define SIZED(literal) literal, sizeof(literal) - 1

static bool is_text(kx_text text, const char* expected) {
    return text.data != NULL && text.size == strlen(expected) && memcmp(text.data, expected, text.size) == 0;
}

static bool is_string(const char* string, const char* expected) {
    return string != NULL && strcmp(string, expected) == 0;
}

/* Whether the last failure was told in these words. */
static bool says(const kx_record* record, const char* words) {
    return is_text(kx_record_error(record), words);
}

static bool holds_nothing(const kx_record* record) {
    return kx_record_type(record) == NULL && kx_field_count(record) == 0 && kx_field_name(record, 0) == NULL;
}

static int64_t number_of(const kx_record* record, const char* field) {
    int64_t number = -77;
    CHECK(kx_get_number(record, field, &number) == KX_OK);
    return number;
}

static kx_text text_of(const kx_record* record, const char* field) {
    kx_text text = {NULL, 0};
    CHECK(kx_get_text(record, field, &text) == KX_OK);
    return text;
}

/* An output that no call has touched. */
static const kx_text UNTOUCHED = {"untouched", 9};

static bool is_untouched(kx_text text) {
    return text.data == UNTOUCHED.data && text.size == UNTOUCHED.size;
}

static const char PORT[] = "NE=12,FR=1,S=3,CP=-1,PP=16|1025|7|GE0/7";
static const size_t PORT_SIZE = sizeof PORT - 1;

/* ---- The library ---------------------------------------------------------------------------------------------------
 */

static void test_library(void) {
    CHECK(kx_version() == 0x010000);
    for (kx_status status = KX_OK; status <= KX_FAILED; ++status) {
        CHECK(strlen(kx_status_text(status)) > 0);
        CHECK(strcmp(kx_status_text(status), "unknown status") != 0);
        for (kx_status other = KX_OK; other < status; ++other) {
            CHECK(strcmp(kx_status_text(status), kx_status_text(other)) != 0);
        }
    }
    CHECK(is_string(kx_status_text(KX_FAILED + 1), "unknown status"));
    CHECK(is_string(kx_status_text(-1), "unknown status"));
}

/* ---- Records -------------------------------------------------------------------------------------------------------
 */

static void test_fresh_record(void) {
    kx_record_free(NULL);
    kx_record* record = kx_record_new();
    CHECK(record != NULL);
    CHECK(holds_nothing(record));
    CHECK(kx_record_error(record).data == NULL);
    CHECK(kx_field_type(record, 0) == KX_NUMBER);
    kx_text text = UNTOUCHED;
    int64_t number = 5;
    CHECK(kx_encode(record, NULL, &text) == KX_BAD_RECORD && says(record, "the record holds nothing"));
    CHECK(kx_get_number(record, "neId", &number) == KX_UNKNOWN_FIELD && says(record, "the record holds nothing"));
    CHECK(kx_get_text(record, "portLabel", &text) == KX_UNKNOWN_FIELD);
    CHECK(kx_set_number(record, "neId", 1) == KX_UNKNOWN_FIELD);
    CHECK(kx_set_text(record, "portLabel", SIZED("x")) == KX_UNKNOWN_FIELD);
    CHECK(is_untouched(text) && number == 5);
    kx_record_free(record);
}

static void test_no_record(void) {
    kx_text text = UNTOUCHED;
    int64_t number = 5;
    size_t column = 5;
    CHECK(kx_decode(NULL, PORT, PORT_SIZE) == KX_BAD_ARGUMENT);
    CHECK(kx_decode_as(NULL, "PortIndex", PORT, PORT_SIZE) == KX_BAD_ARGUMENT);
    CHECK(kx_clear_as(NULL, "PortIndex") == KX_BAD_ARGUMENT);
    CHECK(kx_encode(NULL, NULL, &text) == KX_BAD_ARGUMENT);
    CHECK(kx_get_number(NULL, "neId", &number) == KX_BAD_ARGUMENT);
    CHECK(kx_get_text(NULL, "portLabel", &text) == KX_BAD_ARGUMENT);
    CHECK(kx_set_number(NULL, "neId", 1) == KX_BAD_ARGUMENT);
    CHECK(kx_set_text(NULL, "portLabel", SIZED("x")) == KX_BAD_ARGUMENT);
    CHECK(kx_problem(NULL, SIZED(","), 0, &column, &text) == KX_BAD_ARGUMENT);
    CHECK(kx_record_error(NULL).data == NULL && kx_record_error(NULL).size == 0);
    CHECK(holds_nothing(NULL));
    CHECK(kx_field_type(NULL, 0) == KX_NUMBER);
    CHECK(is_untouched(text) && number == 5 && column == 5);
}

static void test_decode(kx_record* record) {
    CHECK(kx_decode(record, PORT, PORT_SIZE) == KX_OK);
    CHECK(is_string(kx_record_type(record), "PortIndex"));
    CHECK(kx_record_error(record).data == NULL);
    CHECK(number_of(record, "neId") == 12 && number_of(record, "portId") == 7 && number_of(record, "isLogical") == 0);
    CHECK(is_text(text_of(record, "portLabel"), "GE0/7"));
    /* Nothing of the record before is left. */
    CHECK(kx_decode(record, SIZED("NE=5,PP=||2|")) == KX_OK);
    CHECK(number_of(record, "shelfId") == -1 && number_of(record, "fbType") == 0);
    CHECK(text_of(record, "portLabel").data != NULL && text_of(record, "portLabel").size == 0);
    /* No type, and no record then. */
    CHECK(kx_decode(record, SIZED("NE=5,XY=1")) == KX_UNKNOWN_TYPE);
    CHECK(says(record, "no kind of identifier ends in the level \"XY\""));
    CHECK(holds_nothing(record));
    CHECK(kx_decode(record, PORT, PORT_SIZE) == KX_OK && kx_record_error(record).data == NULL);
    CHECK(kx_decode(record, "", 0) == KX_UNKNOWN_TYPE && holds_nothing(record));
    CHECK(kx_decode(record, PORT, PORT_SIZE) == KX_OK);
    CHECK(kx_decode(record, NULL, 0) == KX_UNKNOWN_TYPE && holds_nothing(record));
    CHECK(kx_decode(record, PORT, PORT_SIZE) == KX_OK);
    CHECK(kx_decode(record, NULL, 1) == KX_BAD_ARGUMENT && says(record, "fdn is NULL") && holds_nothing(record));
    /* Only the bytes that are given count, a NUL among them. */
    CHECK(kx_decode(record, "NE=5,FR=1", 4) == KX_OK && is_string(kx_record_type(record), "NEIndex"));
    CHECK(kx_decode(record, SIZED("NE=5,PP=||2|a\0b")) == KX_OK);
    CHECK(text_of(record, "portLabel").size == 3 && memcmp(text_of(record, "portLabel").data, "a\0b", 3) == 0);
    CHECK(kx_decode(record, SIZED("NE=5\0,FR=1,FR\0=1")) == KX_UNKNOWN_TYPE);
    CHECK(says(record, "no kind of identifier ends in the level \"FR\\x00\""));
}

static void test_decode_as(kx_record* record) {
    CHECK(kx_decode_as(record, "NEIndex", PORT, PORT_SIZE) == KX_OK);
    CHECK(is_string(kx_record_type(record), "NEIndex") && number_of(record, "neId") == 12);
    CHECK(kx_decode_as(record, "PortIndex:LoopBack", PORT, PORT_SIZE) == KX_OK && number_of(record, "portId") == 7);
    CHECK(kx_decode_as(record, "NEIndex", "", 0) == KX_OK && number_of(record, "neId") == -1);
    CHECK(kx_decode_as(record, "NEIndex", NULL, 0) == KX_OK && number_of(record, "neId") == -1);
    CHECK(kx_decode_as(record, "NEIndex", NULL, 4) == KX_BAD_ARGUMENT && holds_nothing(record));
    CHECK(kx_decode_as(record, "NEIndex", SIZED("NE=5")) == KX_OK);
    CHECK(kx_decode_as(record, "Index", SIZED("NE=5")) == KX_UNKNOWN_TYPE &&
          says(record, "no type is called \"Index\""));
    CHECK(holds_nothing(record));
    CHECK(kx_decode_as(record, NULL, SIZED("NE=5")) == KX_BAD_ARGUMENT && says(record, "type is NULL"));
    /* The name of the type may be the record's own. */
    CHECK(kx_decode(record, SIZED("NE=5")) == KX_OK);
    CHECK(kx_decode_as(record, kx_record_type(record), SIZED("NE=6")) == KX_OK && number_of(record, "neId") == 6);
}

static void test_types(kx_record* record) {
    CHECK(kx_type_count() > 20);
    CHECK(kx_type_name(kx_type_count()) == NULL && kx_type_name(SIZE_MAX) == NULL);
    for (size_t place = 0; place < kx_type_count(); ++place) {
        const char* type = kx_type_name(place);
        CHECK(kx_clear_as(record, type) == KX_OK && is_string(kx_record_type(record), type));
        CHECK(kx_field_count(record) > 0);
        CHECK(kx_field_name(record, kx_field_count(record)) == NULL && kx_field_name(record, SIZE_MAX) == NULL);
        CHECK(kx_field_type(record, kx_field_count(record)) == KX_NUMBER);
        for (size_t field = 0; field < kx_field_count(record); ++field) {
            const char* name = kx_field_name(record, field);
            int64_t number = -77;
            kx_text text = UNTOUCHED;
            if (kx_field_type(record, field) == KX_TEXT) {
                CHECK(kx_get_number(record, name, &number) == KX_WRONG_TYPE && number == -77);
                CHECK(kx_set_number(record, name, 1) == KX_WRONG_TYPE);
                CHECK(kx_get_text(record, name, &text) == KX_OK && text.size == 0);
                CHECK(kx_set_text(record, name, SIZED("a\0b")) == KX_OK);
                CHECK(text_of(record, name).size == 3 && memcmp(text_of(record, name).data, "a\0b", 3) == 0);
                CHECK(kx_set_text(record, name, NULL, 0) == KX_OK && text_of(record, name).size == 0);
                CHECK(kx_set_text(record, name, NULL, 1) == KX_BAD_ARGUMENT && says(record, "text is NULL"));
            } else {
                CHECK(kx_get_text(record, name, &text) == KX_WRONG_TYPE && is_untouched(text));
                CHECK(kx_set_text(record, name, SIZED("1")) == KX_WRONG_TYPE);
                CHECK(kx_get_number(record, name, &number) == KX_OK && (number == 0 || number == -1));
                CHECK(kx_set_number(record, name, 1) == KX_OK && number_of(record, name) == 1);
            }
        }
        CHECK(kx_clear_as(record, type) == KX_OK);
    }
    /* A record that cannot be cleared stays as it is. */
    CHECK(kx_decode(record, SIZED("NE=5")) == KX_OK);
    CHECK(kx_clear_as(record, "Index") == KX_UNKNOWN_TYPE && says(record, "no type is called \"Index\""));
    CHECK(kx_clear_as(record, "") == KX_UNKNOWN_TYPE);
    CHECK(kx_clear_as(record, NULL) == KX_BAD_ARGUMENT);
    CHECK(is_string(kx_record_type(record), "NEIndex") && number_of(record, "neId") == 5);
}

static void test_fields(kx_record* record) {
    int64_t number = -77;
    kx_text text = UNTOUCHED;
    CHECK(kx_clear_as(record, "CtpKey_T") == KX_OK);
    CHECK(kx_set_number(record, "port.portId", 7) == KX_OK && number_of(record, "port.portId") == 7);
    CHECK(kx_clear_as(record, "PortIndex") == KX_OK);
    CHECK(kx_get_number(record, "port", &number) == KX_UNKNOWN_FIELD &&
          says(record, "PortIndex has no field \"port\""));
    CHECK(kx_get_text(record, "", &text) == KX_UNKNOWN_FIELD && kx_get_text(record, NULL, &text) == KX_BAD_ARGUMENT);
    CHECK(kx_get_number(record, "neId", NULL) == KX_BAD_ARGUMENT && says(record, "the output is NULL"));
    CHECK(kx_get_text(record, "portLabel", NULL) == KX_BAD_ARGUMENT);
    CHECK(kx_get_number(record, NULL, &number) == KX_BAD_ARGUMENT && says(record, "field is NULL"));
    CHECK(kx_set_number(record, NULL, 1) == KX_BAD_ARGUMENT && kx_set_text(record, NULL, SIZED("")) == KX_BAD_ARGUMENT);
    CHECK(kx_get_number(record, "portLabel", &number) == KX_WRONG_TYPE &&
          says(record, "field \"portLabel\" is a text"));
    CHECK(kx_get_text(record, "neId", &text) == KX_WRONG_TYPE && says(record, "field \"neId\" is no text"));
    CHECK(number == -77 && is_untouched(text));

    CHECK(kx_set_number(record, "neId", INT32_MAX) == KX_OK && kx_set_number(record, "slotId", INT32_MIN) == KX_OK);
    CHECK(kx_set_number(record, "neId", (int64_t)INT32_MAX + 1) == KX_OUT_OF_RANGE);
    CHECK(says(record, "field \"neId\" is not from -2147483648 to 2147483647: 2147483648"));
    CHECK(kx_set_number(record, "slotId", (int64_t)INT32_MIN - 1) == KX_OUT_OF_RANGE);
    CHECK(number_of(record, "neId") == INT32_MAX && number_of(record, "slotId") == INT32_MIN);
    CHECK(kx_set_number(record, "isLogical", 1) == KX_OK && kx_set_number(record, "isLogical", 2) == KX_OUT_OF_RANGE);
    CHECK(says(record, "field \"isLogical\" is not 0 or 1: 2"));
    CHECK(kx_set_number(record, "isLogical", -1) == KX_OUT_OF_RANGE && number_of(record, "isLogical") == 1);
    CHECK(kx_record_error(record).data == NULL);

    CHECK(kx_clear_as(record, "TDIndex") == KX_OK);
    CHECK(kx_set_number(record, "tdId", INT64_MIN) == KX_OK && number_of(record, "tdId") == INT64_MIN);
}

/* ---- Writing -------------------------------------------------------------------------------------------------------
 */

/* A network in which an NE is 1900 more than its number, and NE 7 leaves OAM numbers out. */
static bool type_of_ne(void* context, int32_t ne, uint16_t* type) {
    ++*(int*)context;
    *type = (uint16_t)(1900 + ne);
    return ne >= 0;
}

static bool omits_oam_numbers(void* context, int32_t ne) {
    ++*(int*)context;
    return ne == 7;
}

static void check_encoded(kx_record* record, const kx_facts* facts, const char* fdn, const char* expected, int line) {
    kx_text text = {NULL, 0};
    check(kx_decode(record, fdn, strlen(fdn)) == KX_OK, fdn, line);
    check(kx_encode(record, facts, &text) == KX_OK, fdn, line);
    check(is_text(text, expected), fdn, line);
}

#define CHECK_ENCODED(facts, fdn, expected) check_encoded(record, facts, fdn, expected, __LINE__)

static void check_facts_missing(kx_record* record, const kx_facts* facts, const char* fdn, const char* words,
                                int line) {
    kx_text text = UNTOUCHED;
    check(kx_decode(record, fdn, strlen(fdn)) == KX_OK, fdn, line);
    check(kx_encode(record, facts, &text) == KX_NO_FACTS, fdn, line);
    check(says(record, words), words, line);
    check(is_untouched(text), "the output is untouched", line);
}

#define CHECK_FACTS_MISSING(facts, fdn, words) check_facts_missing(record, facts, fdn, words, __LINE__)

static void test_encode(kx_record* record) {
    static const uint16_t sub_slot_ne_types[] = {1911, 1912};
    int questions = 0;
    kx_facts facts = {0, sub_slot_ne_types, 2, &questions, type_of_ne, omits_oam_numbers};
    static const char PORT_IN_SLOT[] = "NE=12,FR=1,S=3,CP=-1,PP=16||7|";
    static const char MD[] = "NE=7,MD=3|md1";
    static const char CARD[] = "NE=12,FR=1,S=3,CP=-1";
    CHECK_ENCODED(NULL, "NE=5", "NE=5");
    CHECK_ENCODED(NULL, "NE=5,LP=|65547|3|vlanif", "NE=5,LP=|65547|3|vlanif");
    CHECK_ENCODED(&facts, "NE=5", "NE=5");
    CHECK(questions == 0);
    CHECK_ENCODED(&facts, "NE=5,FR=1,S=3,CP=-1,PP=16||7|", "NE=5,FR=1,S=3,CP=-1,PP=16||7|");
    CHECK_ENCODED(&facts, PORT_IN_SLOT, "NE=12,FR=1,S=3,CP=-1,SS=-1,SC=-1,PP=16||7|");
    CHECK(questions == 2);
    CHECK_ENCODED(&facts, MD, "NE=7,MD=|md1");
    CHECK_ENCODED(&facts, "NE=5,MD=3|md1", "NE=5,MD=3|md1");
    CHECK_ENCODED(&facts, "NE=5,MD=3|md1,MA=4|ma1", "NE=5,MD=3|md1,MA=4|ma1");
    CHECK_ENCODED(&facts, CARD, "NE=12,FR=1,S=3,CP=-1,SS=-1,SC=-1");
    CHECK_ENCODED(&facts, "NE=-3,FR=1,S=3,CP=-1", "NE=-3,FR=1,S=3,CP=-1");

    /* A list that is known to be empty. */
    facts.sub_slot_ne_type_count = 0;
    CHECK_ENCODED(&facts, PORT_IN_SLOT, PORT_IN_SLOT);

    /* The carrier profile. */
    static const char PORT_WITHOUT_SLOT[] = "NE=5,PP=|65547|3|";
    CHECK_ENCODED(&facts, PORT_WITHOUT_SLOT, PORT_WITHOUT_SLOT);
    facts.carrier_profile = 1;
    CHECK_ENCODED(&facts, PORT_WITHOUT_SLOT, "NE=5,S=0,CP=-1,PP=|65547|3|");

    /* Facts that are not known. */
    facts.sub_slot_ne_types = NULL;
    CHECK_FACTS_MISSING(
        &facts, PORT_IN_SLOT,
        "it is not known which NE types spell out absent sub-slots: sub_slot_ne_types of the facts is NULL");
    CHECK_ENCODED(&facts, MD, "NE=7,MD=|md1");
    facts.sub_slot_ne_types = sub_slot_ne_types;
    facts.ne_type = NULL;
    CHECK_FACTS_MISSING(&facts, PORT_IN_SLOT, "the type of NE 12 is not known: ne_type of the facts is NULL");
    CHECK_FACTS_MISSING(&facts, CARD, "the type of NE 12 is not known: ne_type of the facts is NULL");
    facts.oam_numbers_omitted = NULL;
    CHECK_FACTS_MISSING(&facts, MD,
                        "whether NE 7 leaves OAM numbers out is not known: oam_numbers_omitted of the facts is NULL");
    CHECK_FACTS_MISSING(NULL, CARD, "the type of NE 12 is not known: ne_type of the facts is NULL");

    /* A failure leaves the record as it was. */
    CHECK(number_of(record, "slotId") == 3);
    CHECK(kx_encode(record, NULL, NULL) == KX_BAD_ARGUMENT && says(record, "fdn is NULL"));

    /* Records that contradict themselves. */
    kx_text text = UNTOUCHED;
    CHECK(kx_decode(record, SIZED("NE=5,PWE3=3|17")) == KX_OK && kx_set_number(record, "neId", 6) == KX_OK);
    CHECK(kx_encode(record, NULL, &text) == KX_BAD_RECORD && is_untouched(text));
    CHECK(says(record, "the fields say something else than the text that the record keeps, \"NE=5,PWE3=3|17\""));
    CHECK(kx_clear_as(record, "TDIndex") == KX_OK && kx_set_number(record, "tdId", INT64_MAX) == KX_OK);
    CHECK(kx_encode(record, NULL, &text) == KX_BAD_RECORD && is_untouched(text));
}

/* Texts of a record may be given back to it. */
static void test_own_texts(kx_record* record) {
    kx_text text = {NULL, 0};
    CHECK(kx_decode(record, SIZED("NE=5,PWE3=3|17,a long text of a service")) == KX_UNKNOWN_TYPE);
    CHECK(kx_decode(record, SIZED("NE=5,LSP=a name that is a long text")) == KX_OK);
    text = text_of(record, "resId");
    CHECK(kx_decode(record, text.data, text.size) == KX_OK);
    CHECK(is_text(text_of(record, "resId"), "NE=5,LSP=a name that is a long text"));
    CHECK(kx_encode(record, NULL, &text) == KX_OK && kx_decode(record, text.data + 5, text.size - 5) == KX_OK);
    CHECK(is_text(text_of(record, "resId"), "LSP=a name that is a long text"));
    text = text_of(record, "resId");
    CHECK(kx_set_text(record, "resId", text.data + 4, text.size - 4) == KX_OK);
    CHECK(is_text(text_of(record, "resId"), "a name that is a long text"));
    CHECK(kx_decode(record, SIZED("NE=5,XY=1")) == KX_UNKNOWN_TYPE);
    text = kx_record_error(record);
    CHECK(kx_decode_as(record, "ServiceIndex", text.data, text.size) == KX_OK);
    CHECK(is_text(text_of(record, "resId"), "no kind of identifier ends in the level \"XY\""));
}

/* ---- Identifiers as texts ------------------------------------------------------------------------------------------
 */

static void test_type_and_kind(void) {
    const char* word = "untouched";
    CHECK(kx_type(SIZED("NE=5,FR=1,S=3,PP=16||2|"), &word) == KX_OK && is_string(word, "PortIndex:NEType"));
    CHECK(kx_kind(SIZED("NE=5,FR=1,S=3,PP=16||2|"), &word) == KX_OK && is_string(word, "port"));
    CHECK(kx_kind(SIZED("NE=5,MD=1|a,MA=1|b,RMEP=2"), &word) == KX_OK);
    CHECK(is_string(word, "remote-maintenance-end-point"));
    word = "untouched";
    CHECK(kx_type(SIZED("NE=5,XY=1"), &word) == KX_UNKNOWN_TYPE &&
          kx_kind(SIZED("NE=5,XY=1"), &word) == KX_UNKNOWN_TYPE);
    CHECK(kx_type("", 0, &word) == KX_UNKNOWN_TYPE && kx_kind(NULL, 0, &word) == KX_UNKNOWN_TYPE);
    CHECK(kx_type(NULL, 1, &word) == KX_BAD_ARGUMENT && kx_kind(NULL, 1, &word) == KX_BAD_ARGUMENT);
    CHECK(kx_type(SIZED("NE=5"), NULL) == KX_BAD_ARGUMENT && kx_kind(SIZED("NE=5"), NULL) == KX_BAD_ARGUMENT);
    CHECK(kx_type(SIZED("NE\0=5"), &word) == KX_UNKNOWN_TYPE);
    CHECK(is_string(word, "untouched"));
}

static void test_piece(void) {
    kx_text text = {NULL, 0};
    CHECK(kx_piece(PORT, PORT_SIZE, "NE", &text) == KX_OK && text.data == PORT + 3 && text.size == 2);
    CHECK(kx_piece(PORT, PORT_SIZE, "PP:3", &text) == KX_OK && is_text(text, "GE0/7"));
    CHECK(kx_piece(PORT, PORT_SIZE, "PP", &text) == KX_OK && is_text(text, "16|1025|7|GE0/7"));
    CHECK(kx_piece(SIZED("NE=1,NE=2"), "NE", &text) == KX_OK && is_text(text, "1"));
    CHECK(kx_piece(SIZED("NE="), "NE", &text) == KX_OK && text.data != NULL && text.size == 0);
    CHECK(kx_piece(SIZED("NE=5,PP=||2|a\0b"), "PP:3", &text) == KX_OK && text.size == 3);
    text = UNTOUCHED;
    CHECK(kx_piece(PORT, PORT_SIZE, "LP", &text) == KX_NOT_THERE && kx_piece("", 0, "NE", &text) == KX_NOT_THERE);
    CHECK(kx_piece(NULL, 0, "NE", &text) == KX_NOT_THERE && kx_piece(NULL, 1, "NE", &text) == KX_BAD_ARGUMENT);
    CHECK(kx_piece(SIZED("NE=5,PP=16||2"), "PP:3", &text) == KX_NOT_THERE);
    CHECK(kx_piece(PORT, PORT_SIZE, "XY", &text) == KX_BAD_ARGUMENT &&
          kx_piece(PORT, PORT_SIZE, "", &text) == KX_BAD_ARGUMENT);
    CHECK(kx_piece(PORT, PORT_SIZE, "PP:9", &text) == KX_BAD_ARGUMENT);
    CHECK(kx_piece(PORT, PORT_SIZE, "pp", &text) == KX_BAD_ARGUMENT);
    CHECK(kx_piece(PORT, PORT_SIZE, NULL, &text) == KX_BAD_ARGUMENT);
    CHECK(kx_piece(PORT, PORT_SIZE, "NE", NULL) == KX_BAD_ARGUMENT);
    CHECK(is_untouched(text));
}

static void test_number(void) {
    int32_t number = 0;
    CHECK(kx_number(PORT, PORT_SIZE, "NE", &number) == KX_OK && number == 12);
    CHECK(kx_number(PORT, PORT_SIZE, "PP:2", &number) == KX_OK && number == 7);
    CHECK(kx_number(PORT, PORT_SIZE, "PP", &number) == KX_OK && number == 16);
    CHECK(kx_number(PORT, PORT_SIZE, "CP", &number) == KX_OK && number == -1);
    CHECK(kx_number(SIZED("PP=||4294967295|"), "PP:2", &number) == KX_OK && number == -1);
    CHECK(kx_number(SIZED("NE= 7x"), "NE", &number) == KX_OK && number == 7);
    CHECK(kx_number(SIZED("NE=x"), "NE", &number) == KX_OK && number == 0);
    number = 99;
    CHECK(kx_number(SIZED("NE="), "NE", &number) == KX_NOT_THERE && kx_number("", 0, "NE", &number) == KX_NOT_THERE);
    CHECK(kx_number(NULL, 0, "NE", &number) == KX_NOT_THERE && kx_number(NULL, 2, "NE", &number) == KX_BAD_ARGUMENT);
    CHECK(kx_number(PORT, PORT_SIZE, "SS", &number) == KX_NOT_THERE);
    CHECK(kx_number(PORT, PORT_SIZE, "NE:1", &number) == KX_BAD_ARGUMENT);
    CHECK(kx_number(PORT, PORT_SIZE, NULL, &number) == KX_BAD_ARGUMENT);
    CHECK(kx_number(PORT, PORT_SIZE, "NE", NULL) == KX_BAD_ARGUMENT);
    CHECK(number == 99);
}

static void test_plan(void) {
    const char* pieces[] = {"PP:3", "NE", "LP", "NE", "PP:2"};
    kx_text found[5] = {UNTOUCHED, UNTOUCHED, UNTOUCHED, UNTOUCHED, UNTOUCHED};
    kx_plan* plan = NULL;
    CHECK(kx_plan_new(pieces, 5, &plan) == KX_OK && plan != NULL);
    CHECK(kx_pieces(plan, NULL, 1, found) == KX_BAD_ARGUMENT &&
          kx_pieces(plan, PORT, PORT_SIZE, NULL) == KX_BAD_ARGUMENT);
    CHECK(kx_pieces(NULL, PORT, PORT_SIZE, found) == KX_BAD_ARGUMENT);
    CHECK(is_untouched(found[0]) && is_untouched(found[4]));
    CHECK(kx_pieces(plan, PORT, PORT_SIZE, found) == KX_OK);
    CHECK(is_text(found[0], "GE0/7") && is_text(found[1], "12") && is_text(found[3], "12") && is_text(found[4], "7"));
    CHECK(found[2].data == NULL && found[2].size == 0);
    CHECK(kx_pieces(plan, NULL, 0, found) == KX_OK && found[1].data == NULL);
    CHECK(kx_pieces(plan, "", 0, found) == KX_OK && found[1].data == NULL);
    CHECK(kx_pieces(plan, SIZED("NE=\0,LP"), found) == KX_OK && found[1].size == 1 && found[2].data != NULL);
    kx_plan_free(plan);

    /* More pieces than are found in one pass. */
    enum { MANY = 100 };
    const char* many[MANY];
    kx_text all[MANY + 1];
    for (size_t place = 0; place < MANY; ++place) {
        many[place] = pieces[place % 5];
    }
    all[MANY] = UNTOUCHED;
    CHECK(kx_plan_new(many, MANY, &plan) == KX_OK && kx_pieces(plan, PORT, PORT_SIZE, all) == KX_OK);
    CHECK(is_text(all[95], "GE0/7") && is_text(all[99], "7") && all[97].data == NULL && is_untouched(all[MANY]));
    kx_plan_free(plan);

    CHECK(kx_plan_new(NULL, 0, &plan) == KX_OK && kx_pieces(plan, PORT, PORT_SIZE, NULL) == KX_OK);
    kx_plan_free(plan);
    kx_plan* const before = plan;
    CHECK(kx_plan_new(NULL, 1, &plan) == KX_BAD_ARGUMENT && kx_plan_new(pieces, 1, NULL) == KX_BAD_ARGUMENT);
    const char* const unknown[] = {"NE", "XY"};
    const char* const missing[] = {"NE", NULL};
    CHECK(kx_plan_new(unknown, 2, &plan) == KX_BAD_ARGUMENT && kx_plan_new(missing, 2, &plan) == KX_BAD_ARGUMENT);
    CHECK(plan == before);
    kx_plan_free(NULL);
}

static bool is_container(const kx_port* port, int32_t ne, int32_t shelf, int32_t slot, int32_t sub_slot) {
    return port->ne == ne && port->shelf == shelf && port->slot == slot && port->sub_slot == sub_slot;
}

static bool is_no_port(const kx_port* port) {
    return port->pp_type == -1 && port->fb_type == -1 && port->port == -1 && port->name.data == NULL;
}

static void test_read_port(void) {
    kx_port port;
    CHECK(kx_read_port(PORT, PORT_SIZE, &port, NULL, 0) == KX_OK);
    CHECK(is_container(&port, 12, 1, 3, -1));
    CHECK(port.pp_type == 16 && port.fb_type == 1025 && port.port == 7 && !port.is_logical);
    CHECK(is_text(port.name, "GE0/7") && port.name.data == PORT + PORT_SIZE - 5);
    CHECK(kx_read_port(SIZED("NE=5,SS=2,LP=||4294967295|"), &port, NULL, 0) == KX_OK);
    CHECK(is_container(&port, 5, -1, -1, 2) && port.pp_type == -1 && port.fb_type == -1 && port.port == -1);
    CHECK(port.is_logical && port.name.data != NULL && port.name.size == 0);
    CHECK(kx_read_port(SIZED("NE=5,PP=||1|GE0"), &port, NULL, 0) == KX_OK && port.pp_type == 251);
    /* No ports. */
    CHECK(kx_read_port(SIZED("NE=5,FR=1,S=2"), &port, NULL, 0) == KX_OK);
    CHECK(is_container(&port, 5, 1, 2, -1) && is_no_port(&port));
    CHECK(kx_read_port(SIZED("NE=5,PP=16||2"), &port, NULL, 0) == KX_OK && port.ne == 5 && is_no_port(&port));
    CHECK(kx_read_port("", 0, &port, NULL, 0) == KX_OK && is_container(&port, -1, -1, -1, -1) && is_no_port(&port));
    CHECK(kx_read_port(NULL, 0, &port, NULL, 0) == KX_OK && is_no_port(&port));
    CHECK(kx_read_port(SIZED("NE=5,FR=1,S=0,CP=-1,SS=-1,SC=-1,PP=16||0|"), &port, NULL, 0) == KX_OK);
    CHECK(is_container(&port, -1, -1, -1, -1) && port.port == -1 && port.name.size == 0);
    /* An escape in the name. */
    static const char ESCAPED[] = "NE=5,PP=16|1025|1|a long name \\|b";
    char room[sizeof ESCAPED];
    CHECK(kx_read_port(ESCAPED, sizeof ESCAPED - 1, &port, room, sizeof ESCAPED - 1) == KX_OK);
    CHECK(is_text(port.name, "a long name |b") && port.name.data == room);
    CHECK(kx_read_port(ESCAPED, sizeof ESCAPED - 1, &port, room, 14) == KX_OK && is_text(port.name, "a long name |b"));
    port.ne = 99;
    CHECK(kx_read_port(ESCAPED, sizeof ESCAPED - 1, &port, room, 13) == KX_BAD_ARGUMENT);
    CHECK(kx_read_port(ESCAPED, sizeof ESCAPED - 1, &port, NULL, 0) == KX_BAD_ARGUMENT);
    CHECK(kx_read_port(PORT, PORT_SIZE, &port, NULL, 1) == KX_BAD_ARGUMENT);
    CHECK(kx_read_port(NULL, 1, &port, NULL, 0) == KX_BAD_ARGUMENT);
    CHECK(kx_read_port(PORT, PORT_SIZE, NULL, NULL, 0) == KX_BAD_ARGUMENT);
    CHECK(port.ne == 99);
    CHECK(kx_read_port(SIZED("NE=5,PP=16||1|a\0b"), &port, NULL, 0) == KX_OK && port.name.size == 3);
}

static bool has_problem(kx_record* record, const char* fdn, size_t size, size_t index, size_t column,
                        const char* text) {
    size_t found_column = 0;
    kx_text found = {NULL, 0};
    return kx_problem(record, fdn, size, index, &found_column, &found) == KX_OK && found_column == column &&
           is_text(found, text);
}

static void test_problem(kx_record* record) {
    size_t column = 99;
    kx_text text = UNTOUCHED;
    CHECK(kx_decode(record, SIZED("NE=5")) == KX_OK);
    CHECK(kx_problem(record, PORT, PORT_SIZE, 0, &column, &text) == KX_NOT_THERE);
    CHECK(has_problem(record, SIZED("NE=x,FR"), 0, 4, "NE is not a decimal number: \"x\""));
    CHECK(has_problem(record, SIZED("NE=x,FR"), 1, 6, "no \"=\" after \"FR\""));
    CHECK(kx_problem(record, SIZED("NE=x,FR"), 2, &column, &text) == KX_NOT_THERE);
    CHECK(kx_problem(record, SIZED("NE=x,FR"), SIZE_MAX, &column, &text) == KX_NOT_THERE);
    CHECK(has_problem(record, SIZED("NE=5,FR=1,S=3,CP=-1,PP=16||2|,SUBIF"), 0, 31, "no \"=\" after \"SUBIF\""));
    CHECK(has_problem(record, "", 0, 0, 1, "the line is empty") &&
          has_problem(record, NULL, 0, 0, 1, "the line is empty"));
    CHECK(kx_problem(record, "", 0, 1, &column, &text) == KX_NOT_THERE);
    CHECK(has_problem(record, SIZED("NE=5\0,XY"), 0, 5, "NUL byte"));
    CHECK(kx_problem(record, SIZED("NE=5\0,XY"), 1, &column, &text) == KX_NOT_THERE);
    CHECK(has_problem(record, SIZED("NE=\xFF"), 0, 4, "not UTF-8"));
    CHECK(kx_problem(record, NULL, 1, 0, &column, &text) == KX_BAD_ARGUMENT && says(record, "fdn is NULL"));
    CHECK(kx_problem(record, SIZED(","), 0, NULL, &text) == KX_BAD_ARGUMENT && says(record, "column is NULL"));
    CHECK(kx_problem(record, SIZED(","), 0, &column, NULL) == KX_BAD_ARGUMENT && says(record, "problem is NULL"));
    CHECK(column == 99 && is_untouched(text));
    CHECK(is_string(kx_record_type(record), "NEIndex") && number_of(record, "neId") == 5);
}

/* ---- Tables and NE types -------------------------------------------------------------------------------------------
 */

static void test_tables(void) {
    const char* name = NULL;
    int32_t number = 0;
    CHECK(kx_fb_name(4151, &name) == KX_OK && is_string(name, "LAG"));
    CHECK(kx_fb_name(131, &name) == KX_OK && is_string(name, "COM"));
    CHECK(kx_level_rate(12327, &name) == KX_OK && is_string(name, "ODU2"));
    CHECK(kx_rate_level("odu2", &number) == KX_OK && number == 12327);
    CHECK(kx_ctp_name(65535, &name) == KX_OK && is_string(name, "E0"));
    CHECK(kx_ctp_id("E11", &number) == KX_OK && number == 65524);
    CHECK(kx_ctp_id("e11", &number) == KX_OK && number == 65524);
    CHECK(kx_fb_level(4151, &number) == KX_NOT_THERE || number > 0);
    CHECK(kx_fb_is_logical_port(65536) && !kx_fb_is_logical_port(65535));
    CHECK(kx_fb_is_port_object(2, 1) && !kx_fb_is_port_object(2, 3));
    name = "untouched";
    number = 99;
    CHECK(kx_fb_name(-1, &name) == KX_NOT_THERE && kx_level_rate(-1, &name) == KX_NOT_THERE);
    CHECK(kx_ctp_name(1, &name) == KX_NOT_THERE && kx_ctp_id("e10000", &number) == KX_NOT_THERE);
    CHECK(kx_ctp_id("", &number) == KX_NOT_THERE && kx_rate_level("", &number) == KX_NOT_THERE);
    CHECK(kx_fb_level(-1, &number) == KX_NOT_THERE && kx_fb_bidir(-1, &number) == KX_NOT_THERE);
    CHECK(kx_level_fb_type(-1, &number) == KX_NOT_THERE && !kx_fb_has_ptn_aid(-1));
    CHECK(kx_fb_name(4151, NULL) == KX_BAD_ARGUMENT && kx_fb_level(1, NULL) == KX_BAD_ARGUMENT);
    CHECK(kx_fb_bidir(1, NULL) == KX_BAD_ARGUMENT && kx_level_fb_type(1, NULL) == KX_BAD_ARGUMENT);
    CHECK(kx_level_rate(12327, NULL) == KX_BAD_ARGUMENT && kx_rate_level("ODU2", NULL) == KX_BAD_ARGUMENT);
    CHECK(kx_rate_level(NULL, &number) == KX_BAD_ARGUMENT && kx_ctp_name(65535, NULL) == KX_BAD_ARGUMENT);
    CHECK(kx_ctp_id(NULL, &number) == KX_BAD_ARGUMENT && kx_ctp_id("E0", NULL) == KX_BAD_ARGUMENT);
    CHECK(is_string(name, "untouched") && number == 99);
}

typedef struct {
    const char* domain;
    bool (*is_listed[3])(uint16_t ne_type);
} listing;

static void test_ne_types(void) {
    static const listing LISTINGS[] = {{"router and metro", {kx_is_route_ne}},
                                       {"transmission", {kx_is_trans_ne}},
                                       {"access", {kx_is_access_ne}},
                                       {"PTN", {kx_is_ptn_class_ne, kx_is_ptn_ne}},
                                       {"PTNDMT", {kx_is_ptn_dmt_ne, kx_is_ptn_ne}},
                                       {"MSTP", {kx_is_mstp_ne, kx_is_ip_mstp_ne}},
                                       {"IPKLV", {kx_is_ip_klv_ne}},
                                       {"KLV6XX", {kx_is_klv600_ne}},
                                       {"OTN", {kx_is_otn_ne}},
                                       {"WDM", {kx_is_wdm_ne}},
                                       {"OTN_NA", {kx_is_otn_na, kx_is_na_wdm_by_ne_type}},
                                       {"WDM_NA", {kx_is_wdm_na, kx_is_na_wdm_by_ne_type}},
                                       {"OTN4750NE", {kx_is_otn4750_ne}},
                                       {"BIGSLOTNE", {kx_is_big_slot_ne}},
                                       {"ACCBITSNE", {kx_is_acc_bits_ne}},
                                       {"MultiShelfTypeNE", {kx_is_multi_shelf_type_ne}}};
    CHECK(kx_is_ptn41(1911) && kx_is_ptn41(1912) && kx_is_ptn41(1913) && !kx_is_ptn41(1914));
    CHECK(kx_is_ptn31(1335) && !kx_is_ptn31(1336) && kx_is_ptn470(1888) && !kx_is_ptn470(0));
    CHECK(kx_is_klv_by_ne_type(1887) && kx_is_klv_by_ne_type(1987) && !kx_is_klv_by_ne_type(1888));
    /* One list after the other: only its own functions see it. */
    for (size_t loaded = 0; loaded < sizeof LISTINGS / sizeof LISTINGS[0]; ++loaded) {
        const uint16_t types[] = {65535, 7};
        CHECK(kx_load_ne_types(LISTINGS[loaded].domain, types, 2) == KX_OK);
        for (size_t asked = 0; asked < sizeof LISTINGS / sizeof LISTINGS[0]; ++asked) {
            for (size_t place = 0; place < 3 && LISTINGS[asked].is_listed[place] != NULL; ++place) {
                bool (*const is_listed)(uint16_t) = LISTINGS[asked].is_listed[place];
                const bool is_own =
                    is_listed == LISTINGS[loaded].is_listed[0] || is_listed == LISTINGS[loaded].is_listed[1];
                CHECK(is_listed(7) == is_own && is_listed(65535) == is_own && !is_listed(8));
            }
        }
        CHECK(kx_load_ne_types(LISTINGS[loaded].domain, NULL, 0) == KX_OK);
        CHECK(!LISTINGS[loaded].is_listed[0](7));
    }
    const uint16_t type = 5;
    CHECK(kx_load_ne_types("PTN31", &type, 1) == KX_OK && !kx_is_ptn31(5));
    CHECK(kx_load_ne_types("ptn", &type, 1) == KX_BAD_ARGUMENT && kx_load_ne_types("", &type, 1) == KX_BAD_ARGUMENT);
    CHECK(kx_load_ne_types(NULL, &type, 1) == KX_BAD_ARGUMENT && kx_load_ne_types("PTN", NULL, 1) == KX_BAD_ARGUMENT);
}

int main(void) {
    test_library();
    test_fresh_record();
    test_no_record();
    kx_record* record = kx_record_new();
    test_decode(record);
    test_decode_as(record);
    test_types(record);
    test_fields(record);
    test_encode(record);
    test_own_texts(record);
    test_problem(record);
    kx_record_free(record);
    test_type_and_kind();
    test_piece();
    test_number();
    test_plan();
    test_read_port();
    test_tables();
    test_ne_types();
    return failures;
}
