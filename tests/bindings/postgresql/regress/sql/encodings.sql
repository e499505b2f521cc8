-- Records and problems are UTF-8 inside, and what the database has outside.
CREATE DATABASE kx_latin1 TEMPLATE template0 ENCODING 'LATIN1' LOCALE 'C';
CREATE DATABASE kx_bytes TEMPLATE template0 ENCODING 'SQL_ASCII' LOCALE 'C';
\c kx_latin1
SET client_encoding = 'UTF8';
CREATE EXTENSION kx_fdn;
SELECT fdn_record(fdn) ->> 'portLabel' AS name, fdn_field(fdn, 'portLabel') AS field, fdn_get(fdn, 'PP:3') AS piece,
       fdn_set(fdn, 'PP:3', 'groß') AS replaced, octet_length(fdn) AS bytes
  FROM (VALUES ('NE=12,PP=16||7|Größe')) AS texts (fdn);
-- Columns count the bytes of UTF-8, as in a file.
SELECT fdn_problem('NE=12,PP=16||7|Größe,XY=1'), fdn_problem('NE=5,Ö=1');
\c kx_bytes
CREATE EXTENSION kx_fdn;
SELECT fdn_ne(fdn), encode(fdn_get(fdn, 'PP:3')::bytea, 'escape') AS name FROM (VALUES (E'NE=12,PP=16||7|Gr\xf6\xdfe')) AS texts (fdn);
SELECT fdn_record(E'NE=12,PP=16||7|Gr\xf6\xdfe');
SELECT fdn_problem(E'NE=12,PP=16||7|Gr\xf6\xdfe');
SELECT fdn_record(E'NE=12,PP=16||7|\xc3\xb6') ->> 'portLabel' = E'\xc3\xb6' AS is_utf8;
\c contrib_regression
DROP DATABASE kx_latin1;
DROP DATABASE kx_bytes;
