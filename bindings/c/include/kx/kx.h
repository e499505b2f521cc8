/* The vocabulary of kx_domain_util for programs in C, C11 and later.

       kx_record *record = kx_record_new();
       int64_t slot = 0;
       const char fdn[] = "NE=12,FR=1,S=3,CP=-1,PP=16||7|GE0/7";
       if (kx_decode(record, fdn, sizeof fdn - 1) == KX_OK && kx_get_number(record, "slotId", &slot) == KX_OK)
         printf("slot %lld\n", (long long)slot);
       kx_record_free(record);

   What holds for all functions, unless one says otherwise:

   Texts     A text is a pointer and a number of bytes. It needs no NUL at its end, and it may hold NUL bytes and bytes
             that are not UTF-8: they are bytes like any other. NULL with size 0 is the empty text; NULL with a larger
             size gives KX_BAD_ARGUMENT. Names (types, fields, pieces) are strings that end with a NUL; NULL gives
             KX_BAD_ARGUMENT.
   Outputs   A pointer to an output must not be NULL (KX_BAD_ARGUMENT). A failed call leaves its outputs untouched.
   Records   NULL in the place of a record gives KX_BAD_ARGUMENT. A text that a record gave may be passed back to it.
   Threads   Distinct records may be used by distinct threads, but no two threads may use one record at the same time,
             not even to read its fields. All other functions may be called by any thread.
   Failures  Any function may give KX_NO_MEMORY, and KX_FAILED for a failure that has no status of its own. No C++
             exception leaves a function.
   Services  Reading depends on the text alone. It asks no service of the process, and its carrier profile is 0. Only
             the log service of a management system in the process gets what the readers of OAM identifiers log. */
#ifndef KX_KX_H
#define KX_KX_H

#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif
#ifdef __GNUC__
#pragma GCC visibility push(default)
#endif

/* ---- The library ----------------------------------------------------------------------------------------------- */

/* The version of the library that the program runs with: 0x010000 is 1.0.0. */
uint32_t kx_version(void);

typedef int32_t kx_status;

enum {
    KX_OK = 0,
    KX_UNKNOWN_TYPE,  /* no type has this name, or the last level of the text ends no kind of identifier */
    KX_UNKNOWN_FIELD, /* the record has no field of this name */
    KX_NOT_THERE,     /* the text has no such piece, the table no such row */
    KX_WRONG_TYPE,    /* a number was asked of a text field, or a text of a number field */
    KX_OUT_OF_RANGE,  /* the field cannot hold this number */
    KX_BAD_RECORD,    /* no identifier can be written from this record */
    KX_NO_FACTS,      /* the identifier depends on a fact that is not known */
    KX_NO_MEMORY,
    KX_BAD_ARGUMENT, /* NULL where something is needed, or a piece of no known name */
    KX_FAILED
};

/* What a status means, in a few words; "unknown status" for any other number. Never NULL; lives as long as the
   library. */
const char* kx_status_text(kx_status status);

/* A text that belongs to someone else. It does not end with a NUL. data NULL: not there. */
typedef struct {
    const char* data;
    size_t size;
} kx_text;

/* ---- Records --------------------------------------------------------------------------------------------------- */

/* What an identifier says, field by field. A record holds one type at a time, and nothing at first. Used again and
   again, it allocates nothing once it has room, save for the words of KX_BAD_RECORD and of kx_problem. */
typedef struct kx_record kx_record;

/* NULL: no memory. */
kx_record* kx_record_new(void);

/* NULL: nothing happens. Texts that the record gave are gone. */
void kx_record_free(kx_record* record);

/* Reads an identifier; its last level decides the type. Levels that are missing leave their fields as they are in a
   fresh record. KX_UNKNOWN_TYPE: the last level ends no kind of identifier, as in an empty text. After a failure the
   record holds nothing. */
kx_status kx_decode(kx_record* record, const char* fdn, size_t size);

/* Reads an identifier as the type of this name, whatever its last level. KX_UNKNOWN_TYPE: there is no such type. After
   a failure the record holds nothing. */
kx_status kx_decode_as(kx_record* record, const char* type, const char* fdn, size_t size);

/* Makes the record a fresh one of this type: -1 in numbers of NE, shelf, slot, sub-slot, port and the like,
   otherwise 0, false and the empty text. KX_UNKNOWN_TYPE: there is no such type; the record stays as it is. */
kx_status kx_clear_as(kx_record* record, const char* type);

/* What writers ask; NULL members: not known. A writer that needs a fact which is not known gives KX_NO_FACTS, so most
   identifiers need few facts or none. The functions get the context; they must return, and may be called several times
   for one identifier. */
typedef struct {
    /* The carrier profile switch of the system; 0: none. */
    int32_t carrier_profile;
    /* The NE types whose ports spell out an absent sub-slot, ",SS=-1,SC=-1". A list that is known to be empty is a
       pointer to anything with a count of 0. */
    const uint16_t* sub_slot_ne_types;
    size_t sub_slot_ne_type_count;
    /* Handed to the functions; may be NULL. */
    void* context;
    /* Puts the type of an NE into *type. False: there is no such NE; its type counts as 0. */
    bool (*ne_type)(void* context, int32_t ne, uint16_t* type);
    /* Whether identifiers of this NE leave OAM numbers out. */
    bool (*oam_numbers_omitted)(void* context, int32_t ne);
} kx_facts;

/* Writes the record as an identifier. facts may be NULL: nothing is known, and the carrier profile is 0. *fdn is valid
   until the record's next use. Texts are written as they stand: one with "," or "|" in it reads back as another record.
   KX_BAD_RECORD: the record holds nothing, or its fields contradict the text that it keeps. KX_NO_FACTS: see
   kx_facts. */
kx_status kx_encode(kx_record* record, const kx_facts* facts, kx_text* fdn);

/* The last failure in words, until the next use of the record; data NULL: its last use did not fail, or record is NULL.
   Functions that give no status do not count as a use. */
kx_text kx_record_error(const kx_record* record);

/* The type of the record, as kxdu decode prints it: "PortIndex". NULL: nothing was read yet, or reading failed, or
   record is NULL. Lives as long as the library. */
const char* kx_record_type(const kx_record* record);

/* The number of fields; 0 if the record holds nothing or is NULL. */
size_t kx_field_count(const kx_record* record);

/* The name of a field, places counted from 0: "portId", in a nested record "port.neId". NULL: there is no such place.
   Lives as long as the library. */
const char* kx_field_name(const kx_record* record, size_t place);

typedef enum { KX_NUMBER, KX_FLAG, KX_TEXT } kx_field_kind;

/* What a field holds; KX_NUMBER also where there is no such place. */
kx_field_kind kx_field_type(const kx_record* record, size_t place);

/* Flags are 0 and 1. KX_UNKNOWN_FIELD: the record holds no such field, or nothing at all. KX_WRONG_TYPE: it is a
   text. */
kx_status kx_get_number(const kx_record* record, const char* field, int64_t* number);

/* *text is valid until the record is read, cleared or set again. It is never NULL, but may be empty. KX_UNKNOWN_FIELD:
   the record holds no such field, or nothing at all. KX_WRONG_TYPE: it is a number or a flag. */
kx_status kx_get_text(const kx_record* record, const char* field, kx_text* text);

/* Flags take 0 and 1, numbers 32 bits with sign (KX_OUT_OF_RANGE); neId and tdId of a TDIndex take 64 bits, of which
   kx_encode writes no more than 32. KX_UNKNOWN_FIELD: the record holds no such field, or nothing at all. KX_WRONG_TYPE:
   it is a text. */
kx_status kx_set_number(kx_record* record, const char* field, int64_t number);

/* Copies the text. KX_UNKNOWN_FIELD: the record holds no such field, or nothing at all. KX_WRONG_TYPE: it is a number
   or a flag. */
kx_status kx_set_text(kx_record* record, const char* field, const char* text, size_t size);

/* The names of all types, places counted from 0; NULL: there is no such place. They live as long as the library. */
size_t kx_type_count(void);
const char* kx_type_name(size_t place);

/* ---- Identifiers as texts -------------------------------------------------------------------------------------- */

/* The type of an identifier, as kx_decode finds it: "PortIndex". It lives as long as the library. KX_UNKNOWN_TYPE: the
   last level ends no kind of identifier, as in an empty text. */
kx_status kx_type(const char* fdn, size_t size, const char** type);

/* The word for its kind, the same for all variants of a type: "port". Otherwise as kx_type. */
kx_status kx_kind(const char* fdn, size_t size, const char** kind);

/* A piece of an identifier as it stands there: a level, "NE", or one of its sub-values counted from 0, "PP:2". *text is
   a view of fdn, and may be empty. The first of several levels with the same tag counts. KX_NOT_THERE: there is no such
   level or sub-value. KX_BAD_ARGUMENT: no identifier has a piece of this name. */
kx_status kx_piece(const char* fdn, size_t size, const char* piece, kx_text* text);

/* The same as a number, as the library reads it: characters after the digits are ignored, a text without digits is 0, a
   larger number keeps its low 32 bits. Absent containers and ports are often written as -1, which is given as it is.
   KX_NOT_THERE: there is no such piece, or it is empty. */
kx_status kx_number(const char* fdn, size_t size, const char* piece, int32_t* number);

/* Several pieces at once, found in one pass. Any number of threads may use one plan. */
typedef struct kx_plan kx_plan;

/* Makes a plan for pieces[0] to pieces[count - 1], in this order; the same piece may be there twice. The names are
   copied. pieces may be NULL if count is 0. KX_BAD_ARGUMENT: one of them is NULL, or no identifier has such a piece. */
kx_status kx_plan_new(const char* const* pieces, size_t count, kx_plan** plan);

/* NULL: nothing happens. */
void kx_plan_free(kx_plan* plan);

/* Puts the pieces of an identifier into out[0] to out[count - 1]: views of fdn; data NULL: not there. Allocates
   nothing. KX_BAD_ARGUMENT: plan is NULL, or out is and the plan is not empty. */
kx_status kx_pieces(const kx_plan* plan, const char* fdn, size_t size, kx_text* out);

/* A port, and where it is. */
typedef struct {
    int32_t ne, shelf, slot, sub_slot, pp_type, fb_type, port;
    bool is_logical;
    kx_text name;
} kx_port;

/* Reads any identifier as a port. One that names no port has a port number of -1, and the containers that it has.
   Numbers that are absent are -1. The name is a view of fdn or, if an escape was removed, of room; a room of size bytes
   always suffices. room may be NULL if room_size is 0; KX_BAD_ARGUMENT: the name needs room, and room_size is too
   small. The name's data is NULL if there is no port level ("PP" or "LP") of four sub-values; is_logical is true if
   there is no "PP" level. */
kx_status kx_read_port(const char* fdn, size_t size, kx_port* port, char* room, size_t room_size);

/* Finds the problem at index, from 0, of those that kxdu check --levels-only reports; KX_NOT_THERE after the last.
   *column counts
   bytes, from 1. *problem is valid until the next use of scratch, which otherwise stays the record that it is. */
kx_status kx_problem(kx_record* scratch, const char* fdn, size_t size, size_t index, size_t* column, kx_text* problem);

/* ---- FB types, interface levels, CTP names --------------------------------------------------------------------- */

/* Tables of constants. Their texts live as long as the library. KX_NOT_THERE: the table has no such row. */

/* The name of an FB type: 4151 gives "LAG". Three types share the name "COM". */
kx_status kx_fb_name(int32_t fb_type, const char** name);
/* The interface level on which FBs of this type sit. */
kx_status kx_fb_level(int32_t fb_type, int32_t* level);
/* The bidirectional FB type that an FB type belongs to; a bidirectional one belongs to itself. */
kx_status kx_fb_bidir(int32_t fb_type, int32_t* bidir_fb_type);
/* Whether FBs of this type have a PTN AID. */
bool kx_fb_has_ptn_aid(int32_t fb_type);
/* Whether an FB of this type is a port object. kind matters for the types 2 and 3 only: they are none if it is 3. */
bool kx_fb_is_port_object(int32_t fb_type, int32_t kind);
/* Whether it is the type of a logical port: above 65535. */
bool kx_fb_is_logical_port(int32_t fb_type);

/* The canonical FB type of an interface level. */
kx_status kx_level_fb_type(int32_t level, int32_t* fb_type);
/* The client rate of an interface level: "ODU2". */
kx_status kx_level_rate(int32_t level, const char** rate);
/* The interface level of a client rate, in upper or lower case. */
kx_status kx_rate_level(const char* rate, int32_t* level);

/* The TMF name of a reserved CTP: 65535 gives "E0". */
kx_status kx_ctp_name(int32_t ctp_id, const char** name);
/* The id of the reserved CTP of this TMF name, in upper or lower case. */
kx_status kx_ctp_id(const char* name, int32_t* ctp_id);

/* ---- NE types -------------------------------------------------------------------------------------------------- */

/* What kind of NE an NE type denotes. Four answers are fixed. */

/* 1911, 1912 or 1913. */
bool kx_is_ptn41(uint16_t ne_type);
/* 1335. */
bool kx_is_ptn31(uint16_t ne_type);
/* 1888. */
bool kx_is_ptn470(uint16_t ne_type);
/* One of 1887, 1895, 1908, 1947, 1948, 1971, 1972, 1978, 1982, 1987. */
bool kx_is_klv_by_ne_type(uint16_t ne_type);

/* The others come from lists, one for each domain. They are those of the process: a management system in it has loaded
   them; any other program loads what it needs. A list that no one loaded is empty. */

/* Loads the list of a domain, in place of the one that it had: "router and metro", "transmission", "access", "PTN",
   "PTNDMT", "MSTP", "IPKLV", "KLV6XX", "OTN", "WDM", "OTN_NA", "WDM_NA", "OTN4750NE", "BIGSLOTNE", "ACCBITSNE",
   "MultiShelfTypeNE" or "PTN31". ne_types may be NULL if count is 0. KX_BAD_ARGUMENT: there is no such domain. Call it
   before other threads use the functions below: it is not for use beside them. */
kx_status kx_load_ne_types(const char* domain, const uint16_t* ne_types, size_t count);

bool kx_is_route_ne(uint16_t ne_type);            /* "router and metro" */
bool kx_is_trans_ne(uint16_t ne_type);            /* "transmission" */
bool kx_is_access_ne(uint16_t ne_type);           /* "access" */
bool kx_is_ptn_class_ne(uint16_t ne_type);        /* "PTN" */
bool kx_is_ptn_dmt_ne(uint16_t ne_type);          /* "PTNDMT" */
bool kx_is_ptn_ne(uint16_t ne_type);              /* "PTN" or "PTNDMT" */
bool kx_is_mstp_ne(uint16_t ne_type);             /* "MSTP" */
bool kx_is_ip_mstp_ne(uint16_t ne_type);          /* "MSTP" */
bool kx_is_ip_klv_ne(uint16_t ne_type);           /* "IPKLV" */
bool kx_is_klv600_ne(uint16_t ne_type);           /* "KLV6XX" */
bool kx_is_otn_ne(uint16_t ne_type);              /* "OTN" */
bool kx_is_wdm_ne(uint16_t ne_type);              /* "WDM" */
bool kx_is_otn_na(uint16_t ne_type);              /* "OTN_NA" */
bool kx_is_wdm_na(uint16_t ne_type);              /* "WDM_NA" */
bool kx_is_na_wdm_by_ne_type(uint16_t ne_type);   /* "OTN_NA" or "WDM_NA" */
bool kx_is_otn4750_ne(uint16_t ne_type);          /* "OTN4750NE" */
bool kx_is_big_slot_ne(uint16_t ne_type);         /* "BIGSLOTNE" */
bool kx_is_acc_bits_ne(uint16_t ne_type);         /* "ACCBITSNE" */
bool kx_is_multi_shelf_type_ne(uint16_t ne_type); /* "MultiShelfTypeNE" */

#ifdef __GNUC__
#pragma GCC visibility pop
#endif
#ifdef __cplusplus
}
#endif

#endif
