-- Types, kinds, records, fields and problems.
\pset null '(null)'
SELECT fdn, fdn_type(fdn), fdn_kind(fdn), fdn_problem(fdn)
  FROM (VALUES
    ('NE=12'),
    ('NE=12,FR=1'),
    ('NE=12,FR=1,S=3,CP=-1,PP=16|1025|7|GE0/7'),
    ('NE=12,LP=|65600|7|'),
    ('NE=12,S=3,PP=16||2'),
    ('NE=12,SLOT=3'),
    ('NE=x,FR=1'),
    ('NE=12,FR=1,FR=2'),
    ('NE=12,' || chr(7) || '=2'),
    ('NE=12,FR=1,S=3,CP=-1,PP=16||7|Größe'),
    ('NE=5,Ö=1'),
    (''),
    (',')) AS texts (fdn);
SELECT fdn_record('NE=12,FR=1,S=3,CP=-1,PP=16|1025|7|GE0/7');
SELECT fdn_record('NE=12,FR=1,S=3,CP=-1,PP=16||7|a"\Größe' || chr(1)) ->> 'portLabel' AS name;
SELECT fdn_record('NE=12,S=3,PP=16||7|,AP=1|2|9') #>> '{port,neId}' AS ne;
SELECT fdn_record('XY=1');
SELECT fdn_field(fdn, 'neId') AS ne, fdn_field(fdn, 'port.neId') AS nested, fdn_field(fdn, 'portLabel') AS name,
       fdn_field(fdn, 'isLogical') AS logical, fdn_field(fdn, 'slotId') AS slot
  FROM (VALUES
    ('NE=12,S=3,PP=16||7|a'),
    ('NE=12,S=-1,LP=16||7|'),
    ('NE=12,S=3,PP=16||7|,AP=1|2|9'),
    ('XY=1')) AS texts (fdn);
SELECT fdn_field('NE=5', 'nePort');
SELECT fdn_field('XY=1', '');
-- A channel set is read at a place that may be inside a character; half a character is no text.
SELECT fdn_record('NE=5,LP=16||3|ÅÅÅÅÅCHANNELSETÅ=4,VR=1,CHANNELSET=2,AP=Å');
SELECT fdn_field('NE=5,LP=16||3|ÅÅÅÅÅCHANNELSETÅ=4,VR=1,CHANNELSET=2,AP=Å', 'fdnText');
-- Ports; NULL stands for none.
SELECT fdn, p.*, p IS NULL AS none
  FROM (VALUES
    ('NE=12,FR=1,S=3,CP=-1,SS=2,SC=-1,PP=16|1025|7|GE0/7'),
    ('NE=12,S=3,LP=|65600|4294967295|'),
    ('NE=12,PP=16|1025|7|a\|b'),
    ('NE=12,PP=||7|name'),
    ('S=3,PP=16||7|'),
    ('NE=12,S=3,PP=16||7|,AP=1|2|9'),
    ('NE=12,S=3,PP=16||7'),
    ('NE=12,S=3'),
    ('NE=1,FR=1,S=0,CP=-1,SS=-1,SC=-1,PP=16||0|'),
    ('FR=1,S=0,CP=-1,SS=-1,SC=-1,PP=16||0|'),
    ('')) AS texts (fdn), fdn_port(fdn) AS p;
SELECT (fdn_port('NE=12,PP=16||7|')).port, pg_typeof(fdn_port('NE=12'));
-- FB types.
SELECT fb_type, fb_name(fb_type), fb_level(fb_type) FROM (VALUES (860), (122), (0), (-1), (2147483647)) AS types (fb_type);
