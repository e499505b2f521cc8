-- Pieces, as text and as numbers.
\pset null '(null)'
SELECT fdn, fdn_ne(fdn), fdn_get(fdn, 'NE') AS ne, fdn_get(fdn, 'PP') AS pp, fdn_get(fdn, 'PP:3') AS name,
       fdn_number(fdn, 'S') AS slot, fdn_number(fdn, 'PP:2') AS port
  FROM (VALUES
    ('NE=12,FR=1,S=3,CP=-1,PP=16|1025|7|GE0/7'),
    ('NE=12,PP=16||4294967295|'),
    ('NE=12,PP=16|||'),
    ('NE=-1'),
    ('NE='),
    ('NE'),
    ('NE=4294967295'),
    ('NE=4294967301'),
    ('NE= 5x'),
    ('NE=x'),
    ('ONE=4,NE=5,NE=6'),
    ('ne=5'),
    ('OS=1'),
    ('NE=12,S=-1,PP=251||-1|Größe'),
    (',,NE=5,,'),
    ('=,=NE=5'),
    ('')) AS texts (fdn);
-- A number that reads as -1 is none, also as text; a name of -1 is a name.
SELECT fdn_get('NE=5,CP=-1', 'CP') AS card, fdn_get('NE=5,CP=4294967295', 'CP') AS unsigned_card,
       fdn_get('NE=5,PP=16||1|-1', 'PP:3') AS name;
-- Replacing a piece.
SELECT fdn_set('NE=5,FR=1', 'NE', '12') AS number, fdn_set('NE=5,PP=16||7|a', 'PP:3', 'b') AS sub_value,
       fdn_set('NE=5', 'FR', '1') AS missing, fdn_set('NE,FR=1', 'NE', '5') AS without_equals,
       fdn_set('NE=5,PP=16||7|', 'PP', '1|2|3|') AS level;
-- Containers, level by level.
SELECT fdn_under('NE=5,FR=1,S=3', 'NE=5,FR=1') AS "in", fdn_under('NE=5,FR=10', 'NE=5,FR=1') AS other,
       fdn_under('NE=05', 'NE=5') AS as_read, fdn_under('NE=5', 'NE=5,FR=1') AS outer, fdn_under('NE=5', '') AS all;
SELECT fdn_same('NE=5,FR=1,S=3,CP=-1,PP=16||2|', 'NE=05,S=3,FR=1,PP=16||2|') AS same,
       fdn_same('NE=5', 'NE=6') AS other, fdn_same('XY=1', 'XY=1') AS no_kind;
-- Errors name the argument.
SELECT fdn_get('NE=5', 'XY');
SELECT fdn_get('NE=5', '');
SELECT fdn_get('NE=5', 'NE:1');
SELECT fdn_number('NE=5', 'pp:2');
SELECT fdn_number('NE=5', 'PP:99999999999999999999');
SELECT fdn_set('NE=5', 'NE=', '1');
SELECT fdn_set('NE=5', 'NE', '1,FR=2');
SELECT fdn_set('NE=5,PP=16||7|', 'PP:3', 'a|b');
SELECT fdn_set('NE=5', 'NE', E'1\n');
-- More pieces than are remembered from one row to the next.
SELECT sum(fdn_number('NE=1,FR=2,S=3,SS=4,PP=5|6|7|', piece)) AS pieces
  FROM generate_series(1, 100), unnest('{NE,FR,S,SS,PP,PP:0,PP:1,PP:2,LP:0,LP:1,LP:2,AP}'::text[]) AS piece;
