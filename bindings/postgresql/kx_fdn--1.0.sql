\echo Use "CREATE EXTENSION kx_fdn" to load this file. \quit

CREATE FUNCTION fdn_version() RETURNS text
    LANGUAGE c IMMUTABLE STRICT PARALLEL SAFE COST 1 AS 'MODULE_PATHNAME';
COMMENT ON FUNCTION fdn_version() IS 'version of the library that reads identifiers';

-- What an identifier is.

CREATE FUNCTION fdn_type(fdn text) RETURNS text
    LANGUAGE c IMMUTABLE STRICT PARALLEL SAFE COST 5 AS 'MODULE_PATHNAME';
COMMENT ON FUNCTION fdn_type(text) IS 'name of the record that the identifier is read into; NULL for no kind';

CREATE FUNCTION fdn_kind(fdn text) RETURNS text
    LANGUAGE c IMMUTABLE STRICT PARALLEL SAFE COST 5 AS 'MODULE_PATHNAME';
COMMENT ON FUNCTION fdn_kind(text) IS 'what the identifier names, in one word, such as port; NULL for no kind';

CREATE FUNCTION fdn_problem(fdn text) RETURNS text
    LANGUAGE c IMMUTABLE STRICT PARALLEL SAFE COST 20 AS 'MODULE_PATHNAME';
COMMENT ON FUNCTION fdn_problem(text) IS 'first problem of the identifier as "column: text"; NULL if there is none';

-- Pieces: a level, such as NE, or one of its sub-values, such as PP:2.

CREATE FUNCTION fdn_ne(fdn text) RETURNS integer
    LANGUAGE c IMMUTABLE STRICT PARALLEL SAFE COST 2 AS 'MODULE_PATHNAME';
COMMENT ON FUNCTION fdn_ne(text) IS 'NE number; NULL for none';

CREATE FUNCTION fdn_get(fdn text, piece text) RETURNS text
    LANGUAGE c IMMUTABLE STRICT PARALLEL SAFE COST 5 AS 'MODULE_PATHNAME';
COMMENT ON FUNCTION fdn_get(text, text) IS 'piece of the identifier as text; NULL for none';

CREATE FUNCTION fdn_number(fdn text, piece text) RETURNS integer
    LANGUAGE c IMMUTABLE STRICT PARALLEL SAFE COST 3 AS 'MODULE_PATHNAME';
COMMENT ON FUNCTION fdn_number(text, text) IS 'piece of the identifier as a number; NULL for none';

CREATE FUNCTION fdn_set(fdn text, piece text, value text) RETURNS text
    LANGUAGE c IMMUTABLE STRICT PARALLEL SAFE COST 10 AS 'MODULE_PATHNAME';
COMMENT ON FUNCTION fdn_set(text, text, text) IS 'identifier with this piece replaced; unchanged if it has none';

-- Two identifiers.

CREATE FUNCTION fdn_under(fdn text, container text) RETURNS boolean
    LANGUAGE c IMMUTABLE STRICT PARALLEL SAFE COST 5 AS 'MODULE_PATHNAME';
COMMENT ON FUNCTION fdn_under(text, text) IS 'whether the identifier lies in the container, level by level';

CREATE FUNCTION fdn_same(a text, b text) RETURNS boolean
    LANGUAGE c IMMUTABLE STRICT PARALLEL SAFE COST 20 AS 'MODULE_PATHNAME';
COMMENT ON FUNCTION fdn_same(text, text) IS 'whether both identifiers are read as the same record';

-- Records.

CREATE FUNCTION fdn_field(fdn text, field text) RETURNS text
    LANGUAGE c IMMUTABLE STRICT PARALLEL SAFE COST 10 AS 'MODULE_PATHNAME';
COMMENT ON FUNCTION fdn_field(text, text) IS 'field of the record, such as port.neId; NULL for none';

CREATE FUNCTION fdn_record(fdn text) RETURNS jsonb
    LANGUAGE c IMMUTABLE STRICT PARALLEL SAFE COST 100 AS 'MODULE_PATHNAME';
COMMENT ON FUNCTION fdn_record(text) IS 'the whole record; NULL for no kind';

CREATE TYPE fdn_port AS (
    ne integer,
    shelf integer,
    slot integer,
    sub_slot integer,
    pp_type integer,
    fb_type integer,
    port integer,
    name text,
    is_logical boolean
);
COMMENT ON TYPE fdn_port IS 'port; NULL stands for none in each column';

CREATE FUNCTION fdn_port(fdn text) RETURNS fdn_port
    LANGUAGE c IMMUTABLE STRICT PARALLEL SAFE COST 10 AS 'MODULE_PATHNAME';
COMMENT ON FUNCTION fdn_port(text) IS 'the port that the identifier names or lies on; NULL for none';

-- FB types.

CREATE FUNCTION fb_name(fb_type integer) RETURNS text
    LANGUAGE c IMMUTABLE STRICT PARALLEL SAFE COST 10 AS 'MODULE_PATHNAME';
COMMENT ON FUNCTION fb_name(integer) IS 'name of an FB type; NULL for none';

CREATE FUNCTION fb_level(fb_type integer) RETURNS integer
    LANGUAGE c IMMUTABLE STRICT PARALLEL SAFE COST 10 AS 'MODULE_PATHNAME';
COMMENT ON FUNCTION fb_level(integer) IS 'interface level of an FB type; NULL for none';
