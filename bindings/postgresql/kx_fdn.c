/* The functions of the extension as the server calls them. What they answer is computed in answers.cpp; whatever may
 * jump out of a function stands here, where nothing needs a destructor. */
#include <postgres.h> /* the server's other headers need it first */

#include "access/htup_details.h"
#include "answers.h"
#include "fmgr.h"
#include "funcapi.h"
#include "mb/pg_wchar.h"
#include "utils/builtins.h"
#include "utils/jsonb.h"
#include "utils/lsyscache.h"
#include "utils/memutils.h"

PG_MODULE_MAGIC;

/* ---- Memory ------------------------------------------------------------------------------------------------------ */

/* The room is that of a varlena, so that the filled one is an answer without a copy. */
char* KxRoom(size_t size) {
    if (size > MaxAllocSize - VARHDRSZ - 1) {
        return NULL; /* palloc_extended would report this by a jump */
    }
    text* const room = palloc_extended(size + VARHDRSZ + 1, MCXT_ALLOC_NO_OOM);
    if (room == NULL) {
        return NULL;
    }
    SET_VARSIZE(room, size + VARHDRSZ);
    VARDATA(room)[size] = '\0';
    return VARDATA(room);
}

static text* VarlenaOf(char* room) {
    return (text*)(room - VARHDRSZ);
}

/* ---- Arguments ----------------------------------------------------------------------------------------------------
 */

static KxText View(const text* value) {
    const KxText view = {VARDATA_ANY(value), VARSIZE_ANY_EXHDR(value)};
    return view;
}

#define TEXT_ARGUMENT(place) View(PG_GETARG_TEXT_PP(place))

/* The SQL name of the function that is called. */
static const char* NameOf(FunctionCallInfo fcinfo) {
    const char* const name = get_func_name(fcinfo->flinfo->fn_oid);
    return name != NULL ? name : "a function of kx_fdn";
}

/* The text argument at `place` in UTF-8. In a database of encoding SQL_ASCII, which is none, it may be any bytes. */
static KxText Utf8Argument(FunctionCallInfo fcinfo, int place) {
    const KxText given = TEXT_ARGUMENT(place);
    KxText utf8 = given;
    if (GetDatabaseEncoding() != PG_SQL_ASCII) {
        utf8.data = pg_server_to_any(given.data, (int)given.size, PG_UTF8);
        if (utf8.data != given.data) {
            utf8.size = strlen(utf8.data);
        }
    }
    return utf8;
}

/* A UTF-8 text, ended by a NUL, in the encoding of the server. Reports an error if that cannot hold it. */
static char* ServerText(char* utf8) {
    return pg_any_to_server(utf8, (int)strlen(utf8), PG_UTF8);
}

/* ---- Answers ------------------------------------------------------------------------------------------------------
 */

/* Whether the answer is something. Reports an error if it is a failure. */
static bool IsGiven(FunctionCallInfo fcinfo, const KxAnswer* answer) {
    switch (answer->outcome) {
        case KX_ANSWER_GIVEN:
            return true;
        case KX_ANSWER_NONE:
            return false;
        case KX_ANSWER_REFUSED:
            ereport(ERROR, errcode(ERRCODE_INVALID_PARAMETER_VALUE),
                    errmsg("argument \"%s\" of %s: %s", answer->argument, NameOf(fcinfo), answer->text));
        case KX_ANSWER_NO_MEMORY:
            ereport(ERROR, errcode(ERRCODE_OUT_OF_MEMORY), errmsg("%s: out of memory", NameOf(fcinfo)));
        case KX_ANSWER_FAILED:
            break;
    }
    ereport(ERROR, errcode(ERRCODE_INTERNAL_ERROR), errmsg("%s: %s", NameOf(fcinfo), answer->text));
}

static Datum TextDatum(FunctionCallInfo fcinfo, KxAnswer answer) {
    if (!IsGiven(fcinfo, &answer)) {
        PG_RETURN_NULL();
    }
    PG_RETURN_TEXT_P(VarlenaOf(answer.text));
}

static Datum NumberDatum(FunctionCallInfo fcinfo, KxAnswer answer) {
    if (!IsGiven(fcinfo, &answer)) {
        PG_RETURN_NULL();
    }
    PG_RETURN_INT32(answer.number);
}

static Datum TruthDatum(FunctionCallInfo fcinfo, KxAnswer answer) {
    if (!IsGiven(fcinfo, &answer)) {
        PG_RETURN_NULL();
    }
    PG_RETURN_BOOL(answer.number != 0);
}

/* ---- The functions ------------------------------------------------------------------------------------------------
 */

PG_FUNCTION_INFO_V1(fdn_version);
Datum fdn_version(PG_FUNCTION_ARGS) {
    (void)fcinfo;
    PG_RETURN_TEXT_P(cstring_to_text(KX_VERSION));
}

PG_FUNCTION_INFO_V1(fdn_type);
Datum fdn_type(PG_FUNCTION_ARGS) {
    return TextDatum(fcinfo, KxType(TEXT_ARGUMENT(0)));
}

PG_FUNCTION_INFO_V1(fdn_kind);
Datum fdn_kind(PG_FUNCTION_ARGS) {
    return TextDatum(fcinfo, KxKind(TEXT_ARGUMENT(0)));
}

PG_FUNCTION_INFO_V1(fdn_ne);
Datum fdn_ne(PG_FUNCTION_ARGS) {
    return NumberDatum(fcinfo, KxNe(TEXT_ARGUMENT(0)));
}

PG_FUNCTION_INFO_V1(fdn_get);
Datum fdn_get(PG_FUNCTION_ARGS) {
    return TextDatum(fcinfo, KxGet(TEXT_ARGUMENT(0), TEXT_ARGUMENT(1)));
}

PG_FUNCTION_INFO_V1(fdn_number);
Datum fdn_number(PG_FUNCTION_ARGS) {
    return NumberDatum(fcinfo, KxNumber(TEXT_ARGUMENT(0), TEXT_ARGUMENT(1)));
}

PG_FUNCTION_INFO_V1(fdn_field);
Datum fdn_field(PG_FUNCTION_ARGS) {
    const KxAnswer answer = KxField(TEXT_ARGUMENT(0), TEXT_ARGUMENT(1));
    if (!IsGiven(fcinfo, &answer)) {
        PG_RETURN_NULL();
    }
    if (!pg_verifymbstr(answer.text, (int)strlen(answer.text), true)) {
        ereport(ERROR, errcode(ERRCODE_CHARACTER_NOT_IN_REPERTOIRE),
                errmsg("argument \"fdn\" of %s: the field begins or ends inside a character", NameOf(fcinfo)));
    }
    PG_RETURN_TEXT_P(VarlenaOf(answer.text));
}

PG_FUNCTION_INFO_V1(fdn_record);
Datum fdn_record(PG_FUNCTION_ARGS) {
    const KxAnswer answer = KxRecord(Utf8Argument(fcinfo, 0));
    if (!IsGiven(fcinfo, &answer)) {
        PG_RETURN_NULL();
    }
    PG_RETURN_DATUM(DirectFunctionCall1(jsonb_in, CStringGetDatum(ServerText(answer.text))));
}

PG_FUNCTION_INFO_V1(fdn_problem);
Datum fdn_problem(PG_FUNCTION_ARGS) {
    const KxAnswer answer = KxProblem(Utf8Argument(fcinfo, 0));
    if (!IsGiven(fcinfo, &answer)) {
        PG_RETURN_NULL();
    }
    PG_RETURN_TEXT_P(cstring_to_text(ServerText(answer.text)));
}

PG_FUNCTION_INFO_V1(fdn_under);
Datum fdn_under(PG_FUNCTION_ARGS) {
    return TruthDatum(fcinfo, KxUnder(TEXT_ARGUMENT(0), TEXT_ARGUMENT(1)));
}

PG_FUNCTION_INFO_V1(fdn_same);
Datum fdn_same(PG_FUNCTION_ARGS) {
    return TruthDatum(fcinfo, KxSame(TEXT_ARGUMENT(0), TEXT_ARGUMENT(1)));
}

PG_FUNCTION_INFO_V1(fdn_set);
Datum fdn_set(PG_FUNCTION_ARGS) {
    return TextDatum(fcinfo, KxSet(TEXT_ARGUMENT(0), TEXT_ARGUMENT(1), TEXT_ARGUMENT(2)));
}

PG_FUNCTION_INFO_V1(fb_name);
Datum fb_name(PG_FUNCTION_ARGS) {
    return TextDatum(fcinfo, KxFbName(PG_GETARG_INT32(0)));
}

PG_FUNCTION_INFO_V1(fb_level);
Datum fb_level(PG_FUNCTION_ARGS) {
    return NumberDatum(fcinfo, KxFbLevel(PG_GETARG_INT32(0)));
}

/* ---- Ports --------------------------------------------------------------------------------------------------------
 */

/* The columns of the type fdn_port, in its order. */
enum { NE, SHELF, SLOT, SUB_SLOT, PP_TYPE, FB_TYPE, PORT, NAME, IS_LOGICAL, COLUMNS };

/* The row type of the call, looked up at its first row. */
static TupleDesc RowType(FunctionCallInfo fcinfo) {
    if (fcinfo->flinfo->fn_extra == NULL) {
        TupleDesc type = NULL;
        if (get_call_result_type(fcinfo, NULL, &type) != TYPEFUNC_COMPOSITE || type->natts != COLUMNS) {
            ereport(ERROR, errcode(ERRCODE_DATATYPE_MISMATCH),
                    errmsg("%s: the type fdn_port is not that of the extension", NameOf(fcinfo)));
        }
        const MemoryContext before = MemoryContextSwitchTo(fcinfo->flinfo->fn_mcxt);
        fcinfo->flinfo->fn_extra = BlessTupleDesc(CreateTupleDescCopy(type));
        MemoryContextSwitchTo(before);
    }
    return fcinfo->flinfo->fn_extra;
}

PG_FUNCTION_INFO_V1(fdn_port);
Datum fdn_port(PG_FUNCTION_ARGS) {
    KxPort port;
    Datum values[COLUMNS] = {0};
    bool isNull[COLUMNS] = {false};
    const KxAnswer answer = KxReadPort(TEXT_ARGUMENT(0), &port);
    if (!IsGiven(fcinfo, &answer)) {
        PG_RETURN_NULL();
    }
    const int32 numbers[] = {
        [NE] = port.ne,          [SHELF] = port.shelf,    [SLOT] = port.slot, [SUB_SLOT] = port.subSlot,
        [PP_TYPE] = port.ppType, [FB_TYPE] = port.fbType, [PORT] = port.port};
    for (int column = NE; column <= PORT; ++column) {
        values[column] = Int32GetDatum(numbers[column]);
        isNull[column] = numbers[column] == -1;
    }
    isNull[NAME] = port.name == NULL;
    if (port.name != NULL) {
        values[NAME] = PointerGetDatum(VarlenaOf(port.name));
    }
    values[IS_LOGICAL] = BoolGetDatum(port.isLogical);
    PG_RETURN_DATUM(HeapTupleGetDatum(heap_form_tuple(RowType(fcinfo), values, isNull)));
}
