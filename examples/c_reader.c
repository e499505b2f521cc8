// prints: NE=12,FR=1,S=3,CP=-1,PP=16|1025|7|GE0/7: port, PortIndex
// prints:   neId 12
// prints:   shelfId 1
// prints:   slotId 3
// prints:   portId 7
// prints:   ppType 16
// prints:   fbType 1025
// prints:   portLabel GE0/7
// prints: NE=5,MD=3|md1,MEP=7: maintenance-end-point, MEPIndex
// prints:   neId 5
// prints:   mdId 3
// prints:   mdName md1
// prints:   mepId 7
// prints: NE=5,XY=1: no kind of identifier ends in the level "XY"
#include <inttypes.h>
#include <kx/kx.h>
#include <stdio.h>
#include <string.h>

/* Prints the fields that say something. */
static void print_fields(const kx_record* record) {
    for (size_t place = 0; place < kx_field_count(record); ++place) {
        const char* name = kx_field_name(record, place);
        int64_t number = 0;
        kx_text text = {NULL, 0};
        if (kx_get_number(record, name, &number) == KX_OK && number != 0 && number != -1) {
            printf("  %s %" PRId64 "\n", name, number);
        } else if (kx_get_text(record, name, &text) == KX_OK && text.size != 0) {
            printf("  %s %.*s\n", name, (int)text.size, text.data);
        }
    }
}

int main(void) {
    static const char* const IDENTIFIERS[] = {"NE=12,FR=1,S=3,CP=-1,PP=16|1025|7|GE0/7", "NE=5,MD=3|md1,MEP=7",
                                              "NE=5,XY=1"};
    kx_record* record = kx_record_new(); /* one for all identifiers: it keeps its memory */
    for (size_t place = 0; place < sizeof IDENTIFIERS / sizeof IDENTIFIERS[0]; ++place) {
        const char* fdn = IDENTIFIERS[place];
        const char* kind = NULL;
        if (kx_decode(record, fdn, strlen(fdn)) != KX_OK) {
            const kx_text error = kx_record_error(record);
            printf("%s: %.*s\n", fdn, (int)error.size, error.data);
            continue;
        }
        kx_kind(fdn, strlen(fdn), &kind);
        printf("%s: %s, %s\n", fdn, kind, kx_record_type(record));
        print_fields(record);
    }
    kx_record_free(record);
    return 0;
}
